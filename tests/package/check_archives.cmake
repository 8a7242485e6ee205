# cpack makes an archive and a Debian package of the same content, which names what it depends on.
cmake_minimum_required(VERSION 3.22)
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

unpack(TGZ tar.gz)
require(bin/zrhost include/zrcontrols.h include/zrextscreen.h include/zrscreenmod.h include/zrtypes.h
  lib/libZRScreenMod.so.0 lib/cmake/ZRScreenMod/ZRScreenModConfig.cmake lib/pkgconfig/ZRScreenMod.pc
  share/doc/zrscreenmod/licences.md)

execute_process(COMMAND ${CPACK} -G DEB -B ${WORK_DIR}/archive
  WORKING_DIRECTORY ${BUILD_DIR} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
file(GLOB deb ${WORK_DIR}/archive/*.deb)
execute_process(COMMAND dpkg-deb -x ${deb} ${WORK_DIR}/deb COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE archived RELATIVE "${PACKAGE_DIR}" "${PACKAGE_DIR}/*")
file(GLOB_RECURSE debian RELATIVE ${WORK_DIR}/deb/usr ${WORK_DIR}/deb/*)
if(NOT archived STREQUAL debian)
  message(SEND_ERROR "the archive has ${archived}\nthe Debian package ${debian}")
endif()
execute_process(COMMAND dpkg-deb -f ${deb} Depends OUTPUT_VARIABLE depends
  COMMAND_ERROR_IS_FATAL ANY)
foreach(package libqt5widgets5 libqt5x11extras5 libxcb1 libstdc\\+\\+6)
  if(NOT depends MATCHES "${package}")
    message(SEND_ERROR "the Debian package does not depend on ${package}: ${depends}")
  endif()
endforeach()
