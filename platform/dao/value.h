// value.h: what stands in one field of a row, in the storage classes of the database file.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace dao {

using Null = std::monostate;
using Value = std::variant<Null, std::int64_t, double, std::string, std::vector<std::byte>>;

}  // namespace dao
