// value.h: the contents of one field of a row, in the storage classes of the database file.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace dao {

using Null = std::monostate;
using Bytes = std::vector<std::byte>;
using Value = std::variant<Null, std::int64_t, double, std::string, Bytes>;

}  // namespace dao
