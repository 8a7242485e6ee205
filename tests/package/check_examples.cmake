# The examples of the installed packages are built as a reader of the documents would, and each shows
# its picture, follows its window's size and ends when the window is closed.
cmake_minimum_required(VERSION 3.22)
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(root ${WORK_DIR}/root/usr)
set(examples ${root}/share/doc/libzrscreenmod-dev/examples)
set(build ${WORK_DIR}/examples)
set(warnings "-Wall -Wextra -Wconversion -Werror")
run(${CMAKE_COMMAND} -S ${examples} -B ${build} -G Ninja -DCMAKE_PREFIX_PATH=${root}
  "-DCMAKE_C_FLAGS=${warnings}" "-DCMAKE_CXX_FLAGS=${warnings}")
run(${CMAKE_COMMAND} --build ${build})

set(ENV{LD_LIBRARY_PATH} ${root}/${LIBDIR})
set(ENV{LIBGL_ALWAYS_SOFTWARE} 1)
set(ENV{PYTHONDONTWRITEBYTECODE} 1)
file(GLOB_RECURSE installed ${root}/*)

# watch(colour program...): on the display that this script runs on
function(watch colour)
  run(/usr/bin/python3 ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/watch_example.py
    ${FRAMEBUFFER} ${colour} ${ARGN})
endfunction()
watch(FF0000 ${build}/meeting_xlib)
watch(FF00FF ${build}/meeting_c)
watch(00FF00 ${build}/meeting_gtk3)
watch(0000FF ${build}/meeting_qt5)
watch(FFFF00 /usr/bin/python3 ${examples}/python/meeting.py)

file(GLOB_RECURSE afterwards ${root}/*)
if(NOT afterwards STREQUAL installed)
  message(SEND_ERROR "programs that ran have left files among the installed ones")
endif()
