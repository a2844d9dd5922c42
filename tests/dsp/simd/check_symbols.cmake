# Fails unless OBJECTS are as many as SETS of instructions, and each of them defines one symbol that the linker sees, the table
# of its kernels, and that strongly.
list(LENGTH OBJECTS count)
if(NOT count EQUAL SETS)
    message(FATAL_ERROR "expected ${SETS} objects: ${OBJECTS}")
endif()

foreach(object IN LISTS OBJECTS)
    execute_process(COMMAND ${NM} --extern-only --defined-only --demangle "${object}"
        OUTPUT_VARIABLE symbols OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    if(NOT symbols MATCHES "^[0-9a-f]+ [DRB] simd::[a-z0-9]+Kernels$")
        message(FATAL_ERROR "${object} defines more than its table:\n${symbols}")
    endif()
endforeach()
