# zr_add_rule_test(name sources...): a test of the rules, which needs no display.
# zr_add_widget_test(name sources...): a test of widgets. It gets an X server of its own, so that
# what it paints and where the pointer is depend on no desktop; -DZR_TEST_ON_DISPLAY=ON runs it on
# the display at hand instead. On Windows both kinds run as they are, or under the emulator of the
# toolchain file, which brings a display along.
# zr_repeat_on_large_screen(name functions...): those functions of a widget test once more, on a
# virtual screen that counts as one of high resolution.
include_guard(GLOBAL)

option(ZR_TEST_ON_DISPLAY "Run widget tests on $DISPLAY instead of a virtual display" OFF)
find_program(ZR_XVFB_RUN xvfb-run)
if(NOT WIN32 AND NOT ZR_TEST_ON_DISPLAY AND NOT ZR_XVFB_RUN)
  message(WARNING "xvfb-run was not found: widget tests will run on $DISPLAY")
endif()
# What brings a program a screen of its own; empty where there is none.
set(zrVirtualScreen "")
if(WIN32)
  set(zrVirtualScreen ${CMAKE_CROSSCOMPILING_EMULATOR})
elseif(ZR_XVFB_RUN AND NOT ZR_TEST_ON_DISPLAY)
  set(zrVirtualScreen ${ZR_XVFB_RUN})
endif()

function(_zr_add_test name)
  add_executable(${name} ${ARGN})
  zr_project_options(${name})
  target_link_libraries(${name} PRIVATE Qt5::Test)
endfunction()

function(_zr_test_properties name timeoutS)
  # QtTest prints a warning so when no QTest::ignoreMessage expects it.
  set_tests_properties(${name} PROPERTIES TIMEOUT ${timeoutS}
    FAIL_REGULAR_EXPRESSION "QWARN  :;QSYSTEM:")
  if(WIN32)
    # Without this Qt gives what it prints to the debugger when there is no console.
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT QT_FORCE_STDERR_LOGGING=1)
  endif()
  if(ZR_SANITIZE MATCHES "address")
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT
      "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0")
  elseif(ZR_SANITIZE MATCHES "thread")
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT
      "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/tsan.supp:second_deadlock_stack=1")
  endif()
endfunction()

function(zr_add_rule_test name)
  _zr_add_test(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE zr_rules)
  add_test(NAME ${name} COMMAND ${name})
  _zr_test_properties(${name} 60)
endfunction()

# Runs a test program on a display of its own, with a screen of that size.
function(_zr_add_display_test name size program)
  if(NOT zrVirtualScreen)
    add_test(NAME ${name} COMMAND ${program} ${ARGN})
  elseif(WIN32)
    add_test(NAME ${name} COMMAND ${zrVirtualScreen} --screen ${size} $<TARGET_FILE:${program}>
      ${ARGN})
  else()
    # Each test begins its search for a free display at another number: two that start together
    # must not both find the same one free.
    get_property(display GLOBAL PROPERTY ZR_TEST_DISPLAY)
    math(EXPR display "${display} + 10")
    set_property(GLOBAL PROPERTY ZR_TEST_DISPLAY ${display})
    add_test(NAME ${name} COMMAND ${zrVirtualScreen} -a -n ${display}
      -s "-screen 0 ${size}x24 -nolisten tcp" $<TARGET_FILE:${program}> ${ARGN})
  endif()
  if(WIN32)
    # The software renderer is slower under Wine.
    _zr_test_properties(${name} 300)
  else()
    _zr_test_properties(${name} 180)
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT
      QT_QPA_PLATFORM=xcb LIBGL_ALWAYS_SOFTWARE=1)
  endif()
endfunction()

function(zr_add_widget_test name)
  _zr_add_test(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE zr_module)
  _zr_add_display_test(${name} 1920x1080 ${name})
endfunction()

function(zr_repeat_on_large_screen name)
  if(zrVirtualScreen)
    _zr_add_display_test(${name}_4k 3840x2160 ${name} ${ARGN})
  endif()
endfunction()

set_property(GLOBAL PROPERTY ZR_TEST_DISPLAY 200)
