#include "import/readers/edi_stations.h"

#include <algorithm>
#include <cmath>

#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "import/readers/reader_steps.h"

namespace Module_data_file {

using formats::FileReport;
using formats::in_quotes;
using formats::remark_unreadable;
using formats::edi::EdiChannel;
using formats::edi::EdiSectionHead;

namespace {

std::string_view first_digits(std::string_view text) {
  constexpr std::string_view digits = "0123456789";
  const std::size_t first = std::min(text.find_first_of(digits), text.size());
  const std::string_view behind = text.substr(first);
  return behind.substr(0, behind.find_first_not_of(digits));
}

struct NamedStation {
  double station = 0.0;
  bool has_number = false;
};

NamedStation station_of_sectid(std::string_view sectid, bool only_digits) {
  const std::string_view text = only_digits ? first_digits(sectid) : sectid;
  const double station = std::trunc(numeric_value(text));
  const std::string_view number = trimmed(text);
  return {
      std::isfinite(station) ? station + 0.0 : 0.0,
      !number.empty() && std::string_view("+-.0123456789").find(number.front()) != std::string_view::npos};
}

// The station that the section names, if the choices ask for it.
void take_station(const EdiSectionHead& section, ReadingRecord& record, FileReport& report) {
  if (!record.choices.sectid_as_station) {
    return;
  }
  if (!section.SECTID) {
    remark_unreadable(report, section.line_number,
                      "the section has no SECTID; the station stays " + plain_text(record.Station));
    return;
  }
  const NamedStation named = station_of_sectid(*section.SECTID, record.choices.sectid_digits);
  record.Station = named.station;
  if (!named.has_number) {
    remark_unreadable(report, section.line_number,
                      "SECTID " + in_quotes(*section.SECTID) + " has no number, taken as station 0");
  }
}

void take_place(const EdiSectionHead& section, ReadingRecord& record, FileReport& report) {
  record.Orientation = 0.0F;
  record.MapX = record.MapY = record.Elevation = 0.0;
  if (!section.local_hx) {
    remark_unreadable(report, section.line_number,
                      "the section names no local HX channel; place and orientation are 0");
    return;
  }
  const EdiChannel& hx = *section.local_hx;
  record.Orientation = static_cast<float>(hx.AZM);
  record.MapX = hx.Y;
  record.MapY = hx.X;
  record.Elevation = hx.Z;
}

}  // namespace

void set_up_edi_header(ReadingRecord& record, std::string_view filter) {
  record.EventNumber = 0;
  record.DipoleLength = usual_dipole;
  if (record.Station == station_not_set) {
    record.Station = 0.0;
  }
  if (record.StationSpacing <= 0.0F) {
    record.StationSpacing = record.DipoleLength;
  } else {
    record.DipoleLength = record.StationSpacing;
  }
  record.Filter = filter;
}

void take_section_head(const EdiSectionHead& head, ReadingRecord& record, FileReport& report) {
  take_station(head, record, report);
  take_place(head, record, report);
}

void go_to_next_section(ReadingRecord& record) {
  ++record.EventNumber;
  if (!record.choices.sectid_as_station) {
    // By its decimal text, so that steps of 0.1 don't gather a tail that no criterion would find.
    record.Station = numeric_value(plain_text(record.Station + decimal_of_single(record.StationSpacing)));
  }
}

double sectid_station(std::string_view sectid, bool only_digits) {
  return station_of_sectid(sectid, only_digits).station;
}

}  // namespace Module_data_file
