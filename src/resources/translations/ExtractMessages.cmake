# cmake -DLUPDATE=… -DTS_FILE=… -DSOURCE_LIST=… -DWORK_FILE=… -DEXTRACTED=… -DOPTIONS=… -P ExtractMessages.cmake
#
# Brings the texts of the sources listed in SOURCE_LIST into TS_FILE, kept in
# the source tree, with lupdate. lupdate rewrites every file it is given, so it
# works on WORK_FILE, and TS_FILE and EXTRACTED (the copy the build depends on)
# are written only when the messages changed: an edit that moves no text
# rebuilds no translation. OPTIONS holds lupdate's options separated by "|".
string(REPLACE "|" ";" OPTIONS "${OPTIONS}")
if(EXISTS "${TS_FILE}")
  file(COPY_FILE "${TS_FILE}" "${WORK_FILE}")
else()
  file(REMOVE "${WORK_FILE}")
endif()
execute_process(COMMAND "${LUPDATE}" -silent ${OPTIONS} "@${SOURCE_LIST}" -ts "${WORK_FILE}"
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
# lupdate expects tr() in a class with Q_OBJECT and says so once for each
# header that opens the namespace vlr; for vlr::localized that is by design.
string(REGEX REPLACE "[^\n]*: Class 'vlr' lacks Q_OBJECT macro\n" "" output "${output}")
if(output)
  message("${output}")
endif()
if(NOT result EQUAL 0)
  message(FATAL_ERROR "lupdate failed on ${TS_FILE}")
endif()
file(COPY_FILE "${WORK_FILE}" "${TS_FILE}" ONLY_IF_DIFFERENT)
file(COPY_FILE "${WORK_FILE}" "${EXTRACTED}" ONLY_IF_DIFFERENT)
