# cmake --install: a relocatable tree for packages. It holds the factory presets to be copied from; the plug-in reads
# them from the user's configuration folder, where scripts/install.sh puts them.

get_target_property(orvo_bundle Orvo_VST3 JUCE_PLUGIN_ARTEFACT_FILE)

# Hosts look in lib/vst3, whatever the system's library folder is called.
install(DIRECTORY "${orvo_bundle}" DESTINATION lib/vst3 USE_SOURCE_PERMISSIONS)
install(TARGETS orvo_host RUNTIME DESTINATION bin)
install(DIRECTORY presets/ DESTINATION share/orvo/presets/Factory
    FILES_MATCHING PATTERN "*.tpre" PATTERN "_description.txt")
install(FILES LICENSE DESTINATION share/doc/orvo)
