# Succeeds when two runs of the generator over FOLDER/NAME.pkg write the same bytes, in the code and in the manifest.
foreach(run 1 2)
  execute_process(
    COMMAND ${TOLUA} -L ${BINDING}/hook.lua -E generator=${BINDING} -E source=${NAME}.pkg -E manifest=${OUTPUT}${run}.txt -n
            vyrTest_${NAME} -o ${OUTPUT}${run}.cpp ${NAME}.pkg
    WORKING_DIRECTORY ${FOLDER} COMMAND_ERROR_IS_FATAL ANY)
  # A date in the output would change with the second.
  execute_process(COMMAND ${CMAKE_COMMAND} -E sleep 1.1)
endforeach()
foreach(kind cpp txt)
  file(READ ${OUTPUT}1.${kind} first)
  file(READ ${OUTPUT}2.${kind} second)
  if(NOT first STREQUAL second)
    message(FATAL_ERROR "two runs differ in their ${kind} file")
  endif()
endforeach()
