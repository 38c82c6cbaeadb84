# The library's names, versions, exports and installation.

# The soname changes when a class layout, a virtual function or an exported function changes or is
# removed.
set_target_properties(wbalance PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME wbalance
    # libmarlet-small.so is looked for in the folder of libwbalance.so.
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

# Each installed file belongs to one of three components, which become packages of the same names:
# libwbalance1 (to run hosts), libwbalance-dev (to build hosts), wbalance-tools (the programs).

# Installs FILE compressed, as Debian expects manuals and changes: NAME.gz in DESTINATION.
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

# find_package(wbalance) needs no other package: the public headers use no class of Qt.
install(EXPORT wbalance NAMESPACE wbalance:: FILE wbalanceConfig.cmake
        DESTINATION ${WBALANCE_CMAKE_DIR} COMPONENT libwbalance-dev)
include(CMakePackageConfigHelpers)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/wbalanceConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/wbalanceConfigVersion.cmake
        DESTINATION ${WBALANCE_CMAKE_DIR} COMPONENT libwbalance-dev)

# wbalance.pc derives the prefix from its own place, so that an installed tree can be moved. If the
# loader does not search the folder, hosts are told where the library is, as CMake does.
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

# Installs all pages with a package, because they link to one another.
function(wbalance_install_pages PACKAGE)
    set(DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/${PACKAGE})
    foreach(PAGE IN ITEMS getting-started host-programming reliability simulator troubleshooting wbalance)
        install(FILES ${WBALANCE_DOCS}/${PAGE}.md DESTINATION ${DOC_DIR} COMPONENT ${PACKAGE})
    endforeach()
    install(DIRECTORY ${WBALANCE_DOCS}/instruments ${WBALANCE_DOCS}/samples
            DESTINATION ${DOC_DIR} COMPONENT ${PACKAGE})
endfunction()
wbalance_install_pages(libwbalance-dev)
