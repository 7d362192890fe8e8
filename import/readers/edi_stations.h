// edi_stations.h: what the readers of EDI sections take from heads: station, place, header members.
#pragma once
#include <optional>
#include <string>
#include <string_view>

#include "formats/edi/edi_channels.h"
#include "formats/edi/edi_reference_place.h"
#include "import/readers/field_reader.h"

namespace Module_data_file {

/// Sets event, dipole, spacing and filter for a file.
void set_up_edi_header(ReadingRecord& record, std::string_view filter);

/// Takes the section's station and the name of its site, as the file writes it. The station is counted on
/// from the start station, or, if the choices ask for it, the one that the section names; a section without a
/// name takes the one of the file's head, if it is the only section, else the next free one.
void take_section_station(const formats::edi::EdiSectionHead& head, FileTask& task);

/// Takes the first station from the start station on that nobody has, and says why.
void take_next_free_station(const formats::edi::EdiSectionHead& head, const std::string& why, FileTask& task);

/// Takes the name of the section's site, which take_section_station does, too.
void take_site_name(const formats::edi::EdiSectionHead& head, FileTask& task);

/// Takes the place that the file's head gives.
void take_file_place(const formats::edi::EdiPlace& place, ReadingRecord& record);

/// Takes orientation and place of the section's local HX channel; its elevation, where it is 0 or absent, is
/// that of the file. The file's header, which is about all of its sections, is stored before.
void take_section_place(const formats::edi::EdiSectionHead& head, ReadingRecord& record,
                        formats::FileReport& report);

/// Goes on to the next event. The station of a section without readings is the next section's.
void go_to_next_section(ReadingRecord& record, bool gave_readings);

/// Whether a section says who it is; an empty SECTID says no more than none.
bool has_name(const std::optional<std::string>& sectid);

}  // namespace Module_data_file
