# Linked privately by our own targets; what comes from libraries is included as SYSTEM and stays silent.
add_library(brenlox_warnings INTERFACE)
target_compile_options(brenlox_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # This compiler takes "text" + std::string for overlapping copies, and std::string::replace for copies without
  # bound, once it optimises (its bugs 105651 and 105329).
  target_compile_options(brenlox_warnings INTERFACE -Wno-restrict -Wno-stringop-overflow)
endif()
