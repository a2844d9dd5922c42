# orvo_embed_resources(target files...): a static library that holds the files in the namespace and header named like
# the target, "cog.svg" as `cog_svg` with `cog_svgSize` and under its name for getNamedResource. JUCE has this too, by way of
# a program of its own, to build which takes longer than all of our sources.
function(orvo_embed_resources target)
    set(folder "${CMAKE_CURRENT_BINARY_DIR}/${target}")
    set(script "${PROJECT_SOURCE_DIR}/cmake/embed_resources.cmake")
    list(JOIN ARGN "|" files)

    add_custom_command(
        OUTPUT "${folder}/${target}.h" "${folder}/${target}.cpp"
        COMMAND ${CMAKE_COMMAND} "-DNAME=${target}" "-DFOLDER=${folder}" "-DFILES=${files}" -P "${script}"
        DEPENDS ${ARGN} "${script}"
        COMMENT "Embedding resources"
        VERBATIM)

    add_library(${target} STATIC "${folder}/${target}.cpp" "${folder}/${target}.h")
    target_include_directories(${target} INTERFACE "${folder}")
endfunction()
