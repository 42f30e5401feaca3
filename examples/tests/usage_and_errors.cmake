# Bad usage exits with 2 and the usage text; a failure of the library with 1 and "name: message".
include(${CMAKE_CURRENT_LIST_DIR}/Support.cmake)

foreach(program PRINT_CELL CONVERT BURN_SHAPES)
  get_filename_component(name ${${program}} NAME_WE)
  expect_exit(2 output ${${program}})
  expect_match("${output}" "^usage: ${name} ")
endforeach()
expect_exit(2 output ${PRINT_CELL} ${SAMPLES}/sample.doc 111.5)
expect_exit(2 output ${PRINT_CELL} ${SAMPLES}/sample.doc 111.5 north)
expect_exit(2 output ${BURN_SHAPES} ${SAMPLES}/zones.shp ${OUT}/zones.doc 0)

expect_exit(1 output ${PRINT_CELL} ${SAMPLES}/sample.doc 120 -41)
expect_match("${output}" "(^|\n)print_cell: Lng is outside map bounds\n")
expect_exit(1 output ${CONVERT} ${OUT}/missing.doc ${OUT}/missing)
expect_match("${output}" "^convert: .*missing\\.doc")
expect_exit(1 output ${BURN_SHAPES} ${OUT}/missing.shp ${OUT}/burned.doc 10)
expect_match("${output}" "^burn_shapes: .*missing\\.shp")
