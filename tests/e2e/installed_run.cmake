# Installs the build folder into a fresh prefix and runs the installed programs from a folder of
# their own, with none of the variables that point them elsewhere: the editor must find its data
# and its module under the prefix, and kuvo-anim must read an installed sample. Variables:
# BUILD_DIR (the build folder), WORK (a scratch folder, emptied first), DATADIR (the data folder
# under the prefix).
function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err
    WORKING_DIRECTORY ${WORK}/elsewhere TIMEOUT 120)
  if(NOT status STREQUAL "0")
    message(FATAL_ERROR "${what} failed with status ${status}:\n${out}${err}")
  endif()
  set(output "${out}${err}" PARENT_SCOPE)
endfunction()

function(expect_output text)
  string(FIND "${output}" "${text}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "the output lacks \"${text}\":\n${output}")
  endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK}/elsewhere)
set(prefix ${WORK}/prefix)
unset(ENV{KUVO_DATA_DIR})
unset(ENV{KUVO_PLUGIN_DIR})
run("cmake --install" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

foreach(file share/applications/kuvo-editor.desktop share/icons/hicolor/scalable/apps/kuvo-editor.svg
    share/man/man1/kuvo-editor.1.gz share/man/man1/kuvo-anim.1.gz share/doc/kuvo/track-editor.md)
  if(NOT EXISTS ${prefix}/${file})
    message(FATAL_ERROR "the installation lacks ${file}")
  endif()
endforeach()

run("the installed kuvo-editor" ${prefix}/bin/kuvo-editor --headless --screenshot ${WORK}/installed.png)
expect_output("opened scene ${prefix}/${DATADIR}/samples/demo.world")
if(NOT EXISTS ${WORK}/installed.png)
  message(FATAL_ERROR "the installed kuvo-editor wrote no screenshot:\n${output}")
endif()
run("the installed kuvo-anim" ${prefix}/bin/kuvo-anim validate ${prefix}/${DATADIR}/samples/demo.anim)
expect_output("demo.anim: valid")
