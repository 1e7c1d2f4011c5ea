# Installs the build, builds the consumer project against it, and runs that.
# Needs: BINARY_DIR, CONSUMER_DIR, WORK_DIR, GENERATOR.
file(REMOVE_RECURSE ${WORK_DIR})
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE code OUTPUT_VARIABLE text ERROR_VARIABLE text)
  if(NOT code EQUAL 0)
    message(FATAL_ERROR "${ARGN}: ${code}\n${text}")
  endif()
endfunction()

run(${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${WORK_DIR}/prefix)
run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${CONSUMER_DIR} -B ${WORK_DIR}/build -DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix
    -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${WORK_DIR}/build/consumer)
