#include "exchange/line_contents.h"

#include <algorithm>
#include <map>
#include <string>

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

/// Elements of the impedance that a station with others has no value of.
std::string missing_elements(const formats::transfer_function::SiteDocument& document) {
  std::string missing;
  bool has_any = false;
  for (std::size_t element = 0; element < formats::transfer_function::impedance_count; ++element) {
    const bool is_there = document.has(static_cast<formats::transfer_function::Component>(element));
    has_any = has_any || is_there;
    missing +=
        is_there ? "" : (missing.empty() ? "" : ", ") + std::string(Module_tensor::curve_types[element]);
  }
  return has_any && !missing.empty() ? "no value of " + missing + " counts" : "";
}

std::string missing_place(const formats::transfer_function::SiteDocument& document) {
  const formats::transfer_function::Site& site = document.function.site;
  return site.latitude && site.longitude ? "" : "there is no latitude and longitude";
}

/// What a station with a file lacks; empty if it lacks nothing.
struct Lack {
  StationDocument* station;
  std::string text;
};

/// A remark at each station that lacks something, or one at the first where all lack the same.
void add_remarks(const std::vector<Lack>& lacks, const std::string& line) {
  const bool is_all_the_same = lacks.size() > 1 && std::ranges::all_of(lacks, [&](const Lack& lack) {
                                 return lack.text == lacks.front().text;
                               });
  for (const auto& [station, text] : lacks) {
    if (text.empty()) {
      continue;
    }
    if (is_all_the_same) {
      station->remarks.push_back("All stations of line " + line + ": " + text);
      return;
    }
    station->remarks.push_back(
        "Station " + Module_tensor::station_text(station->document.station, station->name) + ": " + text);
  }
}

/// Of files of stations, which others want whole.
void tell_what_stations_lack(LineContents& line) {
  for (const auto lacking : {missing_elements, missing_place}) {
    std::vector<Lack> lacks;
    for (StationDocument& station : line.documents) {
      if (station.refusal.empty()) {
        lacks.push_back({&station, lacking(station.document)});
      }
    }
    add_remarks(lacks, line.choice.line);
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
  if (choices.format == ExportFormat::edi || choices.format == ExportFormat::emtf_xml) {
    tell_what_stations_lack(line);
  }
  return 0;
}

bool is_switched_off(const Frequencies& frequencies, float frequency) {
  const std::int32_t position = frequencies.position(frequency);
  return position >= 0 && !frequencies.is_enabled(position);
}

}  // namespace Module_exchange
