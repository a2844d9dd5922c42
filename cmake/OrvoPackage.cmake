# The target `package`: the release's archive in out/, with the module's bundle, the licences, and scripts that install
# it. Not part of "all".

get_target_property(orvo_bundle Orvo_VST3 JUCE_PLUGIN_ARTEFACT_FILE)
get_filename_component(orvo_juce_root "${JUCE_MODULES_DIR}" DIRECTORY)

add_custom_target(package
    COMMAND "${PROJECT_SOURCE_DIR}/packaging/make_archive.sh"
        "${PROJECT_VERSION}" "${orvo_bundle}" "${orvo_manual}" "${orvo_juce_root}" "${PROJECT_SOURCE_DIR}/out"
    DEPENDS Orvo_VST3 "${orvo_manual}"
    COMMENT "Packing the archive"
    VERBATIM)
