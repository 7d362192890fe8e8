#include "import/proposals/plan_table.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "import/file_decode.h"

namespace Module_data_file {

namespace {

constexpr std::string_view yes = "yes";

std::string station_text(const PlannedSection& row) {
  std::string text = plain_text(row.station);
  return row.own_stations > 1
             ? text + " and " + plain_text(static_cast<std::int64_t>(row.own_stations - 1)) + " more"
             : text;
}

std::string remarks_text(const PlannedSection& row) {
  std::string text;
  for (const std::string& remark : row.remarks) {
    text += (text.empty() ? "" : "; ") + remark;
  }
  return text;
}

// The text of a cell that a row without readings has, too.
std::string text_of_any(const PlannedSection& row, PlanColumn column) {
  switch (column) {
    case PlanColumn::file:
      return row.file;
    case PlanColumn::site:
      return row.site;
    case PlanColumn::place:
      return row.place;
    case PlanColumn::remarks:
      return remarks_text(row);
    default:
      return {};
  }
}

std::string take_text(PlannedEdit& edit, PlanCell cell, std::string_view text, LineDirection direction) {
  const double number = numeric_value(text);
  const bool is_number = is_numeric(text) && std::isfinite(number);
  switch (cell) {
    case PlanCell::line: {
      double line_number = 0.0;
      std::string line;
      if (decode_line(ShowFault::no, text, direction, line_number, line) != 0) {
        return "'" + std::string(text) + "' is not a line: a number with N, S, E or W behind it";
      }
      edit.line = std::move(line);
      return {};
    }
    case PlanCell::station:
      edit.station = number;
      return is_number ? std::string() : "'" + std::string(text) + "' is not a station number";
    case PlanCell::event:
      edit.event = is_number ? static_cast<std::int32_t>(std::clamp(number, 0.0, 2147483647.0)) : 0;
      return is_number && number == edit.event ? std::string()
                                               : "'" + std::string(text) + "' is not an event number";
    case PlanCell::rate:
      edit.rate = static_cast<float>(number);
      return is_number && number > 0.0 && std::isfinite(*edit.rate)
                 ? std::string()
                 : "'" + std::string(text) + "' is not a scan rate in Hz";
    case PlanCell::turn_ey:
      edit.turn_ey = equal_ignoring_case(text, yes);
      return {};
    default:
      edit.from_impedance = equal_ignoring_case(text, yes);
      return {};
  }
}

void clear_cell(PlannedEdit& edit, PlanCell cell) {
  switch (cell) {
    case PlanCell::line:
      edit.line.reset();
      break;
    case PlanCell::station:
      edit.station.reset();
      break;
    case PlanCell::event:
      edit.event.reset();
      break;
    case PlanCell::rate:
      edit.rate.reset();
      break;
    default:
      break;
  }
}

std::size_t width_of(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count_if(
      text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

void append_cell(std::string& line, std::string_view text, std::size_t width) {
  line += (line.empty() ? "" : "  ") + std::string(text);
  line.append(width - std::min(width, width_of(text)), ' ');
}

}  // namespace

std::optional<PlanCell> cell_of(PlanColumn column) {
  switch (column) {
    case PlanColumn::line:
      return PlanCell::line;
    case PlanColumn::station:
      return PlanCell::station;
    case PlanColumn::event:
      return PlanCell::event;
    case PlanColumn::rate:
      return PlanCell::rate;
    case PlanColumn::turn_ey:
      return PlanCell::turn_ey;
    case PlanColumn::from_impedance:
      return PlanCell::from_impedance;
    default:
      return std::nullopt;
  }
}

std::string plan_cell_text(const PlannedSection& row, PlanColumn column) {
  if (!row.is_stored) {
    return text_of_any(row, column);
  }
  switch (column) {
    case PlanColumn::line:
      return row.line;
    case PlanColumn::station:
      return station_text(row);
    case PlanColumn::event:
      return plain_text(row.event);
    case PlanColumn::rate:
      return plain_text(row.stored_rate());
    case PlanColumn::frequencies:
      return plain_text(row.frequencies);
    case PlanColumn::turn_ey:
      return std::string(row.turn_ey ? yes : "");
    case PlanColumn::from_impedance:
      return std::string(row.from_impedance ? yes : "");
    default:
      return text_of_any(row, column);
  }
}

bool can_edit(const PlannedSection& row, PlanColumn column) {
  const std::optional<PlanCell> cell = cell_of(column);
  return cell && row.can_edit(*cell);
}

std::string edit_plan_cell(std::vector<PlannedEdit>& edits, const PlannedSection& row, PlanColumn column,
                           std::string_view text, LineDirection direction) {
  const std::optional<PlanCell> cell = cell_of(column);
  if (!cell || !row.can_edit(*cell)) {
    return "the file says this itself";
  }
  auto known = std::ranges::find_if(edits, [&](const PlannedEdit& edit) {
    return edit.file_index == row.file_index && edit.section_index == row.section_index;
  });
  PlannedEdit edit;
  edit.file_index = row.file_index;
  edit.section_index = row.section_index;
  if (known != edits.end()) {
    edit = *known;
  }
  const bool is_box = *cell == PlanCell::turn_ey || *cell == PlanCell::from_impedance;
  if (!is_box && trimmed(text).empty()) {
    clear_cell(edit, *cell);
  } else if (std::string fault = take_text(edit, *cell, trimmed(text), direction); !fault.empty()) {
    return fault;
  }
  if (known != edits.end()) {
    *known = std::move(edit);
  } else {
    edits.push_back(std::move(edit));
  }
  return {};
}

std::string plan_as_text(const ImportPlan& plan) {
  std::array<std::size_t, plan_column_titles.size()> widths{};
  for (std::size_t column = 0; column < widths.size(); ++column) {
    widths[column] = width_of(plan_column_titles[column]);
    for (const PlannedSection& row : plan.sections) {
      widths[column] =
          std::max(widths[column], width_of(plan_cell_text(row, static_cast<PlanColumn>(column))));
    }
  }
  const auto line_of = [&](std::string mark, auto&& text_of) {
    for (std::size_t column = 0; column < widths.size(); ++column) {
      append_cell(mark, text_of(column), widths[column]);
    }
    return std::string(mark.substr(0, mark.find_last_not_of(' ') + 1)) + "\n";
  };
  std::string text = line_of(" ", [](std::size_t column) { return plan_column_titles[column]; });
  for (const std::size_t index : plan.display_order()) {
    const PlannedSection& row = plan.sections[index];
    text += line_of(row.problems.empty() ? " " : "!",
                    [&](std::size_t column) { return plan_cell_text(row, static_cast<PlanColumn>(column)); });
  }
  return text;
}

}  // namespace Module_data_file
