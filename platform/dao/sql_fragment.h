// sql_fragment.h: a piece of SQL with its parameters, and names as SQL writes them.
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "platform/dao/value.h"

namespace dao {

/// SQL with a "?" for each parameter, in order.
struct Fragment {
  std::string sql;
  std::vector<Value> parameters;
};

/// A name in the engine's quotes.
std::string quoted_name(std::string_view name);

}  // namespace dao
