# orvo_finish_module(target bundle): links the module so that hosts on all machines can load it, and fills its bundle.

option(ORVO_STATIC_FFTW "Link FFTW into the module, so that it does not ask users' machines for it" ON)
option(ORVO_STATIC_JPEG "Link libjpeg into the module: distributions have it under two names" ON)
option(ORVO_STATIC_RUNTIME "Link the C++ library into the module, so that it runs on older systems" ON)

# What belongs to the host's process is answered by source/module/ProcessManners.cpp.
set(orvo_host_calls chdir dlsym execv execvp fork getenv kill pipe setenv setlocale setrlimit)

# A host sees the three VST3 entry points and nothing of the libraries inside, which the linker may so leave out, too.
function(orvo_hide_symbols target)
    set(exports "${PROJECT_SOURCE_DIR}/source/module/module.exports")
    target_link_options(${target} PRIVATE "LINKER:--version-script=${exports}" "LINKER:--exclude-libs,ALL")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${exports}")
endfunction()

# Of the compiler's libraries, libgcc_s stays outside: every system has it, it is the one that unwinds the host's own
# exceptions, and the static form asks for a newer C library.
function(orvo_link_libraries_inside target)
    if(ORVO_STATIC_RUNTIME AND NOT ORVO_SANITIZERS)
        target_link_options(${target} PRIVATE -static-libstdc++)
    endif()

    # In front of JUCE's own -ljpeg, which then has nothing left to give; JUCE may also have libjpeg's sources in it.
    if(ORVO_STATIC_JPEG)
        find_library(ORVO_JPEG libjpeg.a)
        if(ORVO_JPEG)
            target_link_libraries(${target} PRIVATE "${ORVO_JPEG}")
        endif()
    endif()
    target_link_options(${target} PRIVATE "LINKER:--as-needed")
endfunction()

# See source/module/OlderSystems.cpp. Other processors' C libraries have no form as old.
function(orvo_bind_to_older_systems target)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$" AND NOT ORVO_SANITIZERS)
        target_sources(${target} PRIVATE module/OlderSystems.cpp)
        target_link_options(${target} PRIVATE "LINKER:--wrap=hypot" "LINKER:--wrap=hypotf")
    endif()
endfunction()

# The factory presets, and what a host wants to know without loading the module; scripts/package.sh adds the manual.
function(orvo_fill_bundle target bundle)
    set(script "${PROJECT_SOURCE_DIR}/cmake/fill_bundle.cmake")
    set(info "${CMAKE_CURRENT_BINARY_DIR}/moduleinfo.json")
    configure_file("${PROJECT_SOURCE_DIR}/packaging/moduleinfo.json.in" "${info}" @ONLY)
    file(GLOB_RECURSE presets CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/presets/*.tpre" "${PROJECT_SOURCE_DIR}/presets/_description.txt")

    # JUCE takes the file away whenever it links, so the rest is written then, too.
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${script}" "${info}" ${presets})
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_COMMAND} "-DRESOURCES=${bundle}/Contents/Resources" "-DINFO=${info}"
            "-DPRESETS=${PROJECT_SOURCE_DIR}/presets" -P "${script}"
        COMMENT "Filling the bundle"
        VERBATIM)
endfunction()

function(orvo_finish_module target)
    get_target_property(bundle ${target} JUCE_PLUGIN_ARTEFACT_FILE)
    orvo_hide_symbols(${target})
    orvo_link_libraries_inside(${target})
    orvo_bind_to_older_systems(${target})
    orvo_fill_bundle(${target} "${bundle}")

    target_sources(${target} PRIVATE module/ProcessManners.cpp)
    orvo_strict_warnings(${target})
    foreach(call ${orvo_host_calls})
        target_link_options(${target} PRIVATE "LINKER:--wrap=${call}")
    endforeach()

    # The sanitizers' runtime stands in the host program, which must be built with the same ones.
    if(ORVO_SANITIZERS)
        get_target_property(link_options ${target} LINK_OPTIONS)
        list(REMOVE_ITEM link_options "-Wl,--no-undefined")
        set_target_properties(${target} PROPERTIES LINK_OPTIONS "${link_options}")
    endif()
endfunction()
