# Runs a script against the registered add-in. Run with -DLAUNCHER= (a list; empty on Windows),
# -DDLL=, -DSCRIPT=. A script that fails without being caught still exits with 0, so success is 7.
# A launcher maps the building machine's root to Z:.
if(LAUNCHER)
  string(PREPEND DLL "Z:")
  string(PREPEND SCRIPT "Z:")
endif()
string(REPLACE "/" "\\" DLL "${DLL}")
string(REPLACE "/" "\\" SCRIPT "${SCRIPT}")
# Output goes through a file: background processes of Wine keep a pipe open for seconds.
set(log ${CMAKE_CURRENT_BINARY_DIR}/connect_vbs.log)
foreach(action IN ITEMS register script unregister)
  if(action STREQUAL register)
    set(command regsvr32 /s ${DLL})
  elseif(action STREQUAL unregister)
    set(command regsvr32 /s /u ${DLL})
  else()
    set(command cscript //nologo ${SCRIPT})
  endif()
  execute_process(COMMAND ${LAUNCHER} ${command} RESULT_VARIABLE ${action}
                  OUTPUT_FILE ${log} ERROR_FILE ${log})
  file(READ ${log} output)
  message("${action}: ${${action}} ${output}")
endforeach()
if(NOT register EQUAL 0 OR NOT script EQUAL 7 OR NOT unregister EQUAL 0)
  message(FATAL_ERROR "failed")
endif()
