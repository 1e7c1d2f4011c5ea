# Succeeds when the generator fails on FOLDER/NAME.pkg, names the file and leaves no output.
execute_process(
  COMMAND ${TOLUA} -L ${BINDING}/hook.lua -E generator=${BINDING} -E source=folder/${NAME}.pkg -n vyrTest_${NAME} -o ${OUTPUT} ${NAME}.pkg
  WORKING_DIRECTORY ${FOLDER}
  RESULT_VARIABLE code
  OUTPUT_VARIABLE output
  ERROR_VARIABLE message)
if(code EQUAL 0)
  message(FATAL_ERROR "the generator accepted ${NAME}.pkg")
endif()
if(NOT message MATCHES "folder/${NAME}\\.pkg: .")
  message(FATAL_ERROR "the message does not name the file: ${message}")
endif()
if(EXISTS ${OUTPUT})
  message(FATAL_ERROR "${OUTPUT} was left behind")
endif()
message(STATUS "${message}")
