# cmake --install: a relocatable tree for packages, whole or by component: vst3, lv2, tools.

set(orvo_metainfo "${CMAKE_BINARY_DIR}/metainfo")

# The bundle of a format, which carries the factory presets, and the manual if it was made. Hosts look in lib/vst3 and
# lib/lv2, whatever the system's library folder is called.
function(orvo_install_plugin orvo_format_name)
    string(TOLOWER ${orvo_format_name} component)
    get_target_property(bundle Orvo_${orvo_format_name} JUCE_PLUGIN_ARTEFACT_FILE)
    install(DIRECTORY "${bundle}" DESTINATION lib/${component} USE_SOURCE_PERMISSIONS COMPONENT ${component})
    install(FILES "${orvo_manual}"
        DESTINATION lib/${component}/Orvo.${component}/${orvo_resources_${orvo_format_name}} OPTIONAL COMPONENT ${component})

    set(orvo_format ${component})
    configure_file("${PROJECT_SOURCE_DIR}/packaging/plugin.metainfo.xml.in"
        "${orvo_metainfo}/example.tessarin.orvo_${component}.metainfo.xml" @ONLY)
    install(FILES "${orvo_metainfo}/example.tessarin.orvo_${component}.metainfo.xml"
        DESTINATION share/metainfo COMPONENT ${component})
endfunction()

orvo_install_plugin(VST3)
orvo_install_plugin(LV2)

configure_file("${PROJECT_SOURCE_DIR}/packaging/orvo-host.metainfo.xml.in"
    "${orvo_metainfo}/example.tessarin.orvo_host.metainfo.xml" @ONLY)
install(FILES "${orvo_metainfo}/example.tessarin.orvo_host.metainfo.xml" DESTINATION share/metainfo COMPONENT tools)
install(TARGETS orvo_host RUNTIME DESTINATION bin COMPONENT tools)
install(FILES "$<TARGET_FILE_DIR:orvo_host>/orvo-host.1" DESTINATION share/man/man1 COMPONENT tools)
install(FILES "$<TARGET_FILE_DIR:orvo_host>/orvo-host.bash" DESTINATION share/bash-completion/completions RENAME orvo-host
    COMPONENT tools)
