# The programs of the package run from their folder for some seconds and show pictures.
cmake_minimum_required(VERSION 3.22)
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

foreach(name zrhost zrworkbench)
  set(picture "${WORK_DIR}/${name}.png")
  file(REMOVE ${picture})
  file(GLOB program "${PACKAGE_DIR}/bin/${name}" "${PACKAGE_DIR}/bin/${name}.exe")
  execute_process(COMMAND ${RUN} "${program}" --participants 2 --duration 5
    --screenshot ${name}.png WORKING_DIRECTORY ${WORK_DIR}
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
  message(STATUS "${output}\n${errors}")
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${name} ended with ${result}")
  endif()
  if(NOT EXISTS ${picture})
    message(FATAL_ERROR "${name} left no picture")
  endif()
  # Both drawn pictures and their names make more of a file than an empty window does.
  file(SIZE ${picture} size)
  if(size LESS 5000)
    message(FATAL_ERROR "the picture of ${name} is empty (${size} bytes)")
  endif()
endforeach()
# The log lies beside the programs, in spite of its folder's name.
file(GLOB log "${PACKAGE_DIR}/bin/log/zrscreenLog*.txt")
if(NOT log)
  message(FATAL_ERROR "the library wrote no log")
endif()
