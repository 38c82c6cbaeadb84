# What the library is made of beside its sources: names, versions, exports, and its installation.

# The soname changes when a class layout, a virtual slot or an exported function changes or goes.
set_target_properties(wbalance PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME wbalance
    # libmarlet-small.so is looked for beside libwbalance.so, in whichever folder that was installed.
    INSTALL_RPATH $ORIGIN
    LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/wbalance.map)
target_include_directories(wbalance INTERFACE
    $<BUILD_INTERFACE:${WBALANCE_INCLUDE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_include_directories(wbalance PRIVATE ${WBALANCE_INCLUDE_DIR})
target_link_libraries(wbalance PRIVATE Qt5::Core Qt5::SerialPort)
target_link_options(wbalance PRIVATE
    -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/wbalance.map)
if(NOT WBALANCE_SANITIZE)
    target_link_options(wbalance PRIVATE -Wl,--no-undefined)
endif()

# What is installed belongs to one of three components, named after the packages that they become:
# libwbalance1 (what a host needs to run), libwbalance-dev (to be built), wbalance-tools (the programs).

# Installs FILE compressed, as manuals and changes are read on Debian: NAME.gz in DESTINATION.
function(wbalance_install_compressed FILE DESTINATION NAME COMPONENT)
    set(COMPRESSED ${PROJECT_BINARY_DIR}/compressed/${COMPONENT}/${NAME}.gz)
    cmake_path(GET COMPRESSED PARENT_PATH FOLDER)
    file(MAKE_DIRECTORY ${FOLDER})
    add_custom_command(OUTPUT ${COMPRESSED} DEPENDS ${FILE} VERBATIM
                       COMMAND gzip -9n < ${FILE} > ${COMPRESSED})
    add_custom_target(compressed-${COMPONENT}-${NAME} ALL DEPENDS ${COMPRESSED})
    install(FILES ${COMPRESSED} DESTINATION ${DESTINATION} COMPONENT ${COMPONENT})
endfunction()

set(WBALANCE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/wbalance)
get_property(WBALANCE_PUBLIC_HEADERS GLOBAL PROPERTY WBALANCE_PUBLIC_HEADERS)
install(FILES ${WBALANCE_PUBLIC_HEADERS}
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/wbalance COMPONENT libwbalance-dev)
install(TARGETS wbalance marlet-small EXPORT wbalance
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        COMPONENT libwbalance1 NAMELINK_COMPONENT libwbalance-dev)

# find_package(wbalance) needs nothing beside it: the public headers name no class of Qt's.
install(EXPORT wbalance NAMESPACE wbalance:: FILE wbalanceConfig.cmake
        DESTINATION ${WBALANCE_CMAKE_DIR} COMPONENT libwbalance-dev)
include(CMakePackageConfigHelpers)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/wbalanceConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/wbalanceConfigVersion.cmake
        DESTINATION ${WBALANCE_CMAKE_DIR} COMPONENT libwbalance-dev)

# The prefix is found from the place of wbalance.pc, so that an installed tree can be moved. Hosts of a
# folder in which the loader does not look by itself are told where the library is, as CMake tells them.
file(RELATIVE_PATH WBALANCE_PC_TO_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
set(WBALANCE_PC_RUN_PATH -rpath-link)
configure_file(${PROJECT_SOURCE_DIR}/cmake/wbalance.pc.in ${PROJECT_BINARY_DIR}/system/wbalance.pc @ONLY)
set(WBALANCE_PC_RUN_PATH -rpath)
configure_file(${PROJECT_SOURCE_DIR}/cmake/wbalance.pc.in ${PROJECT_BINARY_DIR}/elsewhere/wbalance.pc @ONLY)
install(CODE "
    set(PREFIXES elsewhere)
    if(CMAKE_INSTALL_PREFIX MATCHES \"^/usr(/local)?/?$\")
        set(PREFIXES system)
    endif()
    file(INSTALL \"${PROJECT_BINARY_DIR}/\${PREFIXES}/wbalance.pc\"
         DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig\")"
    COMPONENT libwbalance-dev)

set(WBALANCE_DOCS ${PROJECT_SOURCE_DIR}/docs)
wbalance_install_compressed(${WBALANCE_DOCS}/man/libwbalance.3 ${CMAKE_INSTALL_MANDIR}/man3
                            libwbalance.3 libwbalance-dev)

# Installs the pages with a package: all of them, for they link to one another.
function(wbalance_install_pages PACKAGE)
    set(DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/${PACKAGE})
    foreach(PAGE IN ITEMS getting-started host-programming reliability simulator troubleshooting wbalance)
        install(FILES ${WBALANCE_DOCS}/${PAGE}.md DESTINATION ${DOC_DIR} COMPONENT ${PACKAGE})
    endforeach()
    install(DIRECTORY ${WBALANCE_DOCS}/instruments ${WBALANCE_DOCS}/samples
            DESTINATION ${DOC_DIR} COMPONENT ${PACKAGE})
endfunction()
wbalance_install_pages(libwbalance-dev)
