# Compiler and linker settings for every target, JUCE's included.

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

# Sanitized builds have a build type of their own: optimised a little, with line numbers, and without assertions.
set(CMAKE_C_FLAGS_SANITIZE "-O1 -g1 -fno-omit-frame-pointer")
set(CMAKE_CXX_FLAGS_SANITIZE "-O1 -g1 -fno-omit-frame-pointer")

option(ORVO_USE_LLD "Link with lld where it is installed" ON)
find_program(ORVO_LLD ld.lld)
# A cross compiler takes no linker of this machine.
if(ORVO_USE_LLD AND ORVO_LLD AND NOT CMAKE_CROSSCOMPILING)
    add_link_options(-fuse-ld=lld)
endif()

# The same sums on every processor: where a fused multiply-add belongs to the instructions that a compiler may always use,
# as on ARM, it would otherwise make other results of our filters and of JUCE's, which are also in headers.
add_compile_options(-ffp-contract=off)

# A program or module keeps what it can reach: JUCE's modules hold much that nobody here calls.
add_compile_options(-ffunction-sections -fdata-sections)
if(NOT ORVO_SANITIZERS)
    add_link_options(LINKER:--gc-sections)
endif()

if(ORVO_SANITIZERS)
    add_compile_options(-fsanitize=${ORVO_SANITIZERS} -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${ORVO_SANITIZERS})
endif()

# Nothing that is released names the folder that it was built in: a commit makes the same module everywhere. A debugger
# finds the sources by those names, so debug builds keep them.
function(orvo_hide_folder folder replacement)
    add_compile_options($<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${folder}=${replacement}>)
endfunction()

orvo_hide_folder("${PROJECT_SOURCE_DIR}" .)
orvo_hide_folder("${PROJECT_BINARY_DIR}" ./build)

# The VST3 SDK spells four-character codes.
add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-multichar>)
