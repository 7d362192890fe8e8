#include "database/legacy_check.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "database/reading.h"
#include "platform/dao/error.h"

namespace Module_database {

namespace {

// A table of frequencies, masks and perhaps data, and how its rows are called in messages.
struct CheckedTable {
  std::string_view name;
  std::string_view row_name;
  int masks;   // for each frequency
  int fields;  // for each frequency; 0: the table holds no data
};

constexpr CheckedTable checked_tables[] = {
    {"ReadingsDataTable", "reading ", mask_count, field_count},
    {"ReadingsFrequencyTable", "frequency list ", 1, 0},
};

[[noreturn]] void fail(const dao::Recordset& row, const CheckedTable& table, const std::string& what) {
  throw dao::Error(std::string(table.row_name) + plain_text(row.get_long("ID")) + " is damaged: " + what);
}

// The bytes of a column, of which each frequency has so many 32-bit numbers.
dao::Bytes checked_bytes(const dao::Recordset& row, const CheckedTable& table, std::string_view column,
                         int numbers) {
  dao::Bytes bytes = row.get_binary(column);
  const auto found = static_cast<std::int64_t>(bytes.size());
  const std::int64_t wanted = 4 * std::int64_t{numbers} * std::max(row.get_long("NumFrequencies"), 0);
  if (found != wanted) {
    fail(row, table,
         std::string(column) + " has " + plain_text(found) + " bytes in place of " + plain_text(wanted));
  }
  return bytes;
}

void check_row(const dao::Recordset& row, const CheckedTable& table) {
  const std::vector<float> frequencies = singles_from(checked_bytes(row, table, "FreqBinary", 1));
  const std::vector<std::int32_t> masks = longs_from(checked_bytes(row, table, "MaskBinary", table.masks));
  if (table.fields > 0) {
    checked_bytes(row, table, "DataBinary", table.fields);
    if (!frequencies.empty() && row.get_long("NumFields") != table.fields) {
      fail(row, table,
           "it has " + plain_text(row.get_long("NumFields")) + " fields in place of " +
               plain_text(table.fields));
    }
  }
  if (!std::all_of(frequencies.begin(), frequencies.end(), [](float f) { return std::isfinite(f); }) ||
      !std::is_sorted(frequencies.begin(), frequencies.end())) {
    fail(row, table, "its frequencies are not in ascending order");
  }
  if (!std::all_of(masks.begin(), masks.end(), [](std::int32_t mask) { return mask == 0 || mask == 1; })) {
    fail(row, table, "its masks are not all 0 or 1");
  }
}

bool has_table(const dao::Database& survey, std::string_view wanted) {
  const std::vector<std::string> names = survey.table_names();
  return std::any_of(names.begin(), names.end(),
                     [&](const std::string& name) { return equal_ignoring_case(name, wanted); });
}

}  // namespace

void check_legacy_survey(dao::Database& survey) {
  for (const CheckedTable& table : checked_tables) {
    if (!has_table(survey, table.name)) {
      continue;
    }
    dao::Recordset rows = survey.open_recordset("SELECT * FROM " + std::string(table.name));
    for (; !rows.eof(); rows.move_next()) {
      check_row(rows, table);
    }
  }
}

}  // namespace Module_database
