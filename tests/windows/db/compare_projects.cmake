# Fails unless the database that the tests left in FOLDER is sound and holds what their list says.
# Run with -DSQLITE3=, -DFOLDER=.
cmake_minimum_required(VERSION 3.25)
set(sqlite ${SQLITE3} -batch -bail -readonly -list ${FOLDER}/Postrove.mdb)
execute_process(COMMAND ${sqlite} "PRAGMA integrity_check" OUTPUT_VARIABLE state
  COMMAND_ERROR_IS_FATAL ANY)
if(NOT state STREQUAL "ok\n")
  message(FATAL_ERROR "the database is damaged: ${state}")
endif()

set(line "ProjectID")
foreach(field "[Project Number]" "[Project Name]" "ProjFilePath")
  string(APPEND line " || char(9) || replace(replace(replace(${field}, "
    [[char(92), '\\'), char(9), '\t'), char(10), '\n')]])
endforeach()
execute_process(
  COMMAND ${sqlite} "SELECT ${line} || char(9) || Active FROM Project ORDER BY ProjectID"
  OUTPUT_FILE ${FOLDER}/found.txt COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND cmp ${FOLDER}/projects.txt ${FOLDER}/found.txt RESULT_VARIABLE differ)
if(differ)
  message(FATAL_ERROR "${FOLDER}/projects.txt and found.txt beside it differ")
endif()
