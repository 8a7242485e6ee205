# What is installed can be used by find_package and by pkg-config, from C, which knows neither the
# compiler of the module nor its standard library. The tree is moved after it was installed, so a
# path of this machine in it would show.
function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
foreach(component Runtime Development)
  run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/first --component ${component})
endforeach()
file(RENAME ${WORK_DIR}/first ${WORK_DIR}/prefix)
set(prefix ${WORK_DIR}/prefix)
set(consumer ${SOURCE_DIR}/tests/contract/cconsumer)

set(pc "")
file(GLOB packages ${prefix}/${LIBDIR}/cmake/ZRScreenMod/*.cmake ${prefix}/${LIBDIR}/pkgconfig/*.pc)
foreach(package IN LISTS packages)
  file(READ ${package} content)
  string(APPEND pc "${content}")
endforeach()
foreach(path ${WORK_DIR} ${BUILD_DIR} ${SOURCE_DIR})
  string(FIND "${pc}" "${path}" position)
  if(NOT position EQUAL -1)
    message(SEND_ERROR "an installed package file names ${path}")
  endif()
endforeach()

run(${CMAKE_COMMAND} -S ${consumer} -B ${WORK_DIR}/by-cmake -G Ninja
  -DCMAKE_C_COMPILER=${CC} "-DCMAKE_C_FLAGS=-Wall -Wextra -Werror ${FLAGS}"
  -DCMAKE_PREFIX_PATH=${prefix})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/by-cmake)
run(${WORK_DIR}/by-cmake/c_host)

set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig)
execute_process(COMMAND pkg-config --cflags --libs ZRScreenModC
  OUTPUT_VARIABLE options OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(options UNIX_COMMAND "${options}")
separate_arguments(FLAGS UNIX_COMMAND "${FLAGS}")
run(${CC} ${FLAGS} ${consumer}/c_host.c -o ${WORK_DIR}/by-pkg-config ${options})
set(ENV{LD_LIBRARY_PATH} ${prefix}/${LIBDIR}:$ENV{LD_LIBRARY_PATH})
run(${WORK_DIR}/by-pkg-config)

# What the README shows is a part of an example that is built and run.
file(READ ${SOURCE_DIR}/README.md readme)
string(REGEX MATCH "\n```cpp\n([^`]*)```" block "${readme}")
file(READ ${SOURCE_DIR}/examples/xlib.cpp example)
string(FIND "${example}" "${CMAKE_MATCH_1}" position)
if(NOT block OR position EQUAL -1)
  message(SEND_ERROR "examples/xlib.cpp does not contain the first C++ block of README.md")
endif()
