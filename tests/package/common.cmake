# Where the package is unpacked: a path with a blank and a character that no 8-bit western code page
# has.
set(PACKAGE_DIR "${WORK_DIR}/Meeting 会议")

string(REPLACE "|" ";" RUN "${RUN}")

# unpack(generator): packs, and unpacks what came of it to PACKAGE_DIR.
function(unpack generator suffix)
  file(REMOVE_RECURSE ${WORK_DIR})
  file(MAKE_DIRECTORY ${WORK_DIR}/archive)
  execute_process(COMMAND ${CPACK} -G ${generator} -B ${WORK_DIR}/archive
    WORKING_DIRECTORY ${BUILD_DIR} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
  file(GLOB archive ${WORK_DIR}/archive/*.${suffix})
  list(FILTER archive EXCLUDE REGEX "-symbols")
  list(LENGTH archive count)
  if(NOT count EQUAL 1)
    message(FATAL_ERROR "cpack made ${count} archives: ${archive}")
  endif()
  file(ARCHIVE_EXTRACT INPUT ${archive} DESTINATION ${WORK_DIR}/unpacked)
  # The archive has one folder at its top.
  file(GLOB top ${WORK_DIR}/unpacked/*)
  file(RENAME ${top} "${PACKAGE_DIR}")
endfunction()

# require(files...): in the package
function(require)
  foreach(file IN LISTS ARGN)
    if(NOT EXISTS "${PACKAGE_DIR}/${file}")
      message(SEND_ERROR "the package has no ${file}")
    endif()
  endforeach()
endfunction()
