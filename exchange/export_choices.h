// export_choices.h: what is chosen for files that other packages read.
#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "database/reading.h"
#include "output/rhoplus_settings.h"
#include "tensor/line_choice.h"

namespace Module_exchange {

enum class ExportFormat : std::uint8_t { edi, emtf_xml, csv, geojson, kml };

/// As options of a command and choices of a window name them, in the order of ExportFormat.
inline constexpr std::array<std::string_view, 5> export_format_names{"edi", "emtfxml", "csv", "geojson",
                                                                     "kml"};

struct ExportChoices {
  ExportFormat format = ExportFormat::edi;
  std::vector<Module_tensor::LineChoice> lines;
  std::string folder;              // is made if it is missing
  std::optional<double> rotation;  // azimuth of x, degrees from north, that merged curves are rotated to
  std::int32_t reduction =
      Module_database::reduction_merged;  // others for CSV only, and for its curves alone
  // CSV: with these settings the fit of any layered earth as well, which takes seconds a line.
  std::optional<Module_output::RhoplusSettings> rhoplus;
  // A link to the plots of a station in GeoJSON and KML, in which {line}, {station} and {name} stand for what
  // they say; empty: to LINE.pdf where the folder has one.
  std::string plot_link;
};

/// Why the choices can't be carried out whatever the survey holds, a sentence; empty if they can.
std::string fault_of(const ExportChoices& choices);

}  // namespace Module_exchange
