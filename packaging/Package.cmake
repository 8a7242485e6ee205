# cpack: packages as Debian makes them and an archive for Linux, zips for Windows. What is installed
# beyond Install.cmake are the documents; they lie in folders that are named after the packages.
set(CPACK_PACKAGE_NAME zrscreenmod)
set(CPACK_PACKAGE_VENDOR "ZRScreenMod")
set(CPACK_PACKAGE_CONTACT "ZRScreenMod maintainers <maintainers@zrscreenmod.org>" CACHE STRING
  "Who answers for the packages: name and address")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

set(zrComponents Runtime Development)
if(ZR_BUILD_HOST)
  list(APPEND zrComponents Host)
endif()
set(zrPackage_Runtime libzrscreenmod${zrSoVersion})
set(zrPackage_Development libzrscreenmod-dev)
set(zrPackage_Host zrscreenmod-tools)
set(zrPackage_RuntimeSymbols ${zrPackage_Runtime}-dbgsym)
set(zrPackage_HostSymbols ${zrPackage_Host}-dbgsym)
if(WIN32)
  foreach(component Runtime Development Host RuntimeSymbols HostSymbols)
    set(zrPackage_${component} zrscreenmod)
  endforeach()
endif()

# The symbols of a stripped file are packages of their own. A debugger finds them by the file's build
# id, on Windows beside the file, whose name it has with ".debug" behind it.
set(zrSymbolComponents "")
function(zr_install_symbols component)
  list(APPEND zrSymbolComponents ${component}Symbols)
  set(zrSymbolComponents ${zrSymbolComponents} PARENT_SCOPE)
  foreach(target IN LISTS ARGN)
    install(CODE "
      set(ENV{ZR_PREFIX} \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\")
      execute_process(COMMAND ${CMAKE_COMMAND} -DOBJCOPY=${CMAKE_OBJCOPY}
        -DREADELF=${CMAKE_READELF} -DWINDOWS=${WIN32} -DFILE=$<TARGET_FILE:${target}>
        -DBINDIR=${CMAKE_INSTALL_BINDIR} -P ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/symbols.cmake
        COMMAND_ERROR_IS_FATAL ANY)" COMPONENT ${component}Symbols EXCLUDE_FROM_ALL)
  endforeach()
endfunction()
if(NOT MSVC)
  zr_install_symbols(Runtime ZRScreenMod ZRScreenModC)
  if(ZR_BUILD_HOST)
    zr_install_symbols(Host zrhost)
  endif()
endif()

# zr_install_documents(component folder files...): the folder is one of the package's documents.
function(zr_install_documents component folder)
  set(apart "")
  if(component IN_LIST zrSymbolComponents)
    set(apart EXCLUDE_FROM_ALL)
  endif()
  install(FILES ${ARGN} COMPONENT ${component} ${apart}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${zrPackage_${component}}/${folder})
endfunction()

foreach(component IN LISTS zrComponents zrSymbolComponents)
  zr_install_documents(${component} . ${CMAKE_CURRENT_LIST_DIR}/copyright)
endforeach()
zr_install_documents(Runtime . ${PROJECT_SOURCE_DIR}/docs/licences.md)
zr_install_documents(Development . ${PROJECT_SOURCE_DIR}/README.md)
file(GLOB zrGuides CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/*.md)
zr_install_documents(Development docs ${zrGuides})
file(GLOB zrImages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/images/*.png)
zr_install_documents(Development docs/images ${zrImages})
file(GLOB zrImages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/images/modes/*.png)
zr_install_documents(Development docs/images/modes ${zrImages})
file(GLOB zrExamples CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/examples/*.*)
zr_install_documents(Development examples ${zrExamples})
file(GLOB zrExamples CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/examples/python/*.py)
zr_install_documents(Development examples/python ${zrExamples})

if(WIN32)
  include(${CMAKE_CURRENT_LIST_DIR}/PackageWindows.cmake)
else()
  include(${CMAKE_CURRENT_LIST_DIR}/PackageLinux.cmake)
endif()
set(CPACK_COMPONENTS_ALL ${zrComponents} ${zrSymbolComponents})
include(CPack)
