# One function for each kind of test program. The tests use GoogleTest, and ctest shows each test by its
# sentence.

wbalance_require(GTest libgmock-dev)
include(GoogleTest)

# Tests that use up all descriptors can't run under a sanitizer: its checks need descriptors, and report
# false errors without them. Such tests ask WBALANCE_SANITIZED.
set(SANITIZED false)
if(WBALANCE_SANITIZE)
    set(SANITIZED true)
endif()

# The compiler of what is delivered may be a slow one for tests. Both have the same binary interface.
option(WBALANCE_TESTS_BY_CLANG "Compile the tests' own sources with clang++, which is quicker than g++" OFF)
if(WBALANCE_TESTS_BY_CLANG)
    string(REPLACE "<CMAKE_CXX_COMPILER>" "clang++ -Xclang -fno-pch-timestamp" CMAKE_CXX_COMPILE_OBJECT
           "${CMAKE_CXX_COMPILE_OBJECT}")
endif()

# Most of the time of the tests is compiling, because matchers are large templates. So their headers are
# compiled once, and nothing is optimised. This also means that no call is fortified. Under sanitizers a
# test's own arithmetic is left unchecked, which takes a quarter off its compiling; what it does with
# memory is checked.
function(wbalance_quick_to_compile TARGET)
    wbalance_compile_settings(${TARGET})
    # GoogleTest's macros for typed tests are called without their last argument, as its manual has it.
    target_compile_options(${TARGET} PRIVATE -O0 -g1 "SHELL:-U _FORTIFY_SOURCE" -fPIC
        -Wno-gnu-zero-variadic-macro-arguments)
    if(WBALANCE_SANITIZE)
        target_compile_options(${TARGET} PRIVATE -fno-sanitize=undefined)
    endif()
    target_include_directories(${TARGET} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${TARGET} PRIVATE GTest::gmock_main wbalance_instruments)
endfunction()

file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/test_headers.cpp CONTENT "")
add_executable(test_headers ${PROJECT_BINARY_DIR}/test_headers.cpp)
wbalance_quick_to_compile(test_headers)
target_precompile_headers(test_headers PRIVATE <gmock/gmock.h>)

# A test of classes alone: no port, no instrument.
function(wbalance_add_unit_test NAME)
    add_executable(${NAME} ${ARGN})
    wbalance_quick_to_compile(${NAME})
    target_precompile_headers(${NAME} REUSE_FROM test_headers)
    gtest_discover_tests(${NAME} DISCOVERY_MODE PRE_TEST NO_PRETTY_VALUES PROPERTIES TIMEOUT 600)
endfunction()

# Runs a test program a second time, as a host in a locale with a decimal comma. The tests make this
# locale themselves.
function(wbalance_also_in_a_german_locale NAME)
    target_link_libraries(${NAME} PRIVATE scripted-locale)
    add_test(NAME ${NAME}.In_a_German_locale COMMAND ${NAME} --gtest_brief=1)
    set_tests_properties(${NAME}.In_a_German_locale PROPERTIES TIMEOUT 600 FIXTURES_REQUIRED german_locale
        ENVIRONMENT "LOCPATH=${SCRIPTED_LOCALES};WBALANCE_TEST_LOCALE=de_DE.UTF-8")
endfunction()

# Replaces libraries that TARGET would load with the scripted serial port and its virtual clock.
function(wbalance_use_scripted_layer TARGET)
    # The allocation that can fail is part of the program, so that it is used in place of a sanitizer's.
    # The order matters: the replacements must come before the libraries that they replace.
    target_link_libraries(${TARGET} PRIVATE scripted-allocation
        -Wl,--no-as-needed scripted-line scripted-platform scripted-serial-port wbalance)
    set_target_properties(${TARGET} PROPERTIES SKIP_BUILD_RPATH ON)
    target_link_options(${TARGET} PRIVATE
        -Wl,-rpath,${SCRIPTED_LIBRARY_DIR}:$<TARGET_FILE_DIR:wbalance>)
endfunction()

# A test of the real library over a scripted serial port and a virtual clock.
function(wbalance_add_scripted_test NAME)
    wbalance_add_unit_test(${NAME} ${ARGN})
    wbalance_use_scripted_layer(${NAME})
endfunction()

# A test with simulated instruments in its own process. The virtual-line object comes before the C
# library. So when the test opens /dev/ttyS0, it finds what a simulator::VirtualBench has placed there.
function(wbalance_add_simulator_test NAME)
    wbalance_add_unit_test(${NAME} ${ARGN})
    target_link_libraries(${NAME} PRIVATE -Wl,--no-as-needed wbalance_virtual_line
                          wbalance_simulator Qt5::SerialPort)
endfunction()

# A test of the real library with simulated instruments, in real time.
function(wbalance_add_end_to_end_test NAME)
    wbalance_add_simulator_test(${NAME} ${ARGN})
    target_link_libraries(${NAME} PRIVATE wbalance)
endfunction()
