# The zephra executable end to end on the samples: exit status and the one-line message of usage
# errors, missing and unreadable files; fixed texts against the golden files; warnings and
# progress on stderr only, silenced by --quiet; no output left by a command that fails.
# Run as cmake -P with -DZEPHRA (the executable), -DSAMPLES (examples/), -DGOLDEN and -DOUT.

include(${SAMPLES}/tests/Support.cmake)  # a fresh OUT, expect_match
file(MAKE_DIRECTORY ${OUT}/failed)

# Runs zephra in the samples folder and fails unless it exits with code; sets OUT_TEXT and
# ERR_TEXT in the caller.
function(zephra code)
  execute_process(COMMAND ${ZEPHRA} ${ARGN} WORKING_DIRECTORY ${SAMPLES} RESULT_VARIABLE result
                  OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT result STREQUAL "${code}")
    string(REPLACE ";" " " command "${ARGN}")
    message(FATAL_ERROR "zephra ${command}\nexited with ${result}, not ${code}:\n${out}${err}")
  endif()
  set(OUT_TEXT "${out}" PARENT_SCOPE)
  set(ERR_TEXT "${err}" PARENT_SCOPE)
endfunction()

zephra(0 --version)
expect_match("${OUT_TEXT}" "^[0-9]+\\.[0-9]+\\.[0-9]+\n$")
zephra(0 convert --help)
expect_match("${OUT_TEXT}" "--window")

# One line, "zephra: ", naming what went wrong.
set(one_line "^zephra: [^\n]+\n$")
zephra(2)
expect_match("${ERR_TEXT}" "${one_line}")
zephra(2 render elevation.doc ${OUT}/e.png --range 9 1)
expect_match("${ERR_TEXT}" "${one_line}")
zephra(1 info missing.doc)
expect_match("${ERR_TEXT}" "^zephra: [^\n]*missing\\.doc[^\n]*\n$")
file(WRITE ${OUT}/unreadable.doc "columns : many\n")
zephra(1 info ${OUT}/unreadable.doc)
expect_match("${ERR_TEXT}" "^zephra: [^\n]*unreadable\\.doc[^\n]*\n$")

# Fixed texts; the JSON shape is part of the interface.
foreach(golden info_sample.txt info_sample.json vector_zones.txt palette_terrain.txt)
  if(golden STREQUAL "info_sample.txt")
    zephra(0 info --stats sample.doc)
  elseif(golden STREQUAL "info_sample.json")
    zephra(0 info sample.doc --stats --json)
  elseif(golden STREQUAL "vector_zones.txt")
    zephra(0 vector info zones.vec)
  else()
    zephra(0 palette show terrain.pal)
  endif()
  file(READ ${GOLDEN}/${golden} expected)
  if(NOT OUT_TEXT STREQUAL expected)
    message(FATAL_ERROR "output differs from ${golden}:\n${OUT_TEXT}")
  endif()
  expect_match("${ERR_TEXT}" "^$")  # no progress bar in a pipe
endforeach()

zephra(0 header get sample.doc "FLAG DEF'N")
expect_match("${OUT_TEXT}" "^No data\n$")

# A loss the format cannot avoid is said on stderr, unless --quiet; data stays on stdout.
zephra(0 convert elevation.doc ${OUT}/e.xyz)
expect_match("${ERR_TEXT}" "^zephra: warning: [^\n]*e\\.xyz: XYZ has no no-data marker")
expect_match("${OUT_TEXT}" "^wrote [^\n]*e\\.xyz: 40 x 30 real cells")
zephra(0 --quiet convert elevation.doc ${OUT}/e.xyz --overwrite)
expect_match("${OUT_TEXT}${ERR_TEXT}" "^$")

# A command that fails leaves nothing: not the output, not a temporary.
zephra(1 convert elevation.doc ${OUT}/failed/e.doc --to byte)
zephra(1 rasterize zones.shp ${OUT}/failed/z.tif --like elevation.doc --field NAME)
file(GLOB left ${OUT}/failed/*)
if(left)
  message(FATAL_ERROR "failed commands left ${left}")
endif()
