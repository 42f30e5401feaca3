# The committed samples are exactly what the generator writes: remade, they differ in no byte.
include(${CMAKE_CURRENT_LIST_DIR}/Support.cmake)

expect_exit(0 output ${MAKE_SAMPLES} ${OUT})
file(GLOB made RELATIVE ${OUT} ${OUT}/*)
list(LENGTH made count)
if(count LESS 9)
  message(FATAL_ERROR "make_samples wrote only: ${made}")
endif()
foreach(file ${made})
  execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${OUT}/${file} ${SAMPLES}/${file}
                  RESULT_VARIABLE differs)
  if(differs)
    message(FATAL_ERROR "examples/${file} is not what make_samples writes: run it on examples/")
  endif()
endforeach()
