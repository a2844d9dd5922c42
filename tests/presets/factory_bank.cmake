# What FactoryBankTest.cpp needs: the bank's table and the tracked files. Included by orvo_tests.cmake.

target_link_libraries(orvo_tests PRIVATE orvo_bank_core)
target_compile_definitions(orvo_tests PRIVATE
    ORVO_PRESETS="${PROJECT_SOURCE_DIR}/presets")
