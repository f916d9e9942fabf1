# Warnings are errors in everything that is written here; third-party targets do not link this.
add_library(postrove_warnings INTERFACE)
if(MSVC)
  target_compile_options(postrove_warnings INTERFACE /W4 /WX /utf-8)
else()
  target_compile_options(postrove_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Werror)
endif()
