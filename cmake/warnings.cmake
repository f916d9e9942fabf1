# Warnings are errors in everything that is written here; third-party targets do not link this.
add_library(postrove_warnings INTERFACE)
if(MSVC)
  target_compile_options(postrove_warnings INTERFACE /W4 /WX /utf-8)
else()
  target_compile_options(postrove_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
  if(NOT WIN32)
    # COM interfaces have no virtual destructors; the native build watches over the core.
    target_compile_options(postrove_warnings INTERFACE -Wnon-virtual-dtor)
  endif()
endif()
