# The packages that the project needs. If one is missing, the message names its Debian package.

# wbalance_require(NAME "PACKAGE..." FIND_PACKAGE_ARGUMENT...)
macro(wbalance_require NAME PACKAGES)
    find_package(${NAME} ${ARGN} QUIET)
    if(NOT ${NAME}_FOUND)
        message(FATAL_ERROR "${NAME} is missing:\n  sudo apt install ${PACKAGES}")
    endif()
endmacro()

# Users of the project do not need GoogleTest: if it is not installed, the tests are left out.
set(WBALANCE_TESTS_BY_DEFAULT OFF)
if(PROJECT_IS_TOP_LEVEL)
    find_package(GTest QUIET)
    if(TARGET GTest::gmock_main)
        set(WBALANCE_TESTS_BY_DEFAULT ON)
    elseif(NOT DEFINED WBALANCE_BUILD_TESTS)
        message(STATUS "GoogleTest is missing, the tests are left out (sudo apt install libgmock-dev)")
    endif()
endif()
