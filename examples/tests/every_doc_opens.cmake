# Every raster header in examples/ opens with its data file.
include(${CMAKE_CURRENT_LIST_DIR}/Support.cmake)

file(GLOB docs ${SAMPLES}/*.doc)
list(LENGTH docs count)
if(count LESS 3)
  message(FATAL_ERROR "expected the three sample rasters in ${SAMPLES}, found: ${docs}")
endif()
foreach(doc ${docs})
  expect_exit(0 output ${PRINT_CELL} ${doc})
  expect_match("${output}" "[0-9]+ x [0-9]+ cells")
endforeach()
