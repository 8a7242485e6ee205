# Where check_zip.cmake unpacks the package: a path with a blank and a character that no 8-bit
# western code page has.
set(PACKAGE_DIR "${WORK_DIR}/Meeting 会议")

# Runs a program with no path to any library but its own folder.
set(RUN "")
if(WINE_RUN)
  set(RUN ${WINE_RUN} --prefixes ${WINE_PREFIXES})
endif()
