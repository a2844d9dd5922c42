# orvo_finish_module(format): links the module of a format so that hosts on all machines can load it, and fills its bundle.

option(ORVO_STATIC_FFTW "Link FFTW into the module, so that it does not ask users' machines for it" ON)
option(ORVO_STATIC_JPEG "Link libjpeg into the module: distributions have it under two names" ON)
option(ORVO_STATIC_RUNTIME "Link the C++ library into the module, so that it runs on older systems" ON)

# The plug-in's name for LV2 hosts, which projects keep.
set(ORVO_LV2_URI "https://tessarin.example/plugins/orvo")

# Where a format's bundle has its resources.
set(orvo_resources_VST3 Contents/Resources)
set(orvo_resources_LV2 Resources)

# What belongs to the host's process is answered by source/module/ProcessManners.cpp.
set(orvo_host_calls access chdir dlsym execv execvp fork getenv kill pipe setenv setlocale setrlimit)

# What stands between a module and its host, of whichever format. See source/module/OlderSystems.cpp, which knows of these
# processors.
function(orvo_add_guest_manners)
    set(sources module/ProcessManners.cpp)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|aarch64)$" AND NOT ORVO_SANITIZERS)
        list(APPEND sources module/OlderSystems.cpp)
        target_link_options(Orvo_VST3 PRIVATE "LINKER:--wrap=hypot" "LINKER:--wrap=hypotf")
        target_link_options(Orvo_LV2 PRIVATE "LINKER:--wrap=hypot" "LINKER:--wrap=hypotf")
    endif()
    orvo_objects(orvo_guest_manners ${sources})
endfunction()

# A host sees the format's entry points and nothing of the libraries inside, which the linker may so leave out, too.
function(orvo_hide_symbols target format)
    set(exports "${PROJECT_SOURCE_DIR}/source/module/${format}.exports")
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

# The factory presets, and what a VST3 host wants to know without loading the module (LV2 hosts: tools/lv2);
# scripts/package.sh adds the manual.
function(orvo_fill_bundle target format bundle)
    set(script "${PROJECT_SOURCE_DIR}/cmake/fill_bundle.cmake")
    set(resources "${bundle}/${orvo_resources_${format}}")
    set(info "")
    if(format STREQUAL "VST3")
        set(info "${CMAKE_CURRENT_BINARY_DIR}/moduleinfo.json")
        configure_file("${PROJECT_SOURCE_DIR}/packaging/moduleinfo.json.in" "${info}" @ONLY)
    endif()
    file(GLOB_RECURSE presets CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/presets/*.tpre" "${PROJECT_SOURCE_DIR}/presets/_description.txt")

    # JUCE takes the file away whenever it links, so the rest is written then, too.
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${script}" "${info}" ${presets})
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_COMMAND} "-DRESOURCES=${resources}" "-DINFO=${info}"
            "-DPRESETS=${PROJECT_SOURCE_DIR}/presets" -P "${script}"
        COMMENT "Filling the bundle"
        VERBATIM)
endfunction()

function(orvo_finish_module format)
    set(target Orvo_${format})
    get_target_property(bundle ${target} JUCE_PLUGIN_ARTEFACT_FILE)
    orvo_hide_symbols(${target} ${format})
    orvo_link_libraries_inside(${target})
    orvo_fill_bundle(${target} ${format} "${bundle}")

    # Also when the program that describes it is another.
    if(format STREQUAL "LV2")
        set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS $<TARGET_FILE:juce_lv2_helper>)
    endif()

    target_link_libraries(${target} PRIVATE orvo_guest_manners)
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
