# How every target of this project is compiled: C++17, every warning, hardened.
# WBALANCE_SANITIZE ("address,undefined", "thread") builds the whole project under sanitizers.

set(WBALANCE_SANITIZE "" CACHE STRING "Sanitizers, separated by commas, for the whole build")
option(WBALANCE_WERROR "Treat warnings as errors" OFF)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES AND PROJECT_IS_TOP_LEVEL)
    set(CMAKE_BUILD_TYPE RelWithDebInfo)
endif()

# Applies the project's compiler and linker settings to TARGET.
function(wbalance_compile_settings TARGET)
    target_compile_features(${TARGET} PUBLIC cxx_std_17)
    set_target_properties(${TARGET} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
    target_compile_options(${TARGET} PRIVATE
        -Wall -Wextra -Wpedantic -Wconversion -Wshadow
        -fstack-protector-strong -fcf-protection=full)
    target_link_options(${TARGET} PRIVATE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
    # Debian's start files are not marked for control-flow protection. A library that is linked with them
    # loses the mark, too. The only code in them that runs when a library is loaded is _init and _fini,
    # which do nothing. So a library without them has the mark and deserves it.
    target_link_options(${TARGET} PRIVATE
        "$<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:LINKER:-z,ibt,-z,shstk,-init=none,-fini=none>")
    if(WBALANCE_WERROR)
        target_compile_options(${TARGET} PRIVATE -Werror)
    endif()
    if(WBALANCE_SANITIZE)
        target_compile_options(${TARGET} PRIVATE
            -fsanitize=${WBALANCE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
        target_link_options(${TARGET} PRIVATE -fsanitize=${WBALANCE_SANITIZE})
    else()
        # Fortified calls need optimisation; the sanitizers check the same accesses and more.
        target_compile_options(${TARGET} PRIVATE
            "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
    endif()
endfunction()

# Compiles the standard library's headers once for all sources of TARGET. This saves a third of the time.
function(wbalance_standard_headers TARGET)
    target_precompile_headers(${TARGET} PRIVATE
        <chrono> <functional> <map> <memory> <optional> <string> <vector>)
endfunction()
