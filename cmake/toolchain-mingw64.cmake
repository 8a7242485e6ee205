# Builds for Windows x64 on Linux. ZR_QT_MINGW64, as a cache or an environment variable, names the
# folder of Qt for Windows: packaging/qt5-mingw64.sh provides it and prints it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The compilers with POSIX threads: the others have no std::thread.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# CMake tries the compilers in projects of their own, which see these variables only when told.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZR_QT_MINGW64)
if(NOT ZR_QT_MINGW64)
  if(DEFINED ENV{ZR_QT_MINGW64})
    set(ZR_QT_MINGW64 $ENV{ZR_QT_MINGW64})
  else()
    execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/../packaging/qt5-mingw64.sh --print
      OUTPUT_VARIABLE ZR_QT_MINGW64 OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  endif()
endif()
set(ZR_QT_MINGW64 ${ZR_QT_MINGW64} CACHE PATH "Qt for Windows")
if(NOT EXISTS ${ZR_QT_MINGW64}/lib/cmake/Qt5Widgets)
  message(FATAL_ERROR "Qt for Windows is not in ${ZR_QT_MINGW64}: run packaging/qt5-mingw64.sh")
endif()

set(CMAKE_FIND_ROOT_PATH ${ZR_QT_MINGW64} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Programs of the build run through Wine, on a display of their own. The compiler's own libraries lie
# in two folders.
execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libstdc++-6.dll
  OUTPUT_VARIABLE zrRuntime OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
get_filename_component(zrRuntime ${zrRuntime} DIRECTORY)
set(ZR_MINGW_RUNTIME_DIRS ${zrRuntime} /usr/x86_64-w64-mingw32/lib)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine-run.sh
  --prefixes ${CMAKE_BINARY_DIR}/wine --path ${ZR_QT_MINGW64}/bin
  --path ${zrRuntime} --path /usr/x86_64-w64-mingw32/lib --plugins ${ZR_QT_MINGW64}/plugins)
