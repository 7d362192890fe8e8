// plan_texts.h: the plan of an export in words: the cells of a table of it, and a line below.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "exchange/export_plan.h"

namespace Module_exchange {

enum class ExportColumn : std::uint8_t { file, line, station, site, place, frequencies, components, remarks };

inline constexpr std::array<std::string_view, 8> export_column_titles{
    "File", "Line", "Station", "Site", "Place", "Frequencies", "Components", "Remarks"};

/// "100" of a single station, "12 stations" of several; remarks one after the other.
std::string export_cell_text(const ExportRow& row, ExportColumn column);

/// "24 files; 1 station gives none; 3 have remarks", or the fault of the plan.
std::string plan_summary(const ExportPlan& plan);

}  // namespace Module_exchange
