#include "import/import_entries.h"

#include <algorithm>
#include <tuple>
#include <vector>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "platform/settings_store/settings_names.h"
#include "platform/settings_store/settings_store.h"

namespace Module_data_file {

namespace {

constexpr const char* entries_key = "ImportEntries";
constexpr char between_fields = '\t';
constexpr std::size_t fields_in_row = 4;
constexpr std::size_t field_count = std::tuple_size_v<DecodeTable> * fields_in_row + 4;

/// Each field with the tab behind it.
std::vector<std::string> split(std::string_view text) {
  std::vector<std::string> fields;
  for (std::size_t end = text.find(between_fields); end != std::string_view::npos;
       end = text.find(between_fields)) {
    fields.emplace_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  return fields;
}

std::int32_t whole_number(const std::string& field, std::int32_t most) {
  const double number = is_numeric(field) ? numeric_value(field) : 0.0;
  return static_cast<std::int32_t>(std::clamp(number, 0.0, static_cast<double>(most)));
}

}  // namespace

void keep_import_entries(const ImportChoices& choices) {
  std::vector<std::string> fields;
  for (const DecodeRow& row : choices.decode) {
    fields.insert(fields.end(), {row.use_file_name ? "1" : "0", plain_text(row.start_column),
                                 plain_text(row.width), row.specified});
  }
  fields.insert(fields.end(), {plain_text(static_cast<int>(choices.line_direction)),
                               plain_text(static_cast<int>(choices.stations_by)), choices.start_station,
                               choices.station_step});
  std::string text;
  for (std::string& field : fields) {
    std::ranges::replace(field, between_fields, ' ');
    text += field + between_fields;
  }
  settings_store().set_value(settings_application, settings_section, entries_key, text);
}

std::optional<ImportEntries> last_import_entries() {
  const std::vector<std::string> fields =
      split(settings_store().value(settings_application, settings_section, entries_key, ""));
  if (fields.size() != field_count) {
    return std::nullopt;
  }
  constexpr std::int32_t most_columns = 10000;
  ImportEntries entries;
  const std::string* field = fields.data();
  for (DecodeRow& row : entries.decode) {
    row = {field[0] == "1", whole_number(field[1], most_columns), whole_number(field[2], most_columns),
           field[3]};
    field += fields_in_row;
  }
  entries.line_direction = static_cast<LineDirection>(whole_number(field[0], 1));
  entries.stations_by =
      static_cast<StationsBy>(whole_number(field[1], static_cast<int>(StationsBy::distance)));
  entries.start_station = field[2];
  entries.station_step = field[3];
  return entries;
}

void take_entries(const ImportEntries& entries, ImportChoices& choices) {
  choices.decode = entries.decode;
  choices.folder_lines.clear();
  choices.own_rate_of_fixed_columns = false;
  choices.line_direction = entries.line_direction;
  choices.stations_by = entries.stations_by;
  choices.count_sites = false;
  choices.start_station = entries.start_station;
  choices.station_step = entries.station_step;
}

void take_set_by_hand(const ListChoices& list, ImportChoices& choices) {
  const ImportChoices& chosen = list.chosen;
  for (std::size_t row = 0; row < chosen.decode.size(); ++row) {
    if (chosen.decode.at(row) != list.proposed.decode.at(row)) {
      choices.decode.at(row) = chosen.decode.at(row);
    }
  }
  if (chosen.decode[decode_line_number] != list.proposed.decode[decode_line_number]) {
    choices.folder_lines.clear();
  }
  if (chosen.decode[decode_sample_rate] != list.proposed.decode[decode_sample_rate]) {
    choices.own_rate_of_fixed_columns = false;
  }
  if (chosen.line_direction != list.proposed.line_direction) {
    choices.line_direction = chosen.line_direction;
  }
  if (list.stations_chosen) {
    choices.stations_by = chosen.stations_by;
    choices.count_sites = chosen.count_sites;
    choices.start_station = chosen.start_station;
    choices.station_step = chosen.station_step;
  }
}

void take_lasting(const LastingChoices& lasting, ImportChoices& choices) {
  choices.ReferenceType = lasting.ReferenceType.value_or(choices.ReferenceType);
  choices.ReductionType = lasting.ReductionType.value_or(choices.ReductionType);
  choices.convert_coordinates = lasting.convert_coordinates.value_or(choices.convert_coordinates);
  choices.compute_from_impedance = lasting.compute_from_impedance.value_or(choices.compute_from_impedance);
  choices.turn_ey = lasting.turn_ey.value_or(choices.turn_ey);
}

void note_by_hand(const ImportChoices& before, const ImportChoices& now, LastingChoices& lasting) {
  const auto note = [](const auto& earlier, const auto& later, auto& kept) {
    if (earlier != later) {
      kept = later;
    }
  };
  note(before.ReferenceType, now.ReferenceType, lasting.ReferenceType);
  note(before.ReductionType, now.ReductionType, lasting.ReductionType);
  note(before.convert_coordinates, now.convert_coordinates, lasting.convert_coordinates);
  note(before.compute_from_impedance, now.compute_from_impedance, lasting.compute_from_impedance);
  note(before.turn_ey, now.turn_ey, lasting.turn_ey);
}

}  // namespace Module_data_file
