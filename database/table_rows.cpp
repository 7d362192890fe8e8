#include "database/table_rows.h"

#include "core/calendar.h"
#include "core/number_text.h"

namespace Module_database {

namespace {

constexpr double last_day = 2958465.0;   // 31 December 9999
constexpr double first_day = -657434.0;  // 1 January 100

std::string date_text(double days) {
  // A date outside the calendar is damage; it is shown as the number that is stored.
  return days >= first_day && days <= last_day ? display_date(days) : plain_text(days);
}

}  // namespace

TableRows::TableRows(const std::string& path, std::string_view table)
    : database_(dao::Database::open(path, dao::Access::read_only)),
      rows_(database_.open_recordset("SELECT * FROM [" + std::string(table) + "]")),
      columns_(database_.columns(table)),
      row_count_(rows_.record_count()) {}

std::vector<std::string> TableRows::row(std::int32_t index) {
  rows_.set_absolute_position(index);
  ++rows_read_;
  std::vector<std::string> texts;
  texts.reserve(columns_.size());
  for (const dao::Column& column : columns_) {
    texts.push_back(text_of(column));
  }
  return texts;
}

std::string TableRows::text_of(const dao::Column& column) const {
  if (rows_.is_null(column.name)) {
    return {};
  }
  switch (column.type) {
    case dao::ColumnType::counter:
    case dao::ColumnType::long_integer:
      return plain_text(rows_.get_long(column.name));
    case dao::ColumnType::single_float:
      return plain_text(rows_.get_single(column.name));
    case dao::ColumnType::double_float:
      return plain_text(rows_.get_double(column.name));
    case dao::ColumnType::text:
      return rows_.get_text(column.name);
    case dao::ColumnType::bit:
      return rows_.get_bit(column.name) ? "True" : "False";
    case dao::ColumnType::long_binary:
      return plain_text(rows_.field_size(column.name)) + " bytes";
    case dao::ColumnType::date_time:
      return date_text(rows_.get_date(column.name));
  }
  return {};
}

}  // namespace Module_database
