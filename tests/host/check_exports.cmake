# Fails if the module shows the linker anything but EXPORTS, or does not bring its own FFTW.
execute_process(COMMAND ${NM} --dynamic --defined-only "${MODULE}" OUTPUT_VARIABLE defined COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^ \n]+\n" names "${defined}")
list(SORT names)
list(TRANSFORM names STRIP)
list(JOIN names "," names)
if(NOT names STREQUAL EXPORTS)
    message(FATAL_ERROR "the module exports:\n${defined}")
endif()

execute_process(COMMAND ${NM} --dynamic --undefined-only "${MODULE}" OUTPUT_VARIABLE undefined COMMAND_ERROR_IS_FATAL ANY)
if(undefined MATCHES "fftw")
    message(FATAL_ERROR "the module wants FFTW from outside")
endif()

execute_process(COMMAND ${NM} "${MODULE}" OUTPUT_VARIABLE all COMMAND_ERROR_IS_FATAL ANY)
if(NOT all MATCHES " t fftwf_execute\n")
    message(FATAL_ERROR "the module does not contain FFTW, or does not hide it")
endif()
