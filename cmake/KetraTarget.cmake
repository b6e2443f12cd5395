# The settings that all of our own targets share; a consumer's targets see none of them.

# An optimised build where nothing else is asked for: the solver is several times slower without.
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "kind of build" FORCE)
endif()

# Compilers' results are cached where the tool is there.
find_program(KETRA_CCACHE ccache)
mark_as_advanced(KETRA_CCACHE)
if(PROJECT_IS_TOP_LEVEL AND KETRA_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${KETRA_CCACHE})
endif()

add_library(ketra_settings INTERFACE)
target_compile_features(ketra_settings INTERFACE cxx_std_20)
# Results are compared digit by digit between builds and machines: no contraction into fused operations.
target_compile_options(ketra_settings INTERFACE -ffp-contract=off)
if(KETRA_DEVELOPER_MODE)
    target_compile_options(ketra_settings INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor -Wformat=2 -Werror
        # GCC 12 reports overlapping copies inside std::string where there are none (GCC bug 105651).
        $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
endif()

# Applies the shared settings to a target of ours.
function(ketra_target name)
    set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF CXX_VISIBILITY_PRESET hidden
                                             VISIBILITY_INLINES_HIDDEN ON)
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:ketra_settings>)
endfunction()
