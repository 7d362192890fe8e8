# Headers that nearly every source of a kind reads are compiled once: those of the standard library for the logic,
# Qt's for the windows. CMAKE_DISABLE_PRECOMPILE_HEADERS leaves this out (preset "clang"), which also shows a source
# that forgets an include.
add_library(brenlox_standard_headers OBJECT ${CMAKE_CURRENT_LIST_DIR}/precompiled.cpp)
target_link_libraries(brenlox_standard_headers PRIVATE brenlox_warnings)
target_precompile_headers(brenlox_standard_headers PRIVATE
  <algorithm> <array> <charconv> <cmath> <complex> <cstdint> <filesystem> <fstream> <functional> <limits> <map>
  <memory> <optional> <set> <span> <sstream> <stdexcept> <string> <string_view> <utility> <variant> <vector>)

if(BRENLOX_WINDOWS)
  add_library(brenlox_qt_headers OBJECT ${CMAKE_CURRENT_LIST_DIR}/precompiled.cpp)
  target_link_libraries(brenlox_qt_headers PRIVATE Qt6::Widgets brenlox_warnings)
  target_precompile_headers(brenlox_qt_headers PRIVATE <QtWidgets> <algorithm> <functional> <string> <vector>)
endif()

# All libraries below a folder that have no precompiled headers of their own; a target with AUTOMOC holds windows.
function(brenlox_precompile folder)
  get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target ${targets})
    get_target_property(type ${target} TYPE)
    get_target_property(own ${target} PRECOMPILE_HEADERS)
    get_target_property(windows ${target} AUTOMOC)
    if(type STREQUAL "STATIC_LIBRARY" AND NOT own)
      if(windows)
        target_precompile_headers(${target} REUSE_FROM brenlox_qt_headers)
      else()
        target_precompile_headers(${target} REUSE_FROM brenlox_standard_headers)
      endif()
    endif()
  endforeach()
  get_property(folders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
  foreach(below ${folders})
    brenlox_precompile(${below})
  endforeach()
endfunction()
