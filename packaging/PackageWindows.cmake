# One zip that needs nothing else on the machine, and one of symbols beside it.
set(CPACK_GENERATOR ZIP)
set(CPACK_SYSTEM_NAME windows-x64)
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
list(APPEND zrComponents Dependencies)
foreach(component IN LISTS zrComponents)
  string(TOUPPER ${component} upper)
  set(CPACK_COMPONENT_${upper}_GROUP Program)
endforeach()
foreach(component IN LISTS zrSymbolComponents)
  string(TOUPPER ${component} upper)
  set(CPACK_COMPONENT_${upper}_GROUP Symbols)
endforeach()
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(zrArchive zrscreenmod-${PROJECT_VERSION}-${CPACK_SYSTEM_NAME})
set(CPACK_ARCHIVE_PROGRAM_FILE_NAME ${zrArchive})
set(CPACK_ARCHIVE_SYMBOLS_FILE_NAME ${zrArchive}-symbols)

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

set(zrDocDir ${CMAKE_INSTALL_DATADIR}/doc/zrscreenmod)
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
