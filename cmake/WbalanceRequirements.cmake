# What the project needs of others. What is missing is named by the Debian packages that bring it.

# wbalance_require(NAME "PACKAGE..." FIND_PACKAGE_ARGUMENT...)
macro(wbalance_require NAME PACKAGES)
    find_package(${NAME} ${ARGN} QUIET)
    if(NOT ${NAME}_FOUND)
        message(FATAL_ERROR "${NAME} is missing:\n  sudo apt install ${PACKAGES}")
    endif()
endmacro()

# Who builds the project to use it needs no GoogleTest: the tests are left out where it is not installed.
set(WBALANCE_TESTS_BY_DEFAULT OFF)
if(PROJECT_IS_TOP_LEVEL)
    find_package(GTest QUIET)
    if(TARGET GTest::gmock_main)
        set(WBALANCE_TESTS_BY_DEFAULT ON)
    elseif(NOT DEFINED WBALANCE_BUILD_TESTS)
        message(STATUS "GoogleTest is missing, the tests are left out (sudo apt install libgmock-dev)")
    endif()
endif()
