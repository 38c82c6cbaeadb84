# Reads drivers/instruments.txt.
#
#   WBALANCE_INSTRUMENTS          the names, in the order of the rows
#   WBALANCE_DRIVER_CLASSES       the classes, likewise
#   WBALANCE_CLASSES_IN_<FOLDER>  the classes whose sources are in that folder
#
# and for C++ the header <Instruments.h> of the target wbalance_instruments, in which
# WBALANCE_FOR_EACH_INSTRUMENT(ROW) expands to ROW("name", Class) for each row.

set(LIST_FILE ${PROJECT_SOURCE_DIR}/drivers/instruments.txt)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${LIST_FILE})
file(STRINGS ${LIST_FILE} ROWS REGEX "^[^#]")
foreach(ROW IN LISTS ROWS)
    if(NOT ROW MATCHES "^([a-z0-9-]+) +(Wbalance[A-Za-z0-9_]+) +(drivers[a-z/]*)$")
        message(FATAL_ERROR "${LIST_FILE}: a row is \"name class folder\", not \"${ROW}\"")
    endif()
    list(APPEND WBALANCE_INSTRUMENTS ${CMAKE_MATCH_1})
    list(APPEND WBALANCE_DRIVER_CLASSES ${CMAKE_MATCH_2})
    list(APPEND WBALANCE_CLASSES_IN_${CMAKE_MATCH_3} ${CMAKE_MATCH_2})
    string(APPEND INSTRUMENT_ROWS " \\\n    ROW(\"${CMAKE_MATCH_1}\", ${CMAKE_MATCH_2})")
endforeach()

file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/instruments/Instruments.h @ONLY CONTENT
"#pragma once

/// ROW(name, class) for each instrument, in the order of drivers/instruments.txt.
#define WBALANCE_FOR_EACH_INSTRUMENT(ROW)@INSTRUMENT_ROWS@
")
add_library(wbalance_instruments INTERFACE)
target_include_directories(wbalance_instruments INTERFACE ${PROJECT_BINARY_DIR}/instruments)

# The sources <PREFIX><name><SUFFIX> of the present folder, one for each instrument. An instrument
# that has none ends the configuration, which names the file that is missing.
function(wbalance_sources_by_instrument OUTPUT PREFIX SUFFIX)
    foreach(NAME IN LISTS WBALANCE_INSTRUMENTS)
        set(SOURCE ${CMAKE_CURRENT_SOURCE_DIR}/${PREFIX}${NAME}${SUFFIX})
        if(NOT EXISTS ${SOURCE})
            file(RELATIVE_PATH SOURCE ${PROJECT_SOURCE_DIR} ${SOURCE})
            message(FATAL_ERROR "drivers/instruments.txt lists ${NAME}, which lacks its ${SOURCE}")
        endif()
        list(APPEND SOURCES ${SOURCE})
    endforeach()
    set(${OUTPUT} ${SOURCES} PARENT_SCOPE)
endfunction()
