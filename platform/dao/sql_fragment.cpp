#include "platform/dao/sql_fragment.h"

namespace dao {

std::string quoted_name(std::string_view name) {
  std::string quoted;
  quoted.reserve(name.size() + 2);
  quoted += '"';
  for (std::size_t mark = 0; (mark = name.find('"')) != std::string_view::npos;) {
    quoted.append(name.substr(0, mark + 1)).push_back('"');
    name.remove_prefix(mark + 1);
  }
  quoted.append(name).push_back('"');
  return quoted;
}

}  // namespace dao
