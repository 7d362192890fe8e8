#include "platform/dao/recordset.h"

#include <cfloat>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/dao/error.h"
#include "platform/dao/row_source.h"

namespace dao {

namespace {

RowSource& open(const std::unique_ptr<RowSource>& rows) {
  if (!rows) {
    throw Error("the recordset is closed");
  }
  return *rows;
}

[[noreturn]] void fail_type(const Field& field) {
  throw Error("data type mismatch: field '" + field.name + "'");
}

// A computed field has no declared type; its value decides.
template <class... Types>
const Field& field_of_type(RowSource& rows, std::string_view name, Types... types) {
  const Field& field = rows.field(name);
  if (field.column != nullptr && ((field.column->type != types) && ...)) {
    fail_type(field);
  }
  return field;
}

// Numbers come back in either of two storage classes: the file keeps 3.0 as 3.
double number_in(RowSource& rows, const Field& field) {
  const Value value = rows.value(field);
  if (std::holds_alternative<Null>(value)) {
    return 0.0;
  }
  if (const auto* const number = std::get_if<double>(&value)) {
    return *number;
  }
  if (const auto* const integer = std::get_if<std::int64_t>(&value)) {
    return static_cast<double>(*integer);
  }
  throw damaged_row(rows, field, "a number");
}

}  // namespace

Recordset::Recordset() = default;
Recordset::Recordset(std::unique_ptr<RowSource> rows) : rows_(std::move(rows)) {}
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;
Recordset::~Recordset() = default;

bool Recordset::is_open() const { return rows_ && rows_->is_open(); }
void Recordset::close() { rows_.reset(); }

void Recordset::find_first(std::string_view criteria) { open(rows_).find_first(criteria); }
bool Recordset::no_match() const { return open(rows_).no_match(); }
bool Recordset::eof() const { return open(rows_).eof(); }
void Recordset::move_first() { open(rows_).move_first(); }
void Recordset::move_next() { open(rows_).move_next(); }
void Recordset::move_last() { open(rows_).move_last(); }
std::int32_t Recordset::record_count() const { return open(rows_).record_count(); }
void Recordset::set_absolute_position(std::int32_t position) {
  RowSource& rows = open(rows_);
  if (position < 0 || position >= rows.record_count()) {
    throw Error("no current record");
  }
  rows.set_absolute_position(static_cast<std::size_t>(position));
}
void Recordset::requery() { open(rows_).requery(); }
void Recordset::add_new() { open(rows_).add_new(); }
void Recordset::edit() { open(rows_).edit(); }
void Recordset::update() { open(rows_).update(); }
void Recordset::go_to_added() { open(rows_).go_to_added(); }
void Recordset::delete_row() { open(rows_).delete_row(); }

bool Recordset::is_null(std::string_view field) const {
  RowSource& rows = open(rows_);
  return std::holds_alternative<Null>(rows.value(rows.field(field)));
}

std::int32_t Recordset::get_long(std::string_view name) const {
  RowSource& rows = open(rows_);
  const Field& field = field_of_type(rows, name, ColumnType::counter, ColumnType::long_integer);
  const double number = number_in(rows, field);
  if (number != std::trunc(number) || number < std::numeric_limits<std::int32_t>::min() ||
      number > std::numeric_limits<std::int32_t>::max()) {
    throw damaged_row(rows, field, "a whole number of 32 bits");
  }
  return static_cast<std::int32_t>(number);
}

float Recordset::get_single(std::string_view name) const {
  RowSource& rows = open(rows_);
  const Field& field = field_of_type(rows, name, ColumnType::single_float);
  const double number = number_in(rows, field);
  if (std::isfinite(number) && std::abs(number) > double{FLT_MAX} * (1.0 + 1e-8)) {
    throw damaged_row(rows, field, "in the range of its column");
  }
  return static_cast<float>(number);
}

double Recordset::get_double(std::string_view name) const {
  RowSource& rows = open(rows_);
  const Field& field = field_of_type(rows, name, ColumnType::double_float, ColumnType::single_float,
                                     ColumnType::long_integer, ColumnType::counter);
  return number_in(rows, field);
}

double Recordset::get_date(std::string_view name) const {
  RowSource& rows = open(rows_);
  const Field& field = field_of_type(rows, name, ColumnType::date_time);
  return number_in(rows, field);
}

std::string Recordset::get_text(std::string_view name) const {
  RowSource& rows = open(rows_);
  const Field& field = field_of_type(rows, name, ColumnType::text);
  Value value = rows.value(field);
  if (auto* const text = std::get_if<std::string>(&value)) {
    return std::move(*text);
  }
  if (!std::holds_alternative<Null>(value)) {
    throw damaged_row(rows, field, "a text");
  }
  return {};
}

bool Recordset::get_bit(std::string_view name) const {
  RowSource& rows = open(rows_);
  const Field& field = field_of_type(rows, name, ColumnType::bit);
  return number_in(rows, field) != 0.0;
}

Bytes Recordset::get_binary(std::string_view name) const {
  RowSource& rows = open(rows_);
  return rows.bytes(field_of_type(rows, name, ColumnType::long_binary));
}

std::int64_t Recordset::field_size(std::string_view name) const {
  RowSource& rows = open(rows_);
  return rows.size(field_of_type(rows, name, ColumnType::long_binary));
}

void Recordset::set_null(std::string_view field) {
  RowSource& rows = open(rows_);
  rows.set(rows.field(field), Null());
}

void Recordset::set_long(std::string_view name, std::int32_t value) {
  RowSource& rows = open(rows_);
  rows.set(field_of_type(rows, name, ColumnType::counter, ColumnType::long_integer), std::int64_t{value});
}

void Recordset::set_single(std::string_view name, float value) {
  RowSource& rows = open(rows_);
  const Field& field = field_of_type(rows, name, ColumnType::single_float);
  rows.set(field, field.column == nullptr ? Value(Null()) : stored_single(*field.column, value));
}

void Recordset::set_double(std::string_view name, double value) {
  RowSource& rows = open(rows_);
  const Field& field = field_of_type(rows, name, ColumnType::double_float);
  rows.set(field, field.column == nullptr ? Value(Null()) : stored_double(*field.column, value));
}

void Recordset::set_date(std::string_view name, double days) {
  RowSource& rows = open(rows_);
  const Field& field = field_of_type(rows, name, ColumnType::date_time);
  rows.set(field, field.column == nullptr ? Value(Null()) : stored_double(*field.column, days));
}

void Recordset::set_text(std::string_view name, std::string_view value) {
  RowSource& rows = open(rows_);
  const Field& field = field_of_type(rows, name, ColumnType::text);
  rows.set(field, field.column == nullptr ? Value(Null()) : stored_text(*field.column, value));
}

void Recordset::set_bit(std::string_view name, bool value) {
  RowSource& rows = open(rows_);
  rows.set(field_of_type(rows, name, ColumnType::bit), std::int64_t{value});
}

void Recordset::set_binary(std::string_view name, std::span<const std::byte> value) {
  RowSource& rows = open(rows_);
  rows.set(field_of_type(rows, name, ColumnType::long_binary), Bytes(value.begin(), value.end()));
}

}  // namespace dao
