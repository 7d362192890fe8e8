// scanned_file.h: what a look into a field file finds, for proposals and for the plan of an import.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "formats/edi/edi_channels.h"
#include "formats/edi/edi_names.h"
#include "import/file_decode.h"
#include "numerics/geodesy/coordinate_transforms.h"

namespace Module_data_file {

/// A section of an EDI file, or all that a file of another format holds.
struct ScannedSection {
  formats::edi::EdiSectionHead head;  // SECTID as written
  std::int32_t frequencies = 0;       // 0: the section isn't stored
  double lowest = 0.0;                // Hz; of those above 0
  double highest = 0.0;
  std::int32_t yx_phases = 0;           // present ones, also those that follow from impedances
  std::int32_t yx_in_third = 0;         // of these in -180..-90
  bool has_turned_ey = false;           // more than half of them
  bool all_yx_phases_negative = false;  // as stored in the file
  bool has_impedances_only = false;     // neither resistivities nor phases
};

struct ScannedFile {
  std::string path;
  FileFormat format = format_unknown;
  double DateCollected = 0.0;            // days since 30 December 1899
  std::string date;                      // the same, "21-Oct-2019"
  std::vector<ScannedSection> sections;  // a readable file of another format than EDI has one
  formats::edi::EdiNames names;          // asked for only where a section has no name
  bool has_remote = false;               // channels of a remote reference
  std::optional<numerics::geodesy::GeographicPlace> place;  // of the head
  std::optional<numerics::geodesy::MapPlace> map_place;     // of a format that gives map coordinates
  std::string own_line;                                     // of a format that names it, of its first station
  std::vector<double> own_stations;                         // of a format that gives them, each once
  float own_rate = 0.0F;  // Hz; of a format that gives it, or that asks for a certain one
  std::string failure;    // why the file gives nothing; empty if it gives something
};

/// Looks into a file; what can't be read is its failure, nothing is thrown. The user is told nothing.
ScannedFile scan_field_file(const std::string& path);

/// What a section calls its site: SECTID, else the file's DATAID; empty without both.
std::string site_of(const ScannedFile& file, const ScannedSection& section);

inline bool is_edi(FileFormat format) { return format == format_edi_mt || format == format_edi_spectra; }

}  // namespace Module_data_file
