# Linked privately by our own targets; what comes from libraries is included as SYSTEM and stays silent.
add_library(brenlox_warnings INTERFACE)
target_compile_options(brenlox_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
