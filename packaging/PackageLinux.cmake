# Debian packages as the distribution would cut them, and one archive of all of it for other systems.
set(CPACK_GENERATOR TGZ DEB)
set(CPACK_SYSTEM_NAME linux-${CMAKE_SYSTEM_PROCESSOR})

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(zrDebianVersion ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
set(zrSameRuntime "${zrPackage_Runtime} (= ${zrDebianVersion})")

# What the binaries link tells the packages that they need. Qt loads its X11 part at run time.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${zrPackage_Runtime})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS libqt5gui5)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS fonts-noto-cjk)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "The library that a meeting client loads and drives through C functions: it\n\
 draws the participants' pictures and arranges them as the meeting's mode asks.")
# Programs that link the libraries depend on this package.
set(zrShlibs ${PROJECT_BINARY_DIR}/package/shlibs)
file(WRITE ${zrShlibs} "")
foreach(name ZRScreenMod ZRScreenModC)
  file(APPEND ${zrShlibs}
    "lib${name} ${zrSoVersion} ${zrPackage_Runtime} (>= ${PROJECT_VERSION})\n")
endforeach()
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${zrShlibs} ${CMAKE_CURRENT_LIST_DIR}/triggers)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${zrPackage_Development})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${zrSameRuntime}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS
  "cmake, pkg-config, libx11-dev, libglib2.0-dev, libgtk-3-dev, qtbase5-dev, python3-tk") # examples
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "Headers, CMake package, pkg-config files, documents and examples for programs\n\
 that embed ZRScreenMod.")

set(CPACK_DEBIAN_HOST_PACKAGE_NAME ${zrPackage_Host})
set(CPACK_DEBIAN_HOST_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_HOST_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_HOST_PACKAGE_DEPENDS "${zrSameRuntime}")
set(CPACK_DEBIAN_HOST_PACKAGE_SUGGESTS ffmpeg)
set(CPACK_COMPONENT_HOST_DESCRIPTION
  "The program zrhost shows meetings with ZRScreenMod, plays scenarios and prints\n\
 the messages of the library; zrworkbench does it in a window with switches.")

foreach(component Runtime Host)
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}SYMBOLS_PACKAGE_NAME ${zrPackage_${component}Symbols})
  set(CPACK_DEBIAN_${upper}SYMBOLS_PACKAGE_SECTION debug)
  set(CPACK_DEBIAN_${upper}SYMBOLS_PACKAGE_DEPENDS "${zrPackage_${component}} (= ${zrDebianVersion})")
  set(CPACK_COMPONENT_${upper}SYMBOLS_DESCRIPTION
    "Symbols for debuggers, of the package ${zrPackage_${component}}.")
endforeach()

# Debian wants both changelogs, its own and what a host can notice, and manual pages compressed.
find_program(ZR_GZIP gzip)
function(zr_compress file)
  get_filename_component(name ${file} NAME)
  execute_process(COMMAND ${ZR_GZIP} -9 --no-name --stdout ${file}
    OUTPUT_FILE ${PROJECT_BINARY_DIR}/package/${name}.gz COMMAND_ERROR_IS_FATAL ANY)
endfunction()
if(ZR_GZIP)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog.Debian.in package/changelog.Debian @ONLY)
  configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md package/changelog COPYONLY)
  foreach(name changelog changelog.Debian)
    zr_compress(${PROJECT_BINARY_DIR}/package/${name})
    foreach(component IN LISTS zrComponents zrSymbolComponents)
      zr_install_documents(${component} . ${PROJECT_BINARY_DIR}/package/${name}.gz)
    endforeach()
  endforeach()
  foreach(tool IN LISTS zrTools)
    set_property(DIRECTORY APPEND PROPERTY
      CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/${tool}.1)
    zr_compress(${CMAKE_CURRENT_LIST_DIR}/${tool}.1)
    install(FILES ${PROJECT_BINARY_DIR}/package/${tool}.1.gz
      DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT Host)
  endforeach()
endif()
