#include "formats/zonge/zonge_avg_columns.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/text_fields.h"

namespace formats::zonge {

using transfer_function::Component;

namespace {

struct ColumnName {
  std::string_view name;  // upper case
  AvgColumn column;
};
constexpr std::array<ColumnName, 18> column_names{{{"SKP", AvgColumn::skip},
                                                   {"Z.MWGT", AvgColumn::magnitude_weight},
                                                   {"Z.PWGT", AvgColumn::phase_weight},
                                                   {"STATION", AvgColumn::station},
                                                   {"FREQ", AvgColumn::frequency},
                                                   {"COMP", AvgColumn::component},
                                                   {"RESISTIVITY", AvgColumn::resistivity},
                                                   {"PHASE", AvgColumn::phase},
                                                   {"%RHO", AvgColumn::resistivity_percent},
                                                   {"SPHZ", AvgColumn::phase_error},
                                                   {"ARES.MAG", AvgColumn::resistivity},
                                                   {"ARES", AvgColumn::resistivity},
                                                   {"Z.PHZ", AvgColumn::phase},
                                                   {"Z.MAG", AvgColumn::impedance},
                                                   {"ARES.%ERR", AvgColumn::resistivity_percent},
                                                   {"Z.PERR", AvgColumn::phase_error},
                                                   {"Z.PHASE", AvgColumn::phase},
                                                   {"RHO", AvgColumn::resistivity}}};

AvgColumn column_of(std::string_view name) {
  const std::string upper = upper_case(name);
  const auto found = std::ranges::find(column_names, upper, &ColumnName::name);
  return found == column_names.end() ? AvgColumn::other : found->column;
}

}  // namespace

std::vector<std::string_view> avg_items(std::string_view line) {
  std::vector<std::string_view> items;
  if (line.find(',') == std::string_view::npos) {
    for (std::string_view item = next_token(line); !item.empty(); item = next_token(line)) {
      items.push_back(item);
    }
    return items;
  }
  for (std::size_t comma = line.find(','); comma != std::string_view::npos; comma = line.find(',')) {
    items.push_back(trimmed(line.substr(0, comma)));
    line.remove_prefix(comma + 1);
  }
  items.push_back(trimmed(line));
  return items;
}

std::vector<AvgColumn> avg_heading(std::string_view line) {
  if (line.empty() || std::string_view("0123456789+-.*").find(line[0]) != std::string_view::npos) {
    return {};  // a row
  }
  std::vector<AvgColumn> columns;
  for (const std::string_view item : avg_items(line)) {
    if (equal_ignoring_case(item, "skpStation")) {  // one word where the station has no room
      columns.push_back(AvgColumn::skip);
      columns.push_back(AvgColumn::station);
    } else {
      columns.push_back(column_of(item));
    }
  }
  const bool is_heading = std::ranges::find(columns, AvgColumn::frequency) != columns.end() &&
                          std::ranges::find(columns, AvgColumn::phase) != columns.end();
  return is_heading ? columns : std::vector<AvgColumn>{};
}

bool is_avg_set_heading(std::string_view line) {
  constexpr std::array<std::string_view, 5> names{"skp", "Station", "Freq", "Resistivity", "Phase"};
  return std::ranges::equal(avg_items(line), names, equal_ignoring_case);
}

std::optional<Component> avg_component(std::string_view name) {
  struct Name {
    std::string_view text;
    Component component;
  };
  constexpr std::array<Name, 10> names{{{"EXHX", Component::zxx},
                                        {"EXHY", Component::zxy},
                                        {"EYHX", Component::zyx},
                                        {"EYHY", Component::zyy},
                                        {"ZXX", Component::zxx},
                                        {"ZXY", Component::zxy},
                                        {"ZYX", Component::zyx},
                                        {"ZYY", Component::zyy},
                                        {"TZX", Component::tx},
                                        {"TZY", Component::ty}}};
  std::string upper = upper_case(trimmed(name));
  if (upper.size() == 4 && upper.back() == 'R' && (upper[0] == 'Z' || upper[0] == 'T')) {
    upper.pop_back();
  }
  const auto found = std::ranges::find(names, upper, &Name::text);
  return found == names.end() ? std::nullopt : std::optional(found->component);
}

}  // namespace formats::zonge
