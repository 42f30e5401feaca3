# Shared by the example tests, which run as cmake -P scripts with -DSAMPLES (the examples folder),
# -DOUT (a scratch folder of their own) and the paths of the programs they run.

file(REMOVE_RECURSE ${OUT})
file(MAKE_DIRECTORY ${OUT})

# Runs the command given after the two arguments and fails unless it exits with code; its
# standard output and error, together, land in out_var.
function(expect_exit code out_var)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output
                  ERROR_VARIABLE output)
  if(NOT result STREQUAL "${code}")
    string(REPLACE ";" " " command "${ARGN}")
    message(FATAL_ERROR "${command}\nexited with ${result}, not ${code}:\n${output}")
  endif()
  set(${out_var} "${output}" PARENT_SCOPE)
endfunction()

function(expect_match text regex)
  if(NOT text MATCHES "${regex}")
    message(FATAL_ERROR "expected a match of\n  ${regex}\nin\n${text}")
  endif()
endfunction()
