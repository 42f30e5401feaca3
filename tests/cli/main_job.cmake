# The README's main job runs on the samples and makes what it lists: statistics of every raster,
# the reclass, the rasterized zones, the elevation in every format, the land cover in every cell
# type and the rendered PNG, each file there and not empty.
# Run as cmake -P with -DZEPHRA, -DSAMPLES (examples/) and -DOUT.

execute_process(COMMAND bash ${SAMPLES}/main_job.sh ${OUT} ${ZEPHRA} RESULT_VARIABLE result
                OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "main_job.sh exited with ${result}:\n${out}${err}")
endif()

set(made elevation-info.txt landcover-info.txt sample-info.txt temperature-info.txt
         rainfall-info.txt elevation-bands.doc elevation-bands.img zones.doc zones.img
         elevation.doc elevation.img elevation-text.doc elevation-text.txt elevation.asc
         elevation.xyz elevation.tif landcover-byte.img landcover-integer.img
         landcover-integer32.img landcover-real.img elevation.png)
string(REGEX MATCH "the main job wrote into [^\n]*:\n(.*)$" listing "${out}")
foreach(file ${made})
  if(NOT listing MATCHES "(^|\n)${file}\n")
    message(FATAL_ERROR "the closing list lacks ${file}:\n${listing}")
  endif()
  file(SIZE ${OUT}/${file} size)
  if(size EQUAL 0)
    message(FATAL_ERROR "${file} is empty")
  endif()
endforeach()
if(NOT out MATCHES "Statistics: +2592 cells, 24 no data")
  message(FATAL_ERROR "no statistics of the temperature raster in:\n${out}")
endif()
