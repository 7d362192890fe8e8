#include "platform/dao/table_definition.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "platform/dao/error.h"

namespace dao {

namespace {

constexpr std::array<std::pair<std::string_view, ColumnType>, 8> type_words{
    {{"COUNTER", ColumnType::counter},
     {"LONG", ColumnType::long_integer},
     {"SINGLE", ColumnType::single_float},
     {"DOUBLE", ColumnType::double_float},
     {"TEXT", ColumnType::text},
     {"BIT", ColumnType::bit},
     {"LONGBINARY", ColumnType::long_binary},
     {"DATETIME", ColumnType::date_time}}};

std::ptrdiff_t characters_of(std::string_view utf8) {
  return std::count_if(utf8.begin(), utf8.end(),
                       [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; });
}

}  // namespace

const Column* TableDefinition::find(std::string_view column) const {
  const auto found = std::find_if(columns.begin(), columns.end(),
                                  [&](const Column& each) { return equal_ignoring_case(each.name, column); });
  return found == columns.end() ? nullptr : &*found;
}

std::optional<ColumnType> column_type_of(std::string_view word) {
  for (const auto& [name, type] : type_words) {
    if (equal_ignoring_case(name, word)) {
      return type;
    }
  }
  return std::nullopt;
}

std::string_view word_of(ColumnType type) {
  return std::find_if(type_words.begin(), type_words.end(),
                      [&](const auto& each) { return each.second == type; })
      ->first;
}

Value stored_text(const Column& column, std::string_view text) {
  if (!is_valid_utf8(text)) {
    throw Error("the text for field '" + column.name + "' is not valid UTF-8");
  }
  if (column.size > 0 && characters_of(text) > column.size) {
    throw Error("the text for field '" + column.name + "' is longer than its " + std::to_string(column.size) +
                " characters");
  }
  return std::string(text);
}

Value stored_long(const Column& column, std::int64_t value) {
  if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max()) {
    throw Error("overflow: " + std::to_string(value) + " is out of range for field '" + column.name + "'");
  }
  return value;
}

Value stored_single(const Column& column, float value) {
  // The shortest decimal, unless taking it by way of 64 bits would round to a neighbour of the 32-bit number.
  const double decimal = decimal_of_single(value);
  return stored_double(column, static_cast<float>(decimal) == value ? decimal : double{value});
}

Value stored_double(const Column& column, double value) {
  if (std::isnan(value)) {
    throw Error("the value for field '" + column.name + "' is not a number");
  }
  return value;
}

}  // namespace dao
