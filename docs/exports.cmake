# Writes docs/exports.md, the index of the exports, from their table and the public headers:
#   cmake -P docs/exports.cmake
# With -DCHECK=ON it only looks whether the page is up to date.
set(module ${CMAKE_CURRENT_LIST_DIR}/../zrscreenmod)
set(page ${CMAKE_CURRENT_LIST_DIR}/exports.md)

file(READ ${module}/exports.h table)
string(REGEX REPLACE "[ \t]*\\\\\n[ \t]*" " " table "${table}")

# What the words of the table mean here.
set(words
  "screen=screen" "play=participant" "ext=extended screen" "lineEdit=line edit"
  "textBox=text box" "datePicker=date picker" "window=native window or null"
  "notify=function or null" "hostValue=kept, never read" "userId=user id" "text=text"
  "rectangle=rectangle" "point=point" "picture=frame record" "order=user ids by position"
  "watermark=record" "buffer=bytes to be written" "bufferLength=their number, in and out"
  "flag=flag" "number=number")

function(describe argument result)
  set(text "${argument}")
  foreach(word IN LISTS words)
    string(REGEX MATCH "^([A-Za-z]+)=(.*)" pair "${word}")
    set(meaning "${CMAKE_MATCH_2}")
    string(REGEX REPLACE "(^|\\()${CMAKE_MATCH_1}(\\)|$)" "\\1${meaning}\\2" text "${text}")
  endforeach()
  string(REGEX REPLACE "^ignored\\(.*" "not used" text "${text}")
  string(REGEX REPLACE "INT_MAX" "2147483647" text "${text}")
  string(REGEX REPLACE "^range\\((.*), (.*)\\)$" "\\1 to \\2" text "${text}")
  string(REGEX REPLACE "^checked\\((.*), (.*)\\)$" "\\1 to \\2, else refused" text "${text}")
  string(REGEX REPLACE "byValue\\(([^)]*)\\)" "\\1 in UTF-8" text "${text}")
  string(REGEX REPLACE "utf8\\(([^)]*)\\)" "\\1 in UTF-8" text "${text}")
  string(REGEX REPLACE "local\\(([^)]*)\\)" "\\1 in the local encoding" text "${text}")
  string(REGEX REPLACE "required\\(([^)]*)\\)" "\\1, not null" text "${text}")
  string(REGEX REPLACE "ended\\(([^)]*)\\)" "\\1, which ends" text "${text}")
  string(REGEX REPLACE "real\\((native window) or null\\)" "\\1 that exists, or null" text "${text}")
  if(text MATCHES "[()]")
    message(FATAL_ERROR "docs/exports.cmake does not know '${argument}'")
  endif()
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

function(describe_answer answer result)
  if(answer STREQUAL "nothing")
    set(text "–")
  elseif(answer STREQUAL "done")
    set(text "1, refused 0")
  elseif(answer STREQUAL "alwaysDone")
    set(text "1, also refused")
  elseif(answer STREQUAL "numeric")
    set(text "number, refused 0")
  elseif(answer MATCHES "^length\\((.*)\\)$")
    set(text "length, refused ${CMAKE_MATCH_1}")
  elseif(answer MATCHES "^rect\\((.*)\\)$")
    set(text "rectangle, refused (0, 0, ${CMAKE_MATCH_1}, ${CMAKE_MATCH_1})")
  elseif(answer MATCHES "^newHandle\\((.*)\\)$")
    describe("${CMAKE_MATCH_1}" handle)
    set(text "handle of a new ${handle}, refused null")
  else()
    message(FATAL_ERROR "docs/exports.cmake does not know '${answer}'")
  endif()
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

# The names of an export's parameters, as the header declares them.
function(parameter_names name result)
  if(NOT headers MATCHES "ZR_CALL ${name}\\(([^)]*)\\)")
    message(FATAL_ERROR "no header declares ${name}")
  endif()
  string(REGEX REPLACE "<[^>]*>" "" declared "${CMAKE_MATCH_1}")
  string(REPLACE "," ";" declared "${declared}")
  set(names "")
  foreach(parameter IN LISTS declared)
    string(REGEX REPLACE ".*[ &*]" "" parameter "${parameter}")
    list(APPEND names "${parameter}")
  endforeach()
  set(${result} "${names}" PARENT_SCOPE)
endfunction()

# What the header says about an export must name the thread that the table names.
function(check_thread name thread)
  string(FIND "${headers}" "ZR_CALL ${name}(" end)
  string(SUBSTRING "${headers}" 0 ${end} comment)
  string(FIND "${comment}" "\n\n" begin REVERSE)
  string(SUBSTRING "${comment}" ${begin} -1 comment)
  if(NOT comment MATCHES "@thread ${thread}\n")
    message(SEND_ERROR "the header does not say that ${name} is '${thread}'")
  endif()
endfunction()

set(text "# The exports

What each of them takes and answers, on which thread it does its work (the header says what that
means), and what it answers when an argument is refused. Made by `docs/exports.cmake` from the table
in [exports.h](../zrscreenmod/exports.h) and from the headers, which say what each is for.
")
set(headers "")
foreach(header zrscreenmod.h zrextscreen.h zrcontrols.h)
  file(READ ${module}/${header} headers)
  string(REGEX REPLACE "ZR_REF\\(([a-z]+)\\)" "\\1&" headers "${headers}") # as C++ has it
  string(APPEND text "\n## [${header}](../zrscreenmod/${header})\n\n"
    "| export | thread | arguments | answer |\n|---|---|---|---|\n")
  string(REGEX MATCHALL "X\\(ZR[A-Za-z]+, [A-Za-z0-9_]+, [a-z]+, [A-Za-z]+(\\([^)]*\\))?, \\(([^()]|\\(([^()]|\\([^()]*\\))*\\))*\\)\\)"
    rows "${table}")
  foreach(row IN LISTS rows)
    string(REGEX MATCH "^X\\(([A-Za-z]+), ([A-Za-z0-9_]+), ([a-z]+), ([A-Za-z]+(\\([^)]*\\))?), \\((.*)\\)\\)$"
      whole "${row}")
    set(name ${CMAKE_MATCH_1}_${CMAKE_MATCH_2})
    set(thread ${CMAKE_MATCH_3})
    set(answer "${CMAKE_MATCH_4}")
    # Commas outside of parentheses separate arguments.
    string(REGEX REPLACE "([a-z]\\([^(),]*), ([^()]*\\))" "\\1@ \\2" arguments "${CMAKE_MATCH_6}")
    string(REPLACE ", " ";" arguments "${arguments}")
    if(NOT headers MATCHES "ZR_CALL ${name}\\(")
      continue()
    endif()
    check_thread(${name} ${thread})
    parameter_names(${name} names)
    set(cell "")
    foreach(argument parameter IN ZIP_LISTS arguments names)
      if(argument)
        string(REPLACE "@" "," argument "${argument}")
        describe("${argument}" meaning)
        string(APPEND cell "`${parameter}` ${meaning}; ")
      endif()
    endforeach()
    string(REGEX REPLACE "; $" "" cell "${cell}")
    describe_answer("${answer}" answered)
    string(APPEND text "| `${name}` | ${thread} | ${cell} | ${answered} |\n")
  endforeach()
endforeach()

if(CHECK)
  file(READ ${page} present)
  if(NOT present STREQUAL text)
    message(FATAL_ERROR "docs/exports.md is out of date: run cmake -P docs/exports.cmake")
  endif()
else()
  file(WRITE ${page} "${text}")
endif()
