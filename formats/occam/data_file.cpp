#include "formats/occam/data_file.h"

#include <cmath>
#include <span>
#include <stdexcept>
#include <utility>

#include "core/frequency_text.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/occam/table_input.h"

namespace Module_occam {

namespace {

constexpr std::string_view line_end = "\r\n";
constexpr std::size_t sites_value_column = 6;  // after the word SITES
constexpr std::size_t number_width = 12;
constexpr std::size_t type_width = 8;  // and a blank
constexpr int frequency_decimals = 4;
constexpr double frequency_parts = 1e4;  // a frequency is right to one of so many parts

void add_line(std::string& text, std::string_view label, std::string_view value = {}) {
  text.append(label).append(value).append(line_end);
}

void add_row(std::string& text, const DataRow& row) {
  text += pad_field(format_number(row.site_number, "0"), 6);
  text += pad_field(format_number(row.frequency_number, "0"), number_width);
  text += pad_field(std::to_string(static_cast<int>(row.type)), type_width) + " ";
  text += pad_field(format_number(row.datum, "0.0000"), number_width);
  text += pad_field(format_number(row.error, "0.0000"), number_width);
  text += line_end;
}

std::string_view without_colon(std::string_view text) {
  return text.starts_with(':') ? trimmed(text.substr(1)) : text;
}

void check_marker(TextInput& input) {
  if (input.filled_line().find(data_marker) == std::string_view::npos) {
    throw Refusal("The file does not have the correct format");
  }
}

/// Reads from after the marker.
OccamData read_sites(TextInput& input) {
  OccamData data;
  data.title = text_from_field_file(first_token(input.filled_line()).rest);
  // Data files of other programs have a colon after their labels.
  const int sites = integer_value(without_colon(from_column(input.filled_line(), sites_value_column)));
  if (sites < 1) {
    throw Refusal("The file does not have any sites defined");
  }
  for (int site = 0; site < sites; ++site) {
    data.site_names.push_back(text_from_field_file(trimmed(input.filled_line())));
  }
  input.filled_line();  // the label of the offsets
  for (int site = 0; site < sites; ++site) {
    data.site_offsets.push_back(static_cast<float>(numeric_value(input.filled_line())));
  }
  return data;
}

/// Reads row `count`, from 0, and checks its numbers.
DataRow read_data_row(TextInput& input, const ObservedData& data, int count) {
  Row<5> items{};
  if (!read_row(input, items, read_number_list)) {
    throw std::runtime_error("the file ends behind " + std::to_string(count) + " of its rows");
  }
  constexpr std::size_t numbers = 3;  // site, frequency, type
  for (const double item : std::span(items).first(numbers)) {
    if (item != std::trunc(item)) {
      throw std::runtime_error("row " + std::to_string(count + 1) + " has " + plain_text(item) +
                               " where a whole number is expected");
    }
  }
  const DataRow row{integer_of(items[0]), integer_of(items[1]), static_cast<DataType>(integer_of(items[2])),
                    items[3], items[4]};
  const auto check = [count](const char* what, int number, std::size_t highest) {
    if (number < 1 || static_cast<std::size_t>(number) > highest) {
      throw std::runtime_error("row " + std::to_string(count + 1) + " is of " + what + " " +
                               std::to_string(number) + ", and the file lists " + std::to_string(highest));
    }
  };
  check("site", row.site_number, data.site_offsets.size());
  check("frequency", row.frequency_number, data.frequencies.size());
  return row;
}

}  // namespace

std::string site_name_at(float position) { return "station_" + format_number(position, "0.0"); }

std::string data_file_text(const DataFile& data) {
  std::string text;
  add_line(text, "FORMAT            ", data_marker);
  add_line(text, "TITLE             ", trimmed(data.description));
  add_line(text, "SITES             ", std::to_string(data.positions.size()));
  for (std::size_t site = 0; site < data.positions.size(); ++site) {
    add_line(text, data.site_names.empty() ? site_name_at(data.positions[site]) : data.site_names[site]);
  }
  add_line(text, "OFFSETS");
  for (const float position : data.positions) {
    add_line(text, pad_field(format_number(position, "0.0"), number_width));
  }
  add_line(text, "FREQUENCIES       ", std::to_string(data.frequencies.size()));
  for (const float frequency : data.frequencies) {
    add_line(text, pad_field(frequency_text(frequency, frequency_decimals, frequency_parts, number_width),
                             number_width));
  }
  add_line(text, "NO.DATABLOCKS     ", std::to_string(data.rows.size()));
  add_line(text, "SITE,FREQUENCY,DATATYPE,DATUM,ERROR");
  for (const DataRow& row : data.rows) {
    add_row(text, row);
  }
  return text;
}

OccamData read_data_file_sites(const std::string& path) {
  TextInput input(path);
  check_marker(input);
  return read_sites(input);
}

ObservedData read_data_file(const std::string& path) {
  TextInput input(path);
  check_marker(input);
  TableHeader header = read_header(input, Labels::without_colon);
  ObservedData data{
      std::move(header.site_names), std::move(header.site_offsets), std::move(header.frequencies), {}};
  for (int count = 0; count < header.row_count; ++count) {
    data.rows.push_back(read_data_row(input, data, count));
  }
  return data;
}

}  // namespace Module_occam
