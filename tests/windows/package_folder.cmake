# Where check_zip.cmake unpacks the package: a path with a blank and a character that no 8-bit
# western code page has.
set(PACKAGE_DIR "${WORK_DIR}/Meeting 会议")
