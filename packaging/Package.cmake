# cpack: a zip for Windows that needs nothing else on the machine, an archive and a Debian package
# for Linux.
set(CPACK_PACKAGE_NAME zrscreenmod)
set(CPACK_PACKAGE_VENDOR "ZRScreenMod")
set(CPACK_PACKAGE_CONTACT "ZRScreenMod maintainers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

set(zrDocDir ${CMAKE_INSTALL_DATADIR}/doc/zrscreenmod)
install(FILES ${PROJECT_SOURCE_DIR}/docs/licences.md
  DESTINATION ${zrDocDir} COMPONENT Runtime)

if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_SYSTEM_NAME windows-x64)

  # Everything lies in one folder, beside the library: a host may copy that folder's content into
  # its own. The module tells Qt to look for plugins beside the library.
  get_target_property(zrQtCore Qt5::Core IMPORTED_LOCATION_RELEASE)
  get_filename_component(zrQtBin ${zrQtCore} DIRECTORY)
  install(FILES ${zrQtBin}/Qt5Core.dll ${zrQtBin}/Qt5Gui.dll ${zrQtBin}/Qt5Widgets.dll
    DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Dependencies)
  install(FILES ${zrQtBin}/../plugins/platforms/qwindows.dll
    DESTINATION ${CMAKE_INSTALL_BINDIR}/platforms COMPONENT Dependencies)
  install(FILES ${zrQtBin}/../plugins/styles/qwindowsvistastyle.dll
    DESTINATION ${CMAKE_INSTALL_BINDIR}/styles COMPONENT Dependencies)

  # Who hands on the libraries hands on their licences. Debian keeps the texts here.
  set(zrTexts /usr/share/common-licenses/LGPL-3 /usr/share/common-licenses/GPL-3)
  if(EXISTS /usr/share/common-licenses/LGPL-3)
    install(FILES ${zrTexts} DESTINATION ${zrDocDir} COMPONENT Dependencies)
    install(FILES /usr/share/doc/gcc-mingw-w64-base/copyright
      DESTINATION ${zrDocDir} RENAME gcc-runtime.txt COMPONENT Dependencies)
    install(FILES /usr/share/doc/mingw-w64-common/copyright
      DESTINATION ${zrDocDir} RENAME winpthreads.txt COMPONENT Dependencies)
  endif()

  if(MINGW)
    set(zrRuntime libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll)
    foreach(name IN LISTS zrRuntime)
      find_file(ZR_RUNTIME_${name} ${name} PATHS ${ZR_MINGW_RUNTIME_DIRS}
        NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
      install(FILES ${ZR_RUNTIME_${name}}
        DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Dependencies)
    endforeach()
    # Nine tenths of them are debugging information.
    install(CODE "
      foreach(name ${zrRuntime})
        execute_process(COMMAND \"${CMAKE_STRIP}\" --strip-unneeded
          \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/\${name}\"
          COMMAND_ERROR_IS_FATAL ANY)
      endforeach()" COMPONENT Dependencies)
  endif()
else()
  set(CPACK_GENERATOR TGZ DEB)
  set(CPACK_SYSTEM_NAME linux-${CMAKE_SYSTEM_PROCESSOR})
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION libs)
  # What the binaries link tells the packages that they need. Qt loads its X11 part at run time.
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_DEPENDS libqt5gui5)
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS ffmpeg)
endif()
include(CPack)
