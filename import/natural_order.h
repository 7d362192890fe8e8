// natural_order.h: the order in which people number files: "line 2" before "line 10".
#pragma once
#include <string_view>

namespace Module_data_file {

/// True if path `a` comes before path `b`: folder by folder, a folder's own files before its subfolders; runs
/// of digits compare as numbers, letters without regard to case.
bool comes_before_naturally(std::string_view a, std::string_view b);

}  // namespace Module_data_file
