# What is installed, in three components: Runtime (the library), Development (header, CMake package
# and pkg-config file) and Host (the demonstration host and the workbench). Packages have a fourth on Windows, see
# Package.cmake.
include(CMakePackageConfigHelpers)

set(zrPackageDir ${CMAKE_INSTALL_LIBDIR}/cmake/ZRScreenMod)

install(TARGETS ZRScreenMod ZRScreenModC EXPORT ZRScreenModTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development)
install(FILES
  ${PROJECT_SOURCE_DIR}/zrscreenmod/zrcontrols.h
  ${PROJECT_SOURCE_DIR}/zrscreenmod/zrextscreen.h
  ${PROJECT_SOURCE_DIR}/zrscreenmod/zrscreenmod.h
  ${PROJECT_SOURCE_DIR}/zrscreenmod/zrtypes.h
  ${PROJECT_SOURCE_DIR}/zrscreenmodc/zrscreenmod_c.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT Development)
install(EXPORT ZRScreenModTargets NAMESPACE ZRScreenMod::
  DESTINATION ${zrPackageDir} COMPONENT Development)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/ZRScreenModConfig.cmake.in
  ${PROJECT_BINARY_DIR}/package/ZRScreenModConfig.cmake INSTALL_DESTINATION ${zrPackageDir})
# Below 1.0 a minor version may change the interface.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/ZRScreenModConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/package/ZRScreenModConfig.cmake
  ${PROJECT_BINARY_DIR}/package/ZRScreenModConfigVersion.cmake
  DESTINATION ${zrPackageDir} COMPONENT Development)

# The prefix is told from where the file lies, so that an installed tree may be moved.
file(RELATIVE_PATH zrPrefixFromPc
  /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
set(zrPcRequires "")
foreach(zrPcName ZRScreenMod ZRScreenModC)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/library.pc.in
    ${PROJECT_BINARY_DIR}/package/${zrPcName}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/package/${zrPcName}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)
  set(zrPcRequires "ZRScreenMod = ${PROJECT_VERSION}")
endforeach()

if(MINGW)
  # For other compilers, which make an import library of their own from it. The linker numbers the
  # functions, and a client bound to the numbers would call others in the next version.
  install(CODE "
    file(READ \"$<TARGET_FILE_DIR:ZRScreenMod>/ZRScreenMod.def\" exports)
    string(REGEX REPLACE \" @[0-9]+\" \"\" exports \"\${exports}\")
    file(WRITE \"${PROJECT_BINARY_DIR}/package/ZRScreenMod.def\"
      \"LIBRARY ZRScreenMod.dll\\n\${exports}\")" COMPONENT Development)
  install(FILES ${PROJECT_BINARY_DIR}/package/ZRScreenMod.def
    DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development)
endif()
