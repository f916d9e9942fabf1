# Runs a script against the registered add-in. Run with -DLAUNCHER= (a list; empty on Windows),
# -DDLL=, -DSCRIPT=. A script that fails without being caught still exits with 0, so success is 7.
# A launcher maps the building machine's root to Z:.
if(LAUNCHER)
  string(PREPEND DLL "Z:")
  string(PREPEND SCRIPT "Z:")
endif()
string(REPLACE "/" "\\" DLL "${DLL}")
string(REPLACE "/" "\\" SCRIPT "${SCRIPT}")
execute_process(COMMAND ${LAUNCHER} regsvr32 /s ${DLL} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${LAUNCHER} cscript //nologo ${SCRIPT}
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
execute_process(COMMAND ${LAUNCHER} regsvr32 /s /u ${DLL} COMMAND_ERROR_IS_FATAL ANY)
if(NOT result EQUAL 7)
  message(FATAL_ERROR "exit code ${result}\n${output}")
endif()
