# orvo_strict_warnings(target): a strict warning level on the target's own sources.
#
# The flags are set per source file and not per target: JUCE's modules are compiled inside our targets and are
# not ours to warn about. Call it in the folder that defines the target, after its sources are known.
function(orvo_strict_warnings target)
    set(flags
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wdouble-promotion -Wold-style-cast
        -Wcast-align -Wcast-qual -Wformat=2 -Wnon-virtual-dtor -Woverloaded-virtual -Wunused -Wundef)
    if(ORVO_WARNINGS_AS_ERRORS)
        list(APPEND flags -Werror)
    endif()

    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "\\.cpp$")
    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS "${flags}")
endfunction()
