// plan_table.h: the plan of an import as a table: titles, the texts of cells, and what is typed into them.
#pragma once
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "import/import_choices.h"
#include "import/import_plan.h"

namespace Module_data_file {

enum class PlanColumn {
  file,
  site,
  line,
  station,
  event,
  rate,
  frequencies,
  place,
  turn_ey,
  from_impedance,
  remarks
};

inline constexpr std::array<std::string_view, 11> plan_column_titles{
    "File",        "Site",  "Line",    "Station",         "Event",  "Rate",
    "Frequencies", "Place", "Turn Ey", "From Impedances", "Remarks"};

/// The cell of a row that a column shows, if it is one of those that can be edited.
std::optional<PlanCell> cell_of(PlanColumn column);

/// What a cell shows; "yes" or "" for the two boxes.
std::string plan_cell_text(const PlannedSection& row, PlanColumn column);

/// Whether the cell of this row can be typed into.
bool can_edit(const PlannedSection& row, PlanColumn column);

/// Takes a typed text for a row into the edits, over what was typed into the row before. "yes" or "" for the
/// two boxes. A text that is blank takes the edit of the cell back.
/// @param direction of lines that are typed without a letter
/// @return why the text is refused; empty if it is taken. The edits are as before where it is refused
std::string edit_plan_cell(std::vector<PlannedEdit>& edits, const PlannedSection& row, PlanColumn column,
                           std::string_view text, LineDirection direction);

/// The plan as aligned columns, rows with problems first and marked with "!".
std::string plan_as_text(const ImportPlan& plan);

}  // namespace Module_data_file
