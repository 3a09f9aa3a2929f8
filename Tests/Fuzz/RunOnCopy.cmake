# Runs a fuzzer on a copy of its corpus, so that what it finds does not land among the sources.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK}/found)
file(GLOB seeds ${CORPUS}/*)
if(NOT seeds)
  message(FATAL_ERROR "There is no seed in ${CORPUS}.")
endif()
file(COPY ${seeds} DESTINATION ${WORK}/corpus)
execute_process(
  COMMAND ${FUZZER} ${WORK}/corpus -runs=20000 -max_total_time=5 -max_len=8192 -artifact_prefix=${WORK}/found/
  COMMAND_ERROR_IS_FATAL ANY)
