#include "platform/dao/sql_fragment.h"

namespace dao {

std::string quoted_name(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) {
    quoted.append(c == '"' ? 2 : 1, c);
  }
  return quoted + '"';
}

}  // namespace dao
