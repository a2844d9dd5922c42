# What FactoryBankTest.cpp needs: the bank's table, the tracked files, and a recording (scripts/setup.sh installs both
# packages; some systems leave out documentation folders, where the first one lies). Included by orvo_tests.cmake.

find_file(ORVO_RECORDING
    NAMES geetar.wav desktop-login.wav
    PATHS /usr/share/doc/chuck-data/examples/special /usr/share/sounds/deepin/stereo
    NO_DEFAULT_PATH
    REQUIRED
    DOC "A recording for the tests of the factory presets")

target_link_libraries(orvo_tests PRIVATE orvo_bank_core)
target_compile_definitions(orvo_tests PRIVATE
    ORVO_RECORDING="${ORVO_RECORDING}"
    ORVO_PRESETS="${PROJECT_SOURCE_DIR}/presets")
