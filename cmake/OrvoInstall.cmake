# cmake --install: a relocatable tree for packages, whole or by component: vst3, tools.

set(orvo_metainfo "${CMAKE_BINARY_DIR}/metainfo")

# orvo_install_plugin(component target folder name): the bundle, which carries the factory presets, and the manual if it
# was made. `folder` is where hosts look, whatever the system's library folder is called.
function(orvo_install_plugin component target folder name)
    get_target_property(bundle ${target} JUCE_PLUGIN_ARTEFACT_FILE)
    cmake_path(GET bundle FILENAME bundle_name)
    install(DIRECTORY "${bundle}" DESTINATION ${folder} USE_SOURCE_PERMISSIONS COMPONENT ${component})
    install(FILES "${orvo_manual}" DESTINATION ${folder}/${bundle_name}/Contents/Resources OPTIONAL COMPONENT ${component})

    set(orvo_format ${component})
    set(orvo_format_name ${name})
    configure_file("${PROJECT_SOURCE_DIR}/packaging/plugin.metainfo.xml.in"
        "${orvo_metainfo}/example.tessarin.orvo_${component}.metainfo.xml" @ONLY)
    install(FILES "${orvo_metainfo}/example.tessarin.orvo_${component}.metainfo.xml"
        DESTINATION share/metainfo COMPONENT ${component})
endfunction()

orvo_install_plugin(vst3 Orvo_VST3 lib/vst3 VST3)

configure_file("${PROJECT_SOURCE_DIR}/packaging/orvo-host.metainfo.xml.in"
    "${orvo_metainfo}/example.tessarin.orvo_host.metainfo.xml" @ONLY)
install(FILES "${orvo_metainfo}/example.tessarin.orvo_host.metainfo.xml" DESTINATION share/metainfo COMPONENT tools)
install(TARGETS orvo_host RUNTIME DESTINATION bin COMPONENT tools)
install(FILES "$<TARGET_FILE_DIR:orvo_host>/orvo-host.1" DESTINATION share/man/man1 COMPONENT tools)
install(FILES "$<TARGET_FILE_DIR:orvo_host>/orvo-host.bash" DESTINATION share/bash-completion/completions RENAME orvo-host
    COMPONENT tools)
