# libwbalance.so consists of the folders serial/, balance/ and drivers/. Each adds its classes with
# wbalance_classes(). A class is one header and one source, both named after it.

add_library(wbalance SHARED)
add_library(wbalance::wbalance ALIAS wbalance)
wbalance_compile_settings(wbalance)

# The public headers of all folders, side by side, as <wbalance/Class.h>: in the build tree through
# links to the sources, installed as copies.
set(WBALANCE_INCLUDE_DIR ${PROJECT_BINARY_DIR}/include)

# Makes headers of the current folder public.
function(wbalance_public_headers)
    file(MAKE_DIRECTORY ${WBALANCE_INCLUDE_DIR}/wbalance)
    foreach(HEADER IN LISTS ARGN)
        file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${HEADER}
             ${WBALANCE_INCLUDE_DIR}/wbalance/${HEADER} SYMBOLIC)
        set_property(GLOBAL APPEND PROPERTY WBALANCE_PUBLIC_HEADERS
                     ${CMAKE_CURRENT_SOURCE_DIR}/${HEADER})
    endforeach()
endfunction()

# Adds public classes of the current folder to the library.
function(wbalance_classes)
    foreach(CLASS IN LISTS ARGN)
        target_sources(wbalance PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/${CLASS}.cpp)
        wbalance_public_headers(${CLASS}.h)
    endforeach()
endfunction()
