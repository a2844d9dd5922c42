# cmake --install: a relocatable tree for packages. The bundle carries the factory presets, and the manual if it was made.

get_target_property(orvo_bundle Orvo_VST3 JUCE_PLUGIN_ARTEFACT_FILE)

# Hosts look in lib/vst3, whatever the system's library folder is called.
install(DIRECTORY "${orvo_bundle}" DESTINATION lib/vst3 USE_SOURCE_PERMISSIONS)
install(FILES "${PROJECT_SOURCE_DIR}/out/Orvo Manual ${PROJECT_VERSION}.pdf" DESTINATION lib/vst3/Orvo.vst3/Contents/Resources
    OPTIONAL)
install(TARGETS orvo_host RUNTIME DESTINATION bin)
install(FILES LICENSE DESTINATION share/doc/orvo)
