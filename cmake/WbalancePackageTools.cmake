# cpack reads this file first. The tools that find the dependencies of the binaries must be installed:
# without them a package would have no dependencies.

find_program(WBALANCE_FILE file)
find_program(WBALANCE_DPKG_SHLIBDEPS dpkg-shlibdeps)
if(NOT WBALANCE_FILE OR NOT WBALANCE_DPKG_SHLIBDEPS)
    message(FATAL_ERROR "Debian packages are made with file and dpkg-shlibdeps:\n  sudo apt install dpkg-dev file")
endif()
