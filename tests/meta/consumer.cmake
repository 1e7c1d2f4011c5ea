# Installs the build, builds the consumer project against it, and runs that.
# Needs: SOURCE_DIR, BINARY_DIR, CONSUMER_DIR, WORK_DIR, GENERATOR.
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

# The installed program runs a scene with the installed plugins.
run(${CMAKE_COMMAND} -E env --unset=VYR_PLUGIN_PATH ${WORK_DIR}/prefix/bin/vyr --gl=none --steps 2
    ${SOURCE_DIR}/examples/010-falling-boxes.lua)

# The plugin of this tree against the installed toolkit, as a vendor builds it: one module stands for all.
run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${SOURCE_DIR} -B ${WORK_DIR}/vendor -DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix
    -DCMAKE_BUILD_TYPE=Release -DVYR_BUNDLED_TOOLKIT=OFF -DVYR_BUILD_TESTS=OFF -DVYR_BUILD_BENCHMARKS=OFF)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/vendor --target binding_vyrOSG_Tree binding_vyr_Wire)
