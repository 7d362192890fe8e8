# Linked privately by our own targets; what comes from libraries is included as SYSTEM and stays silent.
add_library(brenlox_warnings INTERFACE)
target_compile_options(brenlox_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # Once it optimises, this compiler takes "text" + std::string for overlapping copies and std::string::replace for
  # copies without bound (its bugs 105651 and 105329), the more so where the library comes precompiled. Newer ones and
  # clang look at the same lines; the sanitizers look at what they do.
  target_compile_options(brenlox_warnings INTERFACE -Wno-restrict -Wno-stringop-overflow -Wno-array-bounds)
endif()
