# Records a meeting of the demonstration host, and replays the trace at both speeds: the window ends
# in the same picture, bit by bit.
cmake_minimum_required(VERSION 3.22)

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
string(REPLACE "|" ";" RUN "${RUN}")

# Pictures that do not move, so that it does not matter which was the last.
foreach(name letters digits)
  set(row_letters "abcdefghijklmnopqrstuvwxyzABCDEF")
  set(row_digits "0123456789/.-,+*0123456789/.-,+*")
  string(REPEAT "${row_${name}}" 18 luma)
  string(REPEAT "T" 144 u)
  string(REPEAT "z" 144 v)
  file(WRITE ${WORK_DIR}/${name}.y4m "YUV4MPEG2 W32 H18 F10:1\nFRAME\n${luma}${u}${v}")
endforeach()
# The user makes somebody the speaker. Not under Wine, which has no window manager here, puts both
# windows of the host at one place, and in that mode leaves the second, then empty one above.
set(mode 6)
set(click "+0.5 click 930 170")
if(RUN)
  set(mode 12)
  set(click "")
endif()
file(WRITE ${WORK_DIR}/meeting.scenario [[
0.2  add ann y4m:letters.y4m "Ann \"A\" 李"
     add bob y4m:digits.y4m
     add carl none 李小龙
     add dora y4m:letters.y4m
     call ZRScreen_SetPersonInfo bob on 1 "Bob, host" 0
     mute carl on
     call ZRScreen_SetPersonHandUp dora on
     call ZRScreen_UpdateUserNetStatus bob 2 off 5
     call ZRScreen_OpenSubtitle on
     call ZRScreen_AddSentence 1 0 Ann "Good morning. Can everybody hear me?"
     resize 1000x600
+0.3 call title=ZRCtrl_QLineEdit_Init main 10,20,200x30 Room
     call ZRCtrl_QLineEdit_SetText title "会议 5"
     call notes=ZRCtrl_QTextEdit_Init main 10,380,200x90 32 36 44
     call ZRCtrl_QTextEdit_SetText notes "1. one<br>2. two"
     call when=ZRScreenDate_Init main
+0.5 call ZRScreen_ChangeLayout 2 0=bob,1=dora
     preview ann off
     delete dora
+0.5 call ZRScreenDate_Move when 780,250 2150 12 1 9 30 -1
     share bob y4m:letters.y4m
     call ZRScreenWtmark_SetInfo 1,王小明,13812345678,
]] "     mode ${mode}
     ext show ann
+0.5 ext close
${click}
+2   screenshot original.png
+1   quit
")

# run(arguments...)
function(run)
  execute_process(COMMAND ${RUN} ${HOST} --library ${LIBRARY} ${ARGN}
    WORKING_DIRECTORY ${WORK_DIR} RESULT_VARIABLE result OUTPUT_VARIABLE output
    ERROR_VARIABLE errors)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "zrhost ended with ${result}:\n${output}\n${errors}")
  endif()
endfunction()

set(ENV{ZRSCREEN_TRACE} meeting.trace)
set(ENV{ZRSCREEN_TRACE_FRAMES} whole)
run(--size 1280x720 --scenario meeting.scenario)
unset(ENV{ZRSCREEN_TRACE})

# What the end of the meeting takes away is cut off, as by a crash.
file(READ ${WORK_DIR}/meeting.trace trace)
string(FIND "${trace}" "call ZRScreen_DelPerson s1 p5" end)
if(end EQUAL -1)
  message(FATAL_ERROR "the trace has no end:\n${trace}")
endif()
string(SUBSTRING "${trace}" 0 ${end} trace)
string(FIND "${trace}" "\n" end REVERSE)
string(SUBSTRING "${trace}" 0 ${end} trace)
file(WRITE ${WORK_DIR}/meeting.trace "${trace}\n")

foreach(speed real fast)
  run(--scenario meeting.trace --speed ${speed} --linger 1.5 --screenshot ${speed}.png)
  file(SHA256 ${WORK_DIR}/original.png original)
  file(SHA256 ${WORK_DIR}/${speed}.png replayed)
  if(NOT replayed STREQUAL original)
    message(FATAL_ERROR "${WORK_DIR}/${speed}.png is not as original.png")
  endif()
endforeach()
