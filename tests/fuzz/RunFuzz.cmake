# Runs the fuzzer in a fresh folder: it has to end by itself, after all of its calls.
#   cmake -DVYR=<program> -DSCRIPT=<fuzz.lua> -DFOLDER=<folder> -DSEED=<n> -DCALLS=<n> -P RunFuzz.cmake
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
execute_process(
  COMMAND ${VYR} --gl=none ${SCRIPT} --seed ${SEED} --calls ${CALLS} --trace calls.txt
  WORKING_DIRECTORY ${FOLDER}
  RESULT_VARIABLE result
  OUTPUT_FILE ${FOLDER}/output.txt
  ERROR_FILE ${FOLDER}/messages.txt)
# Code 3: a call asked for a picture, which a run without graphics cannot have.
if(NOT result STREQUAL "0" AND NOT result STREQUAL "3")
  # The scripts' own text has bytes of every kind; the last lines are enough.
  execute_process(COMMAND tail -n 40 ${FOLDER}/messages.txt)
  message(FATAL_ERROR "seed ${SEED} ended with '${result}'; ${FOLDER}/calls.txt has the last calls")
endif()
file(STRINGS ${FOLDER}/output.txt summary REGEX "^seed ${SEED}: [0-9]+ calls")
if(NOT summary)
  message(FATAL_ERROR "seed ${SEED} ended before all of its calls; ${FOLDER}/calls.txt has the last ones")
endif()
message(STATUS "${summary}")
