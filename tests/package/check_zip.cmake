# cpack makes a zip that holds the libraries that its programs and libraries need.
cmake_minimum_required(VERSION 3.22)
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

unpack(ZIP zip)
require(bin/ZRScreenMod.dll bin/zrhost.exe bin/zrworkbench.exe bin/platforms/qwindows.dll include/zrcontrols.h
  include/zrextscreen.h include/zrscreenmod.h include/zrtypes.h
  lib/libZRScreenMod.dll.a lib/ZRScreenMod.def lib/cmake/ZRScreenMod/ZRScreenModConfig.cmake
  share/doc/zrscreenmod/licences.md share/doc/zrscreenmod/LGPL-3)
file(GLOB symbols ${WORK_DIR}/archive/*-symbols.zip)
execute_process(COMMAND ${CMAKE_COMMAND} -E tar t ${symbols} OUTPUT_VARIABLE symbols
  COMMAND_ERROR_IS_FATAL ANY)
foreach(name ZRScreenMod.dll ZRScreenModC.dll zrhost.exe zrworkbench.exe)
  if(NOT symbols MATCHES "/bin/${name}.debug\n")
    message(SEND_ERROR "the symbols have none of ${name}: ${symbols}")
  endif()
  execute_process(COMMAND ${OBJDUMP} --section-headers "${PACKAGE_DIR}/bin/${name}"
    OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
  if(NOT headers MATCHES "[.]gnu_debuglink" OR headers MATCHES "[.]debug_info")
    message(SEND_ERROR "${name} does not name its symbols, or has them: ${headers}")
  endif()
endforeach()

# Import libraries made of the definition file bind to names: numbers change with each new function.
file(READ "${PACKAGE_DIR}/lib/ZRScreenMod.def" exports)
if(NOT exports MATCHES "^LIBRARY ZRScreenMod.dll\nEXPORTS\n" OR exports MATCHES "@")
  message(SEND_ERROR "the definition file is\n${exports}")
endif()

# Every Windows from version 7 has these.
set(system advapi32 d3d11 dwmapi dxgi gdi32 imm32 kernel32 mpr msvcrt netapi32 ole32 oleaut32 opengl32 shell32
  user32 userenv uxtheme version windowscodecs winmm ws2_32 wtsapi32)
file(GLOB_RECURSE binaries "${PACKAGE_DIR}/bin/*.dll" "${PACKAGE_DIR}/bin/*.exe")
foreach(binary IN LISTS binaries)
  execute_process(COMMAND ${OBJDUMP} --private-headers ${binary}
    OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "DLL Name: [^\n]+" needed "${headers}")
  list(TRANSFORM needed REPLACE "DLL Name: " "")
  foreach(name IN LISTS needed)
    string(TOLOWER ${name} lower)
    string(REPLACE ".dll" "" lower ${lower})
    if(NOT lower IN_LIST system AND NOT EXISTS "${PACKAGE_DIR}/bin/${name}")
      message(SEND_ERROR "${binary} needs ${name}, which is not in the package")
    endif()
  endforeach()
endforeach()
