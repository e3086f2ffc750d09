# Runs one kuvo-editor command line and checks its exit status, what it printed and the files it
# wrote. Variables: COMMAND (the words joined by "|"), STATUS (the expected exit status), OUTPUT (a regular
# expression the combined stdout and stderr must match, optional), FILE (a file the run must
# leave behind, optional), COPY_FROM (a file copied to FILE before the run, optional), FILE_MATCHES
# (a regular expression FILE's content must match after the run, optional), PLUGIN_DIR
# (KUVO_PLUGIN_DIR for the run, optional).
if(DEFINED PLUGIN_DIR)
  set(ENV{KUVO_PLUGIN_DIR} "${PLUGIN_DIR}")
endif()
if(DEFINED FILE)
  file(REMOVE "${FILE}")
  if(DEFINED COPY_FROM)
    file(COPY_FILE "${COPY_FROM}" "${FILE}")
  endif()
endif()
string(REPLACE "|" ";" command "${COMMAND}")
execute_process(COMMAND ${command} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err TIMEOUT 120)
set(all "${out}${err}")
if(NOT status STREQUAL "${STATUS}")
  message(FATAL_ERROR "exit status ${status}, expected ${STATUS}; output:\n${all}")
endif()
if(DEFINED OUTPUT AND NOT all MATCHES "${OUTPUT}")
  message(FATAL_ERROR "output does not match \"${OUTPUT}\":\n${all}")
endif()
if(DEFINED FILE AND NOT EXISTS "${FILE}")
  message(FATAL_ERROR "the run did not write ${FILE}; output:\n${all}")
endif()
if(DEFINED FILE_MATCHES)
  file(READ "${FILE}" content)
  if(NOT content MATCHES "${FILE_MATCHES}")
    message(FATAL_ERROR "${FILE} does not match \"${FILE_MATCHES}\":\n${content}")
  endif()
endif()
message(STATUS "${all}")
