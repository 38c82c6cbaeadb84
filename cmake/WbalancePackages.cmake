# The Debian packages that `cpack` makes: one for each component. scripts/test-packages tries them out.

set(WBALANCE_PACKAGE_CONTACT "libwbalance maintainers <maintainers@localhost.localdomain>" CACHE STRING
    "Who answers for the packages")

set(CPACK_GENERATOR DEB)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/WbalancePackageTools.cmake)
set(CPACK_COMPONENTS_ALL libwbalance1 libwbalance-dev)
if(WBALANCE_BUILD_TOOLS)
    list(APPEND CPACK_COMPONENTS_ALL wbalance-tools)
endif()
set(CPACK_PACKAGE_CONTACT ${WBALANCE_PACKAGE_CONTACT})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_VERBATIM_VARIABLES ON)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE libwbalance)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# dpkg-shlibdeps finds the packages that the binaries need. No installed package has this project's own
# libraries, so it is told where they are, and the dependencies below name them.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR} ${PROJECT_BINARY_DIR}/compat)
set(SAME_VERSION "libwbalance1 (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

# The packages of hosts depend on the version with which they were built, or a later one.
set(CPACK_DEBIAN_LIBWBALANCE1_PACKAGE_NAME libwbalance1)
set(CPACK_DEBIAN_LIBWBALANCE1_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_LIBWBALANCE1_DESCRIPTION "weighing balances on a serial line - library
With libwbalance a program weighs, tares, presets a tare and does what else
the instrument offers, on laboratory and industrial balances of several makers
that are connected over RS-232 or a USB serial adapter.
.
Programs that use the library need this package.")

set(CPACK_DEBIAN_LIBWBALANCE-DEV_PACKAGE_NAME libwbalance-dev)
set(CPACK_DEBIAN_LIBWBALANCE-DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_LIBWBALANCE-DEV_PACKAGE_DEPENDS ${SAME_VERSION})
set(CPACK_DEBIAN_LIBWBALANCE-DEV_PACKAGE_SUGGESTS wbalance-tools)
set(CPACK_DEBIAN_LIBWBALANCE-DEV_DESCRIPTION "weighing balances on a serial line - development files
With libwbalance a program weighs, tares, presets a tare and does what else
the instrument offers, on laboratory and industrial balances of several makers
that are connected over RS-232 or a USB serial adapter.
.
This package has the headers, the CMake package, the pkg-config file and the
pages for authors of programs that use the library.")

set(CPACK_DEBIAN_WBALANCE-TOOLS_PACKAGE_NAME wbalance-tools)
set(CPACK_DEBIAN_WBALANCE-TOOLS_PACKAGE_SECTION science)
set(CPACK_DEBIAN_WBALANCE-TOOLS_PACKAGE_DEPENDS ${SAME_VERSION})
set(CPACK_DEBIAN_WBALANCE-TOOLS_PACKAGE_SUGGESTS mosquitto-clients)
set(CPACK_DEBIAN_WBALANCE-TOOLS_DESCRIPTION "weighing balances on a serial line - programs
The program wbalance reads, tares and checks laboratory and industrial
balances that are connected over RS-232 or a USB serial adapter. It finds
their line settings and says why one gives no weight.
.
The program wbalance-sim simulates balances for other programs, without
hardware.")

# The fields of every Debian package.
foreach(PACKAGE IN LISTS CPACK_COMPONENTS_ALL)
    set(DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/${PACKAGE})
    install(FILES ${PROJECT_SOURCE_DIR}/packaging/debian/copyright DESTINATION ${DOC_DIR} COMPONENT ${PACKAGE})
    install(FILES ${PROJECT_SOURCE_DIR}/packaging/debian/README.Debian
            DESTINATION ${DOC_DIR} COMPONENT ${PACKAGE})
    wbalance_install_compressed(${PROJECT_SOURCE_DIR}/packaging/debian/changelog ${DOC_DIR}
                                changelog.Debian ${PACKAGE})
    wbalance_install_compressed(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${DOC_DIR} changelog ${PACKAGE})
    install(FILES ${PROJECT_SOURCE_DIR}/packaging/debian/lintian-overrides
            DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME ${PACKAGE} COMPONENT ${PACKAGE})
endforeach()

include(CPack)
