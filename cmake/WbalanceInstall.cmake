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
