#include "rhoplus/line_chi.h"

#include <algorithm>
#include <cmath>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "display/site_names.h"

namespace Module_rhoplus {

namespace {

std::string text_of(double number) { return std::isnan(number) ? "-" : format_number(number, "0.00"); }

void add_line(std::string& text, const std::vector<std::string>& cells) {
  for (std::size_t i = 0; i < cells.size(); ++i) {
    text += (i == 0 ? "" : "\t") + cells[i];
  }
  text += "\n";
}

}  // namespace

StationChi chi_of(const StationInversion& inversion, std::int32_t station_index, double station) {
  StationChi chi;
  chi.station_index = station_index;
  chi.station = station;
  chi.name = Module_display_data::site_name(station_index);
  const numerics::rhoplus::RhoplusRun& run = inversion.run;
  if (run.status == numerics::rhoplus::rhoplus_ran) {
    chi.used_values = run.used_values;
    chi.target = run.target_chi;
    chi.achieved = run.achieved_chi;
    chi.remark = note_of(inversion);
  } else {
    chi.remark = run.message.empty() ? nothing_inverted : run.message;
  }
  return chi;
}

std::vector<std::string> chi_row(const StationChi& station) {
  return {format_number(station.station, "0"),
          station.name,
          std::to_string(station.used_values),
          text_of(station.target),
          text_of(station.achieved),
          text_of(station.ratio()),
          station.remark};
}

std::string chi_table_text(const std::vector<StationChi>& stations) {
  std::string text;
  add_line(text, {std::begin(chi_headings), std::end(chi_headings)});
  for (const StationChi& station : stations) {
    add_line(text, chi_row(station));
  }
  return text;
}

std::string chi_summary(const std::vector<StationChi>& stations) {
  const auto missing =
      std::ranges::count_if(stations, [](const StationChi& station) { return std::isnan(station.achieved); });
  const auto above =
      std::ranges::count_if(stations, [](const StationChi& station) { return station.ratio() > 1.0; });
  const auto inverted = static_cast<std::ptrdiff_t>(stations.size()) - missing;
  std::string said = std::to_string(inverted) + (inverted == 1 ? " station" : " stations") +
                     " inverted; chi above its target at " + std::to_string(above);
  if (missing > 0) {
    said += "; nothing to invert at " + std::to_string(missing);
  }
  return said;
}

}  // namespace Module_rhoplus
