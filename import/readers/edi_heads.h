// edi_heads.h: what the readers of EDI sections take from heads: the name of a site, and its place.
#pragma once
#include "formats/edi/edi_channels.h"
#include "formats/edi/edi_reference_place.h"
#include "import/readers/section_stations.h"

namespace Module_data_file {

/// The SECTID of a section, by which its station is found.
SectionHead section_head(const formats::edi::EdiSectionHead& section);

/// Takes the place that the file's head gives.
void take_file_place(const formats::edi::EdiPlace& place, ReadingRecord& record);

/// Takes orientation and place of the section's local HX channel; its elevation, where it is 0 or absent, is
/// that of the file. The file's header, which is about all of its sections, is stored before.
void take_section_place(const formats::edi::EdiSectionHead& section, ReadingRecord& record,
                        formats::FileReport& report);

}  // namespace Module_data_file
