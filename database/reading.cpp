#include "database/reading.h"

#include <bit>
#include <cstring>
#include <string_view>

#include "core/number_text.h"
#include "platform/dao/error.h"

namespace Module_database {

static_assert(std::endian::native == std::endian::little && sizeof(float) == 4,
              "stored curves are little-endian IEEE numbers, copied as they are");

namespace {

template <class T>
std::vector<T> values_from(std::span<const std::byte> bytes) {
  std::vector<T> values(bytes.size() / sizeof(T));
  if (!values.empty()) {
    std::memcpy(values.data(), bytes.data(), values.size() * sizeof(T));
  }
  return values;
}

// Compared before anything is allocated: a damaged count must not decide how much.
template <class T>
std::vector<T> read_column(const dao::Recordset& row, std::string_view field, std::size_t count) {
  const dao::Bytes bytes = row.get_binary(field);
  if (bytes.size() != count * sizeof(T)) {
    throw dao::Error("reading " + plain_text(row.get_long("ID")) + " is damaged: " + std::string(field) +
                     " has " + plain_text(static_cast<std::int64_t>(bytes.size())) + " bytes in place of " +
                     plain_text(static_cast<std::int64_t>(count * sizeof(T))));
  }
  return values_from<T>(bytes);
}

}  // namespace

void Curve::assign(std::size_t n) {
  frequencies.assign(n, 0.0F);
  data.assign(n * field_count, 0.0F);
  mask.assign(n * mask_count, 0);
  errors.clear();
}

void Curve::append(const Curve& source, std::size_t index) {
  const auto first_value = source.data.begin() + static_cast<std::ptrdiff_t>(index * field_count);
  const auto first_mask = source.mask.begin() + static_cast<std::ptrdiff_t>(index * mask_count);
  frequencies.push_back(source.frequencies[index]);
  data.insert(data.end(), first_value, first_value + field_count);
  mask.insert(mask.end(), first_mask, first_mask + mask_count);
  if (!errors.empty() || !source.errors.empty()) {
    error_at(field_resistivity, count() - 1) = source.error(field_resistivity, index);
    error_at(field_phase, count() - 1) = source.error(field_phase, index);
  }
}

StoredReading read_reading(const dao::Recordset& row) {
  StoredReading reading;
  const std::int32_t count = row.get_long("NumFrequencies");
  if (count > 0) {
    const auto n = static_cast<std::size_t>(count);
    reading.curve.frequencies = read_column<float>(row, "FreqBinary", n);
    reading.curve.data = read_column<float>(row, "DataBinary", n * field_count);
    reading.curve.mask = read_column<std::int32_t>(row, "MaskBinary", n * mask_count);
  }
  reading.ResOffset = row.get_single("ResOffset");
  if (!(reading.ResOffset > 0.0F)) {
    reading.ResOffset = 1.0F;
  }
  reading.PhaseOffset = row.get_single("PhaseOffset");
  reading.UseReading = row.get_bit("UseReading");
  reading.UseResistivity = row.get_bit("UseResistivity");
  reading.UsePhase = row.get_bit("UsePhase");
  reading.ID = row.get_long("ID");
  reading.FileID = row.get_long("FileID");
  reading.EventNumber = row.get_long("EventNumber");
  return reading;
}

void write_curve(dao::Recordset& row, const Curve& curve) {
  row.set_long("NumFrequencies", static_cast<std::int32_t>(curve.count()));
  row.set_long("NumFields", field_count);
  row.set_binary("DataBinary", bytes_of(curve.data));
  row.set_binary("MaskBinary", bytes_of(curve.mask));
  row.set_binary("FreqBinary", bytes_of(curve.frequencies));
}

std::span<const std::byte> bytes_of(std::span<const float> values) { return std::as_bytes(values); }
std::span<const std::byte> bytes_of(std::span<const std::int32_t> values) { return std::as_bytes(values); }
std::vector<float> singles_from(std::span<const std::byte> bytes) { return values_from<float>(bytes); }
std::vector<std::int32_t> longs_from(std::span<const std::byte> bytes) {
  return values_from<std::int32_t>(bytes);
}

}  // namespace Module_database
