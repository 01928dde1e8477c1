# cmake -DBUILD=build -DWORK=dir -DCXX=c++ -P InstallAndConsume.cmake
# Installs the build into WORK/prefix, then builds the consumer twice against
# it, once with find_package(zeg) and once with pkg-config, and runs both
# from another directory on the installed data.
set(prefix ${WORK}/prefix)
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})

function(run)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY ${WORK}
    RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nfailed (${result}):\n${out}\n${err}")
  endif()
  set(output "${out}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${prefix})
if(EXISTS ${prefix}/share/zeg/CMakeFiles OR EXISTS ${prefix}/share/zeg/Makefile)
  message(FATAL_ERROR "the build's own files were installed with the data")
endif()
foreach(f lib/libzeg.so include/zeg/ws/core/wsInterface.h include/zeg/normalize/NormalizeIntf.h
          lib/cmake/zeg/zegConfig.cmake lib/cmake/zeg/zegConfigVersion.cmake
          lib/pkgconfig/zeg.pc lib/libzegnormalizer.so share/java/zeg-normalizer.jar
          bin/zeg-segment bin/zeg-dict bin/zeg-normalize share/zeg/segmenter.conf
          share/zeg/normalizer.ini)
  if(NOT EXISTS ${prefix}/${f})
    message(FATAL_ERROR "not installed: ${f}")
  endif()
endforeach()
file(READ ${prefix}/share/zeg/segmenter.conf conf)
string(FIND "${conf}" "${BUILD}/data" buildPath)
if(NOT buildPath EQUAL -1)
  message(FATAL_ERROR "the installed segmenter.conf names the build tree")
endif()

set(source ${CMAKE_CURRENT_LIST_DIR}/consumer)
run(${CMAKE_COMMAND} -S ${source} -B ${WORK}/with-cmake -DCMAKE_PREFIX_PATH=${prefix}
    -DCMAKE_CXX_COMPILER=${CXX})
run(${CMAKE_COMMAND} --build ${WORK}/with-cmake)
run(${WORK}/with-cmake/consumer ${prefix}/share/zeg)
set(expected "${output}")
if(NOT expected MATCHES "北京大学 的 学生 \n.+\n")
  message(FATAL_ERROR "unexpected output of the find_package consumer:\n${expected}")
endif()

set(ENV{PKG_CONFIG_PATH} ${prefix}/lib/pkgconfig)
run(pkg-config --cflags --libs zeg)
separate_arguments(flags UNIX_COMMAND "${output}")
run(${CXX} -std=c++17 ${source}/main.cpp -o ${WORK}/pkg-consumer ${flags}
    -Wl,-rpath,${prefix}/lib)
run(${WORK}/pkg-consumer ${prefix}/share/zeg)
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "the two consumers disagree:\n${expected}\n${output}")
endif()
message(STATUS "both consumers printed:\n${output}")
