# Runs TOOL with the arguments in the list ARGS and fails unless it exits with EXPECTED and, when given, its
# standard output matches OUTPUT_REGEX.

execute_process(COMMAND ${TOOL} ${ARGS} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status EQUAL EXPECTED)
  message(FATAL_ERROR "exit status ${status}, expected ${EXPECTED}\nstdout:\n${out}\nstderr:\n${err}")
endif()
if(DEFINED OUTPUT_REGEX AND NOT out MATCHES "${OUTPUT_REGEX}")
  message(FATAL_ERROR "standard output does not match '${OUTPUT_REGEX}':\n${out}")
endif()
