// edi_stations.h: what the readers of EDI sections take from heads: station, place, header members.
#pragma once
#include <string_view>

#include "formats/edi/edi_channels.h"
#include "formats/file_report.h"
#include "import/reading_record.h"

namespace Module_data_file {

/// Sets event, dipole, spacing and filter for a file, and station 0 if none was given yet.
void set_up_edi_header(ReadingRecord& record, std::string_view filter);

/// Takes the station that the section names, if the choices ask for it, and the place of its local HX
/// channel.
void take_section_head(const formats::edi::EdiSectionHead& head, ReadingRecord& record,
                       formats::FileReport& report);

/// Goes on to the next event and, unless stations are named, to the next station.
void go_to_next_section(ReadingRecord& record);

/// The station that a SECTID names: its leading whole number, or that of its first run of digits; 0 without
/// one.
double sectid_station(std::string_view sectid, bool only_digits);

}  // namespace Module_data_file
