# Puts the symbols of FILE where debuggers look for them, under the folder $ZR_PREFIX. With NAME_IN,
# which names a folder for them instead, the installed file is told their name and sum.
get_filename_component(name ${FILE} NAME)
if(NAME_IN)
  set(symbols ${NAME_IN}/${name}.debug)
elseif(WINDOWS)
  set(symbols $ENV{ZR_PREFIX}/${BINDIR}/${name}.debug)
else()
  execute_process(COMMAND ${READELF} --notes ${FILE} OUTPUT_VARIABLE notes
    COMMAND_ERROR_IS_FATAL ANY)
  if(NOT notes MATCHES "Build ID: ([0-9a-f][0-9a-f])([0-9a-f]+)")
    message(FATAL_ERROR "${FILE} has no build id")
  endif()
  set(symbols $ENV{ZR_PREFIX}/lib/debug/.build-id/${CMAKE_MATCH_1}/${CMAKE_MATCH_2}.debug)
endif()
get_filename_component(folder ${symbols} DIRECTORY)
file(MAKE_DIRECTORY ${folder})
# Files for Windows hold the time at which they were written: with one time, two are the same, and
# the sum that the installed file knows is that of the packed symbols.
execute_process(COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=1
  ${OBJCOPY} --only-keep-debug --compress-debug-sections ${FILE} ${symbols}
  COMMAND_ERROR_IS_FATAL ANY)
file(CHMOD ${symbols} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
if(NAME_IN)
  execute_process(COMMAND ${OBJCOPY} --add-gnu-debuglink=${symbols}
    $ENV{ZR_PREFIX}/${BINDIR}/${name} COMMAND_ERROR_IS_FATAL ANY)
endif()
