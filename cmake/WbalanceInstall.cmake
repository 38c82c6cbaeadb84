# What the library is made of beside its sources: names, versions, exports, and its installation.

# The soname changes when a class layout, a virtual slot or an exported function changes or goes.
set_target_properties(wbalance PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME wbalance
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

set(WBALANCE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/wbalance)
get_property(WBALANCE_PUBLIC_HEADERS GLOBAL PROPERTY WBALANCE_PUBLIC_HEADERS)
install(FILES ${WBALANCE_PUBLIC_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/wbalance)
install(TARGETS wbalance marlet-small EXPORT wbalance
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

# find_package(wbalance) needs nothing beside it: the public headers name no class of Qt's.
install(EXPORT wbalance NAMESPACE wbalance:: FILE wbalanceConfig.cmake
        DESTINATION ${WBALANCE_CMAKE_DIR})
include(CMakePackageConfigHelpers)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/wbalanceConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/wbalanceConfigVersion.cmake DESTINATION ${WBALANCE_CMAKE_DIR})

# The prefix is found from the place of wbalance.pc, so that an installed tree can be moved.
file(RELATIVE_PATH WBALANCE_PC_TO_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(${PROJECT_SOURCE_DIR}/cmake/wbalance.pc.in ${PROJECT_BINARY_DIR}/wbalance.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/wbalance.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
