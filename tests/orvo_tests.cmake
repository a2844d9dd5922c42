# Tests of the plug-in: linked to its shared code, so that JUCE is not compiled again. Included by CMakeLists.txt.

file(GLOB orvo_test_sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR}
    state/*.cpp settings/*.cpp widgets/*.cpp look/*.cpp presets/*.cpp core/*.cpp browser/*.cpp dialogs/*.cpp editor/*.cpp
    module/*.cpp support/*.cpp)

# The allocation guard's own test runs with the DSP tests.
list(REMOVE_ITEM orvo_test_sources support/AllocationGuardTest.cpp)

add_executable(orvo_tests ${orvo_test_sources})
target_include_directories(orvo_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_definitions(orvo_tests PRIVATE ORVO_APPEARANCE="${PROJECT_SOURCE_DIR}/docs/appearance.md")
target_link_libraries(orvo_tests PRIVATE orvo_offscreen orvo_reference orvo_scratch LunaBinary GTest::gtest)
orvo_strict_warnings(orvo_tests)
orvo_precompile(orvo_tests <juce_audio_utils/juce_audio_utils.h> <juce_dsp/juce_dsp.h> <gtest/gtest.h>)
gtest_discover_tests(orvo_tests DISCOVERY_TIMEOUT 60)
include(presets/factory_bank.cmake)
