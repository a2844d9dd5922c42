# Writes RESOURCES, a bundle's folder of that name, anew: INFO, if it is named, as "moduleinfo.json", and of PRESETS what
# belongs to the bank, as "Factory". The same files of one commit, whatever else lies in the folder.
file(REMOVE_RECURSE "${RESOURCES}")
file(MAKE_DIRECTORY "${RESOURCES}")
if(INFO)
    file(COPY_FILE "${INFO}" "${RESOURCES}/moduleinfo.json")
endif()
file(COPY "${PRESETS}/" DESTINATION "${RESOURCES}/Factory"
    NO_SOURCE_PERMISSIONS
    FILES_MATCHING PATTERN "*.tpre" PATTERN "_description.txt")
