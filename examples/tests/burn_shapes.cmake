# burn_shapes writes a raster that reopens, with each zone's number in its cells, nothing in the
# lake cut out of the park, and the same number in both parts of the farmland.
include(${CMAKE_CURRENT_LIST_DIR}/Support.cmake)

expect_exit(0 output ${BURN_SHAPES} ${SAMPLES}/zones.shp ${OUT}/zones.doc 100)
expect_match("${output}" "zones\\.img: 34 x 26 cells\n")

function(expect_cell x y value)
  expect_exit(0 output ${PRINT_CELL} ${OUT}/zones.img ${x} ${y})
  expect_match("${output}" "x 500300 \\.\\. 503700, y 6100200 \\.\\. 6102800 \\(plane\\)\n")
  expect_match("${output}" ": ${value}\n$")
endfunction()
expect_cell(501000 6102200 1)
expect_cell(502300 6102700 2)
expect_cell(502900 6102100 "no data \\(Missing Data\\)")
expect_cell(501000 6100600 3)
expect_cell(503000 6100500 3)
expect_cell(502000 6101200 "no data \\(Missing Data\\)")
