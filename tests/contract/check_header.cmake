# The public headers compile alone, with every compiler at hand, without Qt and without warnings, as
# C++ and as C. They say of each function on which thread it works.
foreach(header zrscreenmod.h zrcontrols.h zrextscreen.h)
  file(READ ${INCLUDE_DIR}/${header} text)
  string(REGEX REPLACE "[][;]" "," text "${text}") # what lists are made of
  string(REGEX MATCHALL "(\n///[^\n]*)*\nZR_API [^(]*" functions "${text}")
  foreach(function IN LISTS functions)
    string(REGEX MATCHALL "\n[^\n]*@thread[^\n]*" tags "${function}")
    if(NOT tags MATCHES "^\n/// @thread (any|posted|gui)$")
      message(SEND_ERROR "${header}: not one @thread any, posted or gui:${function}")
    endif()
  endforeach()
endforeach()

file(MAKE_DIRECTORY ${WORK_DIR})
file(WRITE ${WORK_DIR}/alone.cpp "#include \"zrscreenmod.h\"\n")
file(WRITE ${WORK_DIR}/twice.cpp
  "#include <windows.h>\n#include \"zrscreenmod.h\"\n#include \"zrscreenmod.h\"\n"
  "RECT area; HWND window; void* screen = ZRScreen_Init(window, nullptr);\n"
  "int moved = ZRScreen_MoveWindow(screen, &area, 0);\n")
# The Windows headers come first or last, and their handles are typed or not.
file(WRITE ${WORK_DIR}/before.cpp "#include \"zrscreenmod.h\"\n#include <windows.h>\n"
  "void* screen = ZRScreen_Init(GetDesktopWindow(), nullptr);\n")
foreach(source twice before)
  file(WRITE ${WORK_DIR}/${source}_untyped.cpp "#define NO_STRICT\n#include \"${source}.cpp\"\n")
endforeach()

# For the C compilers that belong to those below.
file(WRITE ${WORK_DIR}/alone.c "#include \"zrscreenmod_c.h\"\n"
  "int main(void) { int n = 0; char text[9]; enum eLayoutType mode = eLayoutShare;\n"
  "  return ZRCtrl_QLineEdit_GetText(0, text, &n) + (int)mode + ZRMSG_TILE_CLICK; }\n")
file(WRITE ${WORK_DIR}/windows.c "#include <windows.h>\n#include \"zrscreenmod_c.h\"\n"
  "int moved(void* screen, RECT* area) { return ZRScreen_MoveWindow(screen, area, 0); }\n")

# zr_compile(compiler standard source)
function(zr_compile compiler standard source)
  execute_process(COMMAND ${path_${compiler}} ${standard} -fsyntax-only
    -Wall -Wextra -pedantic -Wconversion -Wshadow -Werror
    -I${INCLUDE_DIR} -I${INCLUDE_DIR}/../zrscreenmodc ${source}
    WORKING_DIRECTORY ${WORK_DIR} RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(SEND_ERROR "${compiler} ${standard} ${source}: ${result}")
  endif()
endfunction()

set(compilers 0)
foreach(compiler g++ clang++ x86_64-w64-mingw32-g++-posix)
  find_program(path_${compiler} ${compiler})
  if(NOT path_${compiler})
    message(STATUS "${compiler} is not here")
    continue()
  endif()
  set(sources alone.cpp)
  if(compiler MATCHES "mingw")
    list(APPEND sources twice.cpp twice_untyped.cpp before.cpp before_untyped.cpp)
  else()
    math(EXPR compilers "${compilers} + 1")
  endif()
  foreach(standard 17 20)
    foreach(source IN LISTS sources)
      zr_compile(${compiler} -std=c++${standard} ${source})
    endforeach()
  endforeach()
  string(REPLACE "clang++" "clang" c ${compiler})
  string(REPLACE "g++" "gcc" c ${c})
  find_program(path_${c} ${c} REQUIRED)
  zr_compile(${c} -std=c11 alone.c)
  if(compiler MATCHES "mingw")
    zr_compile(${c} -std=c11 windows.c)
  endif()
endforeach()
if(compilers EQUAL 0)
  message(SEND_ERROR "no compiler was found")
endif()
