# What is installed can be used: by find_package, by pkg-config, and by the example of the README,
# which is the program that both build. The tree is moved after it was installed, so a path of
# this machine in it would show.
function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
foreach(component Runtime Development)
  run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/first --component ${component})
endforeach()
file(RENAME ${WORK_DIR}/first ${WORK_DIR}/prefix)
set(prefix ${WORK_DIR}/prefix)
set(consumer ${SOURCE_DIR}/tests/contract/consumer)

# The first C++ block of the README, as a file that the example host includes.
file(READ ${SOURCE_DIR}/README.md readme)
if(NOT readme MATCHES "\n```cpp\n(.*)")
  message(FATAL_ERROR "README.md has no C++ example")
endif()
string(FIND "${CMAKE_MATCH_1}" "\n```\n" end)
string(SUBSTRING "${CMAKE_MATCH_1}" 0 ${end} example)
file(MAKE_DIRECTORY ${WORK_DIR}/example)
file(WRITE ${WORK_DIR}/example/readme_example.h "${example}\n")

file(READ ${prefix}/${LIBDIR}/pkgconfig/ZRScreenMod.pc pc)
file(GLOB packages ${prefix}/${LIBDIR}/cmake/ZRScreenMod/*.cmake)
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
  -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_CXX_FLAGS=${FLAGS} -DCMAKE_PREFIX_PATH=${prefix}
  -DEXAMPLE_DIR=${WORK_DIR}/example)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/by-cmake)
run(${WORK_DIR}/by-cmake/example_host)

run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/contract/cconsumer -B ${WORK_DIR}/in-c -G Ninja
  -DCMAKE_C_COMPILER=${CC} "-DCMAKE_C_FLAGS=-Wall -Wextra -Werror ${FLAGS}"
  -DCMAKE_PREFIX_PATH=${prefix})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/in-c)
run(${WORK_DIR}/in-c/c_host)

set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig)
execute_process(COMMAND pkg-config --cflags --libs ZRScreenMod x11 glib-2.0
  OUTPUT_VARIABLE options OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(options UNIX_COMMAND "${options}")
separate_arguments(FLAGS UNIX_COMMAND "${FLAGS}")
run(${CXX} -std=c++17 ${FLAGS} ${consumer}/example_host.cpp -I${WORK_DIR}/example
  -o ${WORK_DIR}/by-pkg-config ${options} -pthread)
set(ENV{LD_LIBRARY_PATH} ${prefix}/${LIBDIR}:$ENV{LD_LIBRARY_PATH})
run(${WORK_DIR}/by-pkg-config)
