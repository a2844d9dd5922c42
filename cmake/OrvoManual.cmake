# The target `manual`: the user's manual, a PDF in out/, with pictures that are taken from the built module. Not part of
# "all": it needs asciidoctor-pdf, a virtual screen and one or two minutes.

set(orvo_manual "${PROJECT_SOURCE_DIR}/out/Orvo Manual ${PROJECT_VERSION}.pdf")
set(orvo_manual_sources "${PROJECT_SOURCE_DIR}/docs/manual")
set(orvo_manual_pictures "${CMAKE_BINARY_DIR}/manual/pictures")

add_custom_command(
    OUTPUT "${orvo_manual_pictures}.taken"
    COMMAND "${PROJECT_SOURCE_DIR}/scripts/lib/with_screen.sh" "${orvo_manual_sources}/take_pictures.sh"
        "$<TARGET_FILE:orvo_host>" "$<TARGET_FILE:orvo_gallery>" "${orvo_manual_pictures}"
    COMMAND "${CMAKE_COMMAND}" -E touch "${orvo_manual_pictures}.taken"
    DEPENDS Orvo_VST3 orvo_host orvo_gallery "${orvo_manual_sources}/take_pictures.sh"
    COMMENT "Taking the manual's pictures"
    VERBATIM)

add_custom_command(
    OUTPUT "${orvo_manual}"
    COMMAND "${orvo_manual_sources}/make_manual.sh" "${orvo_manual_pictures}" "${orvo_manual}" "${PROJECT_VERSION}"
    DEPENDS
        "${orvo_manual_pictures}.taken"
        "${orvo_manual_sources}/make_manual.sh"
        "${orvo_manual_sources}/manual.adoc"
        "${orvo_manual_sources}/manual-theme.yml"
        "${orvo_manual_sources}/signal-flow.svg"
        "${PROJECT_SOURCE_DIR}/packaging/libraries.txt"
    COMMENT "Setting the manual"
    VERBATIM)

add_custom_target(manual DEPENDS "${orvo_manual}")
