# Fails the build when the binding generator left no output for SOURCE.
if(NOT EXISTS "${OUTPUT}")
  message(FATAL_ERROR "${SOURCE}: the binding generator wrote no ${OUTPUT}")
endif()
