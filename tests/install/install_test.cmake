# Installs the build into a fresh prefix and uses it as a user would: the installed tool runs from
# there, and a small program builds and runs against it through find_package and through
# pkg-config. Arguments: BUILD_DIR, SOURCE_DIR, WORK_DIR, SAMPLE, CXX.
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)
set(consumer ${SOURCE_DIR}/tests/install/consumer)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "failed (${status}): ${ARGN}\n${out}${err}")
  endif()
  set(output "${out}" PARENT_SCOPE)
endfunction()

function(expect_size program)
  run(${program} ${ARGN} ${SAMPLE})
  if(NOT output MATCHES "[0-9]+ x [0-9]+|columns")
    message(FATAL_ERROR "${program} printed no raster size:\n${output}")
  endif()
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
# Nothing but the prefix tells the installed programs where the library is.
unset(ENV{LD_LIBRARY_PATH})
expect_size(${prefix}/bin/zephra info)

run(${CMAKE_COMMAND} -S ${consumer} -B ${WORK_DIR}/by-cmake -DCMAKE_PREFIX_PATH=${prefix}
    -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_BUILD_RPATH=${prefix}/lib)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/by-cmake)
expect_size(${WORK_DIR}/by-cmake/consumer)

set(ENV{PKG_CONFIG_PATH} ${prefix}/lib/pkgconfig)
run(pkg-config --cflags --libs zephra)
separate_arguments(flags UNIX_COMMAND "${output}")
run(${CXX} -std=c++20 ${consumer}/main.cpp ${flags} -Wl,-rpath,${prefix}/lib
    -o ${WORK_DIR}/by-pkg-config)
expect_size(${WORK_DIR}/by-pkg-config)
