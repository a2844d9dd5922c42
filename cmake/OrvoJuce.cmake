# Finds JUCE: -DORVO_JUCE_DIR= (or the environment variable of that name), an installed package, or the tree
# that scripts/setup.sh placed in .deps/juce, in this order.

set(ORVO_JUCE_DIR "$ENV{ORVO_JUCE_DIR}" CACHE PATH "A JUCE 8 source tree; empty: look for one")

if(NOT ORVO_JUCE_DIR)
    find_package(JUCE 8.0.6 CONFIG QUIET)
endif()

if(JUCE_FOUND)
    message(STATUS "JUCE: installed package ${JUCE_VERSION}")
    get_property(orvo_juce_modules DIRECTORY PROPERTY IMPORTED_TARGETS)
    foreach(module IN LISTS orvo_juce_modules)
        get_target_property(includes ${module} INTERFACE_INCLUDE_DIRECTORIES)
        if(includes)
            set_target_properties(${module} PROPERTIES INTERFACE_SYSTEM_INCLUDE_DIRECTORIES "${includes}")
        endif()
    endforeach()
else()
    set(orvo_juce_tree "${ORVO_JUCE_DIR}")
    if(NOT orvo_juce_tree)
        set(orvo_juce_tree "${PROJECT_SOURCE_DIR}/.deps/juce")
    endif()
    if(NOT EXISTS "${orvo_juce_tree}/modules/juce_core/juce_core.h")
        message(FATAL_ERROR "No JUCE at ${orvo_juce_tree}: run scripts/setup.sh, or pass -DORVO_JUCE_DIR=")
    endif()
    message(STATUS "JUCE: source tree ${orvo_juce_tree}")
    orvo_hide_folder("${orvo_juce_tree}" ./juce)
    # A program that JUCE would build while it is configured, and that a VST3 module on Linux has no use for, becomes a target
    # that nobody asks for.
    set(JUCE_BUILD_HELPER_TOOLS ON)
    add_subdirectory("${orvo_juce_tree}" "${CMAKE_BINARY_DIR}/juce" EXCLUDE_FROM_ALL SYSTEM)
endif()

# Options of the JUCE modules. Every target that compiles modules or includes their headers needs the same ones.
set(ORVO_JUCE_DEFINITIONS
    JUCE_USE_CURL=0
    JUCE_WEB_BROWSER=0
    JUCE_USE_FLAC=0
    JUCE_USE_OGGVORBIS=0
    JUCE_REPORT_APP_USAGE=0
    JUCE_VST3_CAN_REPLACE_VST2=0
    JUCE_PLUGINHOST_VST3=1
    JUCE_PLUGINHOST_LV2=1
    JUCE_STRICT_REFCOUNTEDPOINTER=1)

# What has nearly died away in a filter, JUCE sets to zero at the end of a block, but on x86 alone. The same for all: a
# project must not sound another way on another processor.
if(NOT CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
    set(orvo_bound "static_cast<decltype(n+n)>(1.0e-8f)")
    add_compile_options("-DJUCE_SNAP_TO_ZERO(n)=n=(n<-${orvo_bound}||n>${orvo_bound})?n:0")
endif()

# orvo_export_juce(name target): makes the interface library `name`, through which programs link to `target`, which
# compiled the JUCE modules, and include their headers with the same settings without compiling them again.
function(orvo_export_juce name target)
    get_target_property(vst3_headers juce::juce_vst3_headers INTERFACE_INCLUDE_DIRECTORIES)
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE ${target})
    target_include_directories(${name} SYSTEM INTERFACE "${JUCE_MODULES_DIR}" "${vst3_headers}")
    target_compile_definitions(${name} INTERFACE $<TARGET_PROPERTY:${target},COMPILE_DEFINITIONS>)
endfunction()

# orvo_precompile(target headers...): reads these headers once for all sources of the target. JUCE's modules begin with a
# clean sheet and are left out. Builds with CMAKE_DISABLE_PRECOMPILE_HEADERS see whether a source includes what it uses.
function(orvo_precompile target)
    foreach(header IN LISTS ARGN)
        string(REPLACE ">" "$<ANGLE-R>" header "${header}")
        target_precompile_headers(${target} PRIVATE "$<$<COMPILE_LANGUAGE:CXX>:${header}>")
    endforeach()
    file(GLOB modules "${JUCE_MODULES_DIR}/juce_*/juce_*.cpp")
    set_source_files_properties(${modules} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)

    # Our sources' -Wpedantic takes a macro away, and g++ wants the same macros in both.
    set_source_files_properties("${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${target}.dir/cmake_pch.hxx.cxx"
        PROPERTIES COMPILE_OPTIONS -Wpedantic)
endfunction()
