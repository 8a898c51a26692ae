# Writes the example schemas with TOOL into DIR, then runs "TOOL check --schema DIR/SCHEMA DOCUMENT" and
# fails unless it exits with EXPECTED and its standard output matches OUTPUT_REGEX.
file(REMOVE_RECURSE ${DIR})
file(MAKE_DIRECTORY ${DIR})
execute_process(COMMAND ${TOOL} schema ${DIR} RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE err)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "zrxml schema exited with ${status}:\n${err}")
endif()
execute_process(COMMAND ${TOOL} check --schema ${DIR}/${SCHEMA} ${DOCUMENT}
                RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status EQUAL EXPECTED)
  message(FATAL_ERROR "exit status ${status}, expected ${EXPECTED}\nstdout:\n${out}\nstderr:\n${err}")
endif()
if(NOT out MATCHES "${OUTPUT_REGEX}")
  message(FATAL_ERROR "standard output does not match '${OUTPUT_REGEX}':\n${out}\nstderr:\n${err}")
endif()
if(DEFINED ERROR_REGEX AND NOT err MATCHES "${ERROR_REGEX}")
  message(FATAL_ERROR "standard error does not match '${ERROR_REGEX}':\n${err}")
endif()
