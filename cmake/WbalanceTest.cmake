# One function for each kind of test program. Tests are GoogleTest; ctest knows each test by its sentence.

wbalance_require(GTest libgmock-dev)
include(GoogleTest)

# Tests that leave no descriptor are not for a sanitizer: its checks need some themselves, and without them
# report what is not so. Such a test asks WBALANCE_SANITIZED.
set(SANITIZED false)
if(WBALANCE_SANITIZE)
    set(SANITIZED true)
endif()

# What takes time with tests is the compiling: matchers are large templates. So their headers are
# compiled once, and nothing is optimised, which also means that no call is fortified. Under sanitizers a test's
# own arithmetic is left unchecked, which takes a quarter off its compiling; what it does with memory is checked.
function(wbalance_quick_to_compile TARGET)
    wbalance_compile_settings(${TARGET})
    target_compile_options(${TARGET} PRIVATE -O0 -g1 "SHELL:-U _FORTIFY_SOURCE" -fPIC)
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

# Runs a test program a second time as a host in a locale with a decimal comma. The locale is made for the
# tests, which need no other one installed.
function(wbalance_also_in_a_german_locale NAME)
    target_link_libraries(${NAME} PRIVATE scripted-locale)
    add_test(NAME ${NAME}.In_a_German_locale COMMAND ${NAME} --gtest_brief=1)
    set_tests_properties(${NAME}.In_a_German_locale PROPERTIES TIMEOUT 600 FIXTURES_REQUIRED german_locale
        ENVIRONMENT "LOCPATH=${SCRIPTED_LOCALES};WBALANCE_TEST_LOCALE=de_DE.UTF-8")
endfunction()

# The scripted serial port and its virtual clock in the place of the libraries that TARGET would load.
function(wbalance_use_scripted_layer TARGET)
    # The allocation that can fail is the program's own, so that it also wins over a sanitizer's. The
    # order is the point: the stand-ins come before the libraries whose place they take.
    target_link_libraries(${TARGET} PRIVATE scripted-allocation
        -Wl,--no-as-needed scripted-line scripted-platform scripted-serial-port wbalance)
    set_target_properties(${TARGET} PROPERTIES SKIP_BUILD_RPATH ON)
    target_link_options(${TARGET} PRIVATE
        -Wl,-rpath,${SCRIPTED_LIBRARY_DIR}:$<TARGET_FILE_DIR:wbalance>)
endfunction()

# The real library over a scripted serial port and a virtual clock.
function(wbalance_add_scripted_test NAME)
    wbalance_add_unit_test(${NAME} ${ARGN})
    wbalance_use_scripted_layer(${NAME})
endfunction()

# Simulated instruments in the test's own process: the virtual-line object stands ahead of the C library,
# so that whatever opens /dev/ttyS0 in the test meets what a simulator::VirtualBench has placed there.
function(wbalance_add_simulator_test NAME)
    wbalance_add_unit_test(${NAME} ${ARGN})
    target_link_libraries(${NAME} PRIVATE -Wl,--no-as-needed wbalance_virtual_line
                          wbalance_simulator Qt5::SerialPort)
endfunction()

# The real library against simulated instruments, in real time.
function(wbalance_add_end_to_end_test NAME)
    wbalance_add_simulator_test(${NAME} ${ARGN})
    target_link_libraries(${NAME} PRIVATE wbalance)
endfunction()
