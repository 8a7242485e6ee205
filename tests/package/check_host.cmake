# The host program of the package runs from its folder for some seconds and shows pictures.
cmake_minimum_required(VERSION 3.22)
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

set(picture "${WORK_DIR}/host.png")
file(REMOVE ${picture})
file(GLOB program "${PACKAGE_DIR}/bin/zrhost" "${PACKAGE_DIR}/bin/zrhost.exe")
execute_process(COMMAND ${RUN} "${program}" --participants 2 --size 640x360
  --duration 5 --screenshot host.png
  WORKING_DIRECTORY ${WORK_DIR} OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
message(STATUS "${output}\n${errors}")
if(NOT result EQUAL 0)
  message(FATAL_ERROR "the host ended with ${result}")
endif()
if(NOT EXISTS ${picture})
  message(FATAL_ERROR "the host left no picture")
endif()
# Both drawn pictures and their names make more of a file than an empty window does.
file(SIZE ${picture} size)
if(size LESS 5000)
  message(FATAL_ERROR "the picture is empty (${size} bytes)")
endif()
# The log lies beside the program, in spite of its folder's name.
file(GLOB log "${PACKAGE_DIR}/bin/log/zrscreenLog*.txt")
if(NOT log)
  message(FATAL_ERROR "the library wrote no log")
endif()
