# The library comes and goes in a process where nothing but the module needs QtWidgets: what is not
# needed at all, the plugin for styles, is left out.
cmake_minimum_required(VERSION 3.22)
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

set(folder "${WORK_DIR}/Reload 会议")
file(REMOVE_RECURSE "${folder}")
file(GLOB libraries "${PACKAGE_DIR}/bin/*.dll")
file(COPY ${libraries} "${PACKAGE_DIR}/bin/platforms" ${PROGRAM} DESTINATION "${folder}")
set(ENV{ZR_LIBRARY} ZRScreenMod.dll)
execute_process(COMMAND ${RUN} "${folder}/contract_tests.exe" lifetime threadsOutliveTheLibrary
  WORKING_DIRECTORY "${folder}" RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "the program ended with ${result}")
endif()
