#include "projections/projection_file.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "core/debug_log.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "platform/files/input_file.h"
#include "platform/files/safe_files.h"
#include "projections/value_fields.h"

namespace fs = std::filesystem;

namespace Module_projections {

namespace {

constexpr std::string_view header =
    "Name,Datum,projection,hemisphere,Origin_Longitude,Origin_Latitude,Standard_parallel_1,Standard_parallel_"
    "2,"
    "Description,False_easting,False_northing,Scale_factor,Zone_width,Zone_number,ERM";
constexpr std::string_view name_column = "Name";
constexpr std::string_view description_column = "Description";
constexpr std::string_view no_definition = "None";
constexpr std::int64_t max_file_size = std::int64_t{16} << 20U;  // bytes; a hundred thousand definitions

bool is_definition(std::string_view line) {
  return !trimmed(line).empty() && !line.starts_with(no_definition);
}

// Takes the text between quotes; a doubled quote means one. False if the closing one is missing.
bool take_quoted(std::string_view& rest, std::string& field) {
  rest.remove_prefix(1);
  while (true) {
    const std::size_t quote = rest.find('"');
    field += rest.substr(0, quote);
    if (quote == std::string_view::npos) {
      return false;
    }
    rest.remove_prefix(quote + 1);
    if (!rest.starts_with('"')) {
      return true;
    }
    field += '"';
    rest.remove_prefix(1);
  }
}

std::vector<std::string> csv_fields(std::string_view line) {
  std::vector<std::string> fields;
  for (bool more = true; more;) {
    std::string field;
    std::string_view rest = line.substr(std::min(line.find_first_not_of(" \t"), line.size()));
    if (rest.starts_with('"')) {
      if (!take_quoted(rest, field)) {
        throw std::runtime_error("a quote has no end");
      }
      line = rest;
    }
    const std::size_t comma = line.find(',');
    field += line.substr(0, comma);
    fields.emplace_back(trimmed(field));
    more = comma != std::string_view::npos;
    line.remove_prefix(more ? comma + 1 : line.size());
  }
  return fields;
}

// The places of the columns, from the header.
class Columns {
 public:
  explicit Columns(std::string_view header_line) : titles_(csv_fields(header_line)) {
    name_ = required(name_column);
    description_ = place_of(description_column);
    std::transform(named_fields.begin(), named_fields.end(), values_.begin(),
                   [this](const NamedField& column) { return required(column.column_title); });
    last_ = std::max(name_, *std::max_element(values_.begin(), values_.end()));
  }

  [[nodiscard]] CoordSystem definition(std::string_view line) const {
    const std::vector<std::string> fields = csv_fields(line);
    if (fields.size() <= last_) {
      throw std::runtime_error("there are " + std::to_string(fields.size()) + " columns where " +
                               std::to_string(last_ + 1) + " are needed");
    }
    CoordSystem definition;
    for (std::size_t index = 0; index < named_fields.size(); ++index) {
      const std::string& text = fields[values_[index]];
      if (!read_field(text, named_fields[index].field, definition)) {
        const bool whole = std::holds_alternative<WholeNumber>(named_fields[index].field);
        throw std::runtime_error("'" + text + "' in column " + std::string(named_fields[index].column_title) +
                                 " is not a " + (whole ? "whole number" : "number"));
      }
    }
    const bool described = description_ && *description_ < fields.size();
    definition.name = joined_name(fields[name_], described ? fields[*description_] : std::string());
    return definition;
  }

 private:
  [[nodiscard]] std::optional<std::size_t> place_of(std::string_view title) const {
    const auto found = std::find_if(titles_.begin(), titles_.end(), [&](const std::string& given) {
      return equal_ignoring_case(given, title);
    });
    return found == titles_.end()
               ? std::nullopt
               : std::optional<std::size_t>(static_cast<std::size_t>(found - titles_.begin()));
  }
  [[nodiscard]] std::size_t required(std::string_view title) const {
    const std::optional<std::size_t> place = place_of(title);
    if (!place) {
      throw std::runtime_error("the header has no column " + std::string(title));
    }
    return *place;
  }

  std::vector<std::string> titles_;
  std::size_t name_ = 0;
  std::optional<std::size_t> description_;
  std::array<std::size_t, named_fields.size()> values_{};
  std::size_t last_ = 0;  // of the columns that every line needs
};

std::string csv_field(std::string_view text) {
  std::string field(text);
  std::replace_if(
      field.begin(), field.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  const bool needs_quotes =
      field.find_first_of(",\"") != std::string::npos || field.starts_with(no_definition);
  if (!needs_quotes) {
    return field;
  }
  for (std::size_t quote = field.find('"'); quote != std::string::npos; quote = field.find('"', quote + 2)) {
    field.insert(quote, 1, '"');
  }
  return '"' + field + '"';
}

std::string csv_line(const CoordSystem& definition) {
  std::string line = csv_field(name_part(definition.name));
  for (const NamedField& column : named_fields) {
    if (column.column_title == "False_easting") {
      line += ',' + csv_field(description_part(definition.name));
    }
    line += ',' + field_text(definition, column.field);
  }
  return line;
}

std::string default_projection_file() {
  const Environment& environment = session().environment;
  const fs::path of_user = fs::path(environment.application_data_directory) / projection_file_name;
  const fs::path of_program = fs::path(environment.program_directory) / projection_file_name;
  std::error_code missing;
  return (!fs::exists(of_user, missing) && fs::exists(of_program, missing) ? of_program : of_user).string();
}

void move_to_backup(const std::string& path) {
  safe_files::copy_into_place(path, path + ".bak");
  fs::remove(path);
}

}  // namespace

int read_coord_projection_file(std::string& path, CoordSystems& coord_systems) {
  Module_debug::write_debug(1, "read_coord_projection_file ");
  return trap_errors("An error occured while reading the projection definitions: ", [&] {
    const bool was_picked = !path.empty();
    if (!was_picked) {
      path = default_projection_file();
    }
    const CoordSystems definitions = definitions_from_csv(read_whole_file(path, max_file_size));
    if (definitions.empty() && was_picked) {
      throw std::runtime_error("there is no definition in " + path);
    }
    if (definitions.empty()) {
      move_to_backup(path);
    }
    for (const CoordSystem& definition : definitions) {
      if (add_coord_definitions_to_list(coord_systems, definition) != 0) {
        return -1;
      }
    }
    return 0;
  });
}

bool has_default_projection_file() {
  std::error_code missing;
  return fs::is_regular_file(default_projection_file(), missing);
}

int write_coord_projection_file(const std::string& path, const CoordSystems& coord_systems) {
  Module_debug::write_debug(1, "write_coord_projection_file ");
  return trap_errors("An error occurred while writing the coordinate projection file ",
                     [&] { safe_files::write_into_place(path, definitions_as_csv(coord_systems)); });
}

CoordSystems definitions_from_csv(std::string_view bytes) {
  constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
  if (bytes.starts_with(byte_order_mark)) {
    bytes.remove_prefix(byte_order_mark.size());
  }
  const std::string text = text_from_field_file(bytes);
  std::string_view rest = text;
  std::string_view header_line;
  (void)take_line(rest, header_line);

  CoordSystems definitions;
  std::optional<Columns> columns;  // of the header; without a definition it isn't needed
  std::string_view line;
  for (std::size_t number = 2; take_line(rest, line); ++number) {
    if (!is_definition(line)) {
      continue;
    }
    if (!columns) {
      columns.emplace(header_line);
    }
    try {
      definitions.push_back(columns->definition(line));
    } catch (const std::runtime_error& fault) {
      throw std::runtime_error("line " + std::to_string(number) + ": " + fault.what());
    }
  }
  return definitions;
}

std::string definitions_as_csv(std::span<const CoordSystem> definitions) {
  std::string text(header);
  text += "\r\n";
  for (const CoordSystem& definition : definitions) {
    text += csv_line(definition) + "\r\n";
  }
  return text;
}

}  // namespace Module_projections
