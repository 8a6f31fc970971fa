# Runs a fuzzer once, always alike: what it finds goes to a folder that starts empty, since
# inputs found before would change the run, and the corpus is only read.
#   FUZZER, RUNS, CORPUS, FOUND

file(GLOB seeds "${CORPUS}/*")
if(NOT seeds)
  message(FATAL_ERROR "${CORPUS} holds no inputs.")
endif()
file(REMOVE_RECURSE "${FOUND}")
file(MAKE_DIRECTORY "${FOUND}/inputs")
execute_process(
  COMMAND "${FUZZER}" -runs=${RUNS} -seed=1 -max_len=4096 -timeout=10 -use_value_profile=1
          -print_final_stats=1 "-artifact_prefix=${FOUND}/" "${FOUND}/inputs" "${CORPUS}"
  RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "Ended with ${result}. The input is in ${FOUND}.")
endif()
