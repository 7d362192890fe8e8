// section_stations.h: the stations of sections that name a site and leave it to the import where on a line it
// is: EDI sections, and files of the transfer functions of one site.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "import/readers/field_reader.h"

namespace Module_data_file {

/// How a section names its site.
struct SectionHead {
  std::int64_t line_number = 0;  // where it begins; 0: the whole file
  std::optional<std::string> name;
  std::string_view name_word = "SECTID";  // what messages call the name
  bool is_whole_file = false;             // the file has no other section
};

/// Sets event, dipole, spacing and filter for a file.
void set_up_section_header(ReadingRecord& record, std::string_view filter);

/// Takes the section's station and the name of its site, as the file writes it. The station is counted on
/// from the start station, or, if the choices ask for it, the one that the section names; a section without a
/// name takes the one of an EDI file's head, if it is the only section, else the next free one.
void take_section_station(const SectionHead& head, FileTask& task);

/// Takes the first station from the start station on that nobody has, and says why.
void take_next_free_station(const SectionHead& head, const std::string& why, FileTask& task);

/// Takes the name of the section's site, which take_section_station does, too.
void take_site_name(const SectionHead& head, FileTask& task);

/// Goes on to the next event. The station of a section without readings is the next section's.
void go_to_next_section(ReadingRecord& record, bool gave_readings);

/// Whether a section says who it is; an empty name says no more than none.
bool has_name(const SectionHead& head);

}  // namespace Module_data_file
