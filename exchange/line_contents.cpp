#include "exchange/line_contents.h"

#include <map>

#include "database/frequency_store.h"
#include "exchange/site_places.h"

namespace Module_exchange {

namespace {

/// A station whose site has no place has that of its map coordinates.
void complete_place(const std::map<double, GeographicSite>& places, StationDocument& station) {
  formats::transfer_function::Site& site = station.document.function.site;
  const auto found = places.find(station.document.station);
  if (found == places.end() || (site.latitude && site.longitude)) {
    return;
  }
  site.latitude = found->second.latitude;
  site.longitude = found->second.longitude;
  site.datum = found->second.datum;
  if (!site.elevation) {
    site.elevation = found->second.elevation;
  }
}

}  // namespace

int load_line(const ExportChoices& choices, std::size_t choice_index, LineContents& line) {
  line = {};
  line.choice = choices.lines[choice_index];
  auto frequencies = Module_database::load_reference_frequencies(line.choice.reference_type);
  if (!frequencies || load_line_tensors(line.choice, *frequencies, line.tensors) != 0) {
    return -1;
  }
  line.frequencies = *std::move(frequencies);
  const std::map<double, GeographicSite> places = places_of_line(line.choice.line);
  for (const Module_tensor::StationCurves& curves : line.tensors.curves.stations) {
    line.documents.push_back(station_document(line.choice, curves, line.frequencies, choices.rotation));
    complete_place(places, line.documents.back());
  }
  return 0;
}

bool is_switched_off(const Frequencies& frequencies, float frequency) {
  const std::int32_t position = frequencies.position(frequency);
  return position >= 0 && !frequencies.is_enabled(position);
}

double phase_of_turned_ey(double phase) { return phase > 0.0 ? phase - 180.0 : phase + 180.0; }

}  // namespace Module_exchange
