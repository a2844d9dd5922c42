# What is released; neither target is part of "all".

# The target `package`: the archive in out/, with the bundles, the licences, and scripts that install them.
get_target_property(orvo_vst3_bundle Orvo_VST3 JUCE_PLUGIN_ARTEFACT_FILE)
get_target_property(orvo_lv2_bundle Orvo_LV2 JUCE_PLUGIN_ARTEFACT_FILE)
get_filename_component(orvo_juce_root "${JUCE_MODULES_DIR}" DIRECTORY)

add_custom_target(package
    COMMAND "${PROJECT_SOURCE_DIR}/packaging/make_archive.sh"
        "${PROJECT_VERSION}" "${orvo_vst3_bundle}" "${orvo_lv2_bundle}" "${orvo_manual}" "${orvo_juce_root}" "${PROJECT_SOURCE_DIR}/out"
    DEPENDS Orvo_VST3 Orvo_LV2 "${orvo_manual}"
    COMMENT "Packing the archive"
    VERBATIM)

# The target `packages`: Debian's, in out/, of what is built.
set(orvo_debian_architecture amd64)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64")
    set(orvo_debian_architecture arm64)
endif()

add_custom_target(packages
    COMMAND "${PROJECT_SOURCE_DIR}/packaging/make_packages.sh"
        "${PROJECT_VERSION}" ${orvo_debian_architecture} "${CMAKE_BINARY_DIR}" "${orvo_juce_root}" "${PROJECT_SOURCE_DIR}/out"
    DEPENDS Orvo_VST3 Orvo_LV2 orvo_host "${orvo_manual}"
    COMMENT "Packing for Debian"
    VERBATIM)
