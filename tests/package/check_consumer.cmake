# Programs find the library by the CMake package and link it by the import library: the example, whose
# picture is watched where a display for that is at hand, one that calls it with types of C++, and one
# of C.
cmake_minimum_required(VERSION 3.22)
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# build(name source): against the package
function(build name source)
  file(REMOVE_RECURSE ${WORK_DIR}/${name})
  run(${CMAKE_COMMAND} -S ${source} -B ${WORK_DIR}/${name} -G Ninja
    -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DZR_QT_MINGW64=${QT}
    "-DZRScreenMod_DIR=${PACKAGE_DIR}/lib/cmake/ZRScreenMod")
  run(${CMAKE_COMMAND} --build ${WORK_DIR}/${name})
endfunction()

build(examples "${PACKAGE_DIR}/share/doc/zrscreenmod/examples")
build(consumer ${SOURCE_DIR}/consumer)
build(cconsumer ${SOURCE_DIR}/../contract/cconsumer)
file(COPY ${WORK_DIR}/consumer/consumer.exe ${WORK_DIR}/cconsumer/c_host.exe
  ${WORK_DIR}/examples/meeting_win32.exe DESTINATION "${PACKAGE_DIR}/bin")
run(${RUN} "${PACKAGE_DIR}/bin/consumer.exe")
run(${RUN} "${PACKAGE_DIR}/bin/c_host.exe")
if(DEFINED ENV{DISPLAY})
  run(/usr/bin/python3 ${CMAKE_CURRENT_LIST_DIR}/watch_example.py ${FRAMEBUFFER} 00FFFF
    ${RUN} "${PACKAGE_DIR}/bin/meeting_win32.exe")
endif()
