# Read by cpack before it does anything: what reads off the binaries which packages they need has to be
# there, for without it a package would depend on nothing.

find_program(WBALANCE_FILE file)
find_program(WBALANCE_DPKG_SHLIBDEPS dpkg-shlibdeps)
if(NOT WBALANCE_FILE OR NOT WBALANCE_DPKG_SHLIBDEPS)
    message(FATAL_ERROR "Debian packages are made with file and dpkg-shlibdeps:\n  sudo apt install dpkg-dev file")
endif()
