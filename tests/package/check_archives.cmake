# cpack makes an archive, and of the same content Debian packages that the distribution would take.
cmake_minimum_required(VERSION 3.22)
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

unpack(TGZ tar.gz)
require(bin/zrhost bin/zrworkbench include/zrcontrols.h include/zrextscreen.h include/zrscreenmod.h include/zrtypes.h
  include/zrscreenmod_c.h ${LIBDIR}/${SONAME} ${LIBDIR}/cmake/ZRScreenMod/ZRScreenModConfig.cmake
  ${LIBDIR}/pkgconfig/ZRScreenMod.pc ${LIBDIR}/pkgconfig/ZRScreenModC.pc)

execute_process(COMMAND ${CPACK} -G DEB -B ${WORK_DIR}/archive
  WORKING_DIRECTORY ${BUILD_DIR} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
file(GLOB debs ${WORK_DIR}/archive/*.deb)
execute_process(COMMAND lintian --allow-root --fail-on error ${debs} COMMAND_ERROR_IS_FATAL ANY)

# Together the packages are the archive; symbols are apart, and each file is in one package only.
set(debian "")
foreach(deb IN LISTS debs)
  get_filename_component(name ${deb} NAME)
  string(REGEX REPLACE "_.*" "" name ${name})
  execute_process(COMMAND dpkg-deb -x ${deb} ${WORK_DIR}/${name} COMMAND_ERROR_IS_FATAL ANY)
  file(COPY ${WORK_DIR}/${name}/usr DESTINATION ${WORK_DIR}/root) # all of them installed
  file(GLOB_RECURSE files RELATIVE ${WORK_DIR}/${name}/usr ${WORK_DIR}/${name}/*)
  if(name MATCHES "-dbgsym")
    list(FILTER files INCLUDE REGEX "^lib/debug/.build-id/.*\\.debug$")
    list(LENGTH files symbols_${name})
  else()
    list(APPEND debian ${files})
    execute_process(COMMAND dpkg-deb -f ${deb} Depends OUTPUT_VARIABLE depends_${name}
      COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()
list(SORT debian)
file(GLOB_RECURSE archived RELATIVE "${PACKAGE_DIR}" "${PACKAGE_DIR}/*")
list(SORT archived)
if(NOT archived STREQUAL debian)
  message(SEND_ERROR "the archive has ${archived}\nthe Debian packages ${debian}")
endif()
string(REGEX REPLACE "^lib(.*)\\.so\\." "lib\\1" runtime ${SONAME})
string(TOLOWER ${runtime} runtime)
if(NOT symbols_${runtime}-dbgsym EQUAL 2 OR NOT symbols_zrscreenmod-tools-dbgsym EQUAL 2)
  message(SEND_ERROR "there are not the symbols of two libraries and two programs")
endif()

# require_depends(package patterns...): the package depends on these.
function(require_depends name)
  foreach(pattern IN LISTS ARGN)
    if(NOT depends_${name} MATCHES "${pattern}")
      message(SEND_ERROR "${name} does not depend on ${pattern}: ${depends_${name}}")
    endif()
  endforeach()
endfunction()
require_depends(${runtime} libqt5widgets5 libqt5x11extras5 libxcb1 "libstdc\\+\\+6")
require_depends(libzrscreenmod-dev "${runtime} \\(= ")
require_depends(zrscreenmod-tools "${runtime} \\(= ")
