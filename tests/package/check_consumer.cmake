# A program finds the library by the CMake package, links it by the import library and calls it.
cmake_minimum_required(VERSION 3.22)
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(build ${WORK_DIR}/consumer)
file(REMOVE_RECURSE ${build})
run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/consumer -B ${build} -G Ninja
  -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DZR_QT_MINGW64=${QT}
  "-DZRScreenMod_DIR=${PACKAGE_DIR}/lib/cmake/ZRScreenMod")
run(${CMAKE_COMMAND} --build ${build})
file(COPY ${build}/consumer.exe DESTINATION "${PACKAGE_DIR}/bin")
run(${RUN} "${PACKAGE_DIR}/bin/consumer.exe")
