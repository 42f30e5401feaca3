# convert writes both files, with the cells of the sample.
include(${CMAKE_CURRENT_LIST_DIR}/Support.cmake)

expect_exit(0 output ${CONVERT} ${SAMPLES}/sample.doc ${OUT}/sample)

file(READ ${OUT}/sample.asc grid)
expect_match("${grid}" "^ncols        4\r?\nnrows        3\r?\nxllcorner    110\\.0000\r?\n")
expect_match("${grid}" "NODATA_value -9999\r?\n17\\.2500 16\\.5000 15\\.7500 15\\.0000\r?\n")
expect_match("${grid}" "\r?\n14\\.2500 13\\.5000 -9999 12\\.0000\r?\n-9999 10\\.2500 9\\.5000 8\\.5000\r?\n$")

# A TIFF of either byte order, classic or big.
file(READ ${OUT}/sample.tif magic LIMIT 4 HEX)
expect_match("${magic}" "^(49492a00|4d4d002a|49492b00|4d4d002b)$")
file(SIZE ${OUT}/sample.tif size)
if(size LESS 48)
  message(FATAL_ERROR "sample.tif has only ${size} bytes: no room for 12 float cells")
endif()
