# Renders one example without a display and compares the picture with its golden image.
#   cmake -DVYR=<program> -DCOMPARE=<program> -DSCRIPT=<file> -DTIME=<s> -DGOLDEN=<png> -DOUT=<folder> -DNAME=<name>
#         -DMEAN=<levels> -DSHARE=<part> [-DARGS=<for the script>] [-DUPDATE=ON] -P RunImageTest.cmake
# UPDATE makes the picture the new golden image instead; look at it before committing it.
file(MAKE_DIRECTORY ${OUT})
set(picture ${OUT}/${NAME}.png)
file(REMOVE ${picture} ${OUT}/${NAME}-difference.png)
separate_arguments(arguments UNIX_COMMAND "${ARGS}")
math(EXPR duration "${TIME} + 1")
execute_process(COMMAND ${VYR} --gl=egl --size 640x360 --seed 1 --duration ${duration} --shot t=${TIME}:${picture} ${SCRIPT} ${arguments}
                WORKING_DIRECTORY ${OUT} RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${SCRIPT} ended with ${status}")
endif()
if(UPDATE)
  file(COPY_FILE ${picture} ${GOLDEN} ONLY_IF_DIFFERENT)
  return()
endif()
execute_process(COMMAND ${COMPARE} ${GOLDEN} ${picture} ${OUT}/${NAME}-difference.png ${MEAN} ${SHARE}
                RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${picture} differs from ${GOLDEN}")
endif()
