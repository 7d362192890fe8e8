// scanned_file.h: what a look into a field file finds, for proposals and for the plan of an import.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "formats/edi/edi_names.h"
#include "import/file_decode.h"
#include "import/readers/section_stations.h"
#include "numerics/geodesy/coordinate_transforms.h"

namespace Module_data_file {

/// A section that names a site, or all that a file of another format holds.
struct ScannedSection {
  SectionHead head;
  bool is_stored = true;  // false: an import leaves it out
  std::int32_t frequencies = 0;
  double lowest = 0.0;  // Hz; of those above 0
  double highest = 0.0;
  std::int32_t yx_phases = 0;           // present ones, also those that follow from impedances
  std::int32_t yx_in_third = 0;         // of these in -180..-90
  bool has_turned_ey = false;           // more than half of them
  bool all_yx_phases_negative = false;  // as they stand in the file
  bool lacks_curves = false;            // some element has an impedance only
};

/// A station that a file holds itself.
struct OwnStation {
  std::string line;  // where lines run along local east; empty: that of the import
  double station = 0.0;
  float rate = 0.0F;         // Hz; 0: that of the import
  std::string line_in_file;  // as a table of stations has it
  // Where a table of stations has it.
  std::optional<numerics::geodesy::MapPlace> map_place = {};
  std::optional<numerics::geodesy::GeographicPlace> place = {};

  /// What an import makes of it: a line without a letter gets that of the direction. Empty: its own.
  [[nodiscard]] std::string line_along(LineDirection direction) const;

  /// Whether it is the same one, wherever it is.
  bool operator==(const OwnStation& other) const {
    return line == other.line && station == other.station && rate == other.rate &&
           line_in_file == other.line_in_file;
  }
};

struct ScannedFile {
  /// Whether all of its stations have their lines from the file itself.
  [[nodiscard]] bool holds_lines() const;
  /// The same for scan rates.
  [[nodiscard]] bool holds_rates() const;

  std::string path;
  FileFormat format = format_unknown;
  double DateCollected = 0.0;                               // days since 30 December 1899
  std::string date;                                         // the same, "21-Oct-2019"
  std::vector<ScannedSection> sections;                     // one in a file of another format than EDI
  formats::edi::EdiNames names;                             // asked for only where a section has no name
  bool has_remote = false;                                  // channels of a remote reference
  std::optional<numerics::geodesy::GeographicPlace> place;  // of the file
  std::optional<numerics::geodesy::MapPlace> map_place;     // of a format that gives map coordinates
  std::vector<OwnStation> own_stations;                     // of a format that gives them
  std::optional<numerics::geodesy::GeographicPlace> first_place;  // of these, in a table of stations
  bool says_station = false;                                      // fixed columns: the head line has it
  std::optional<float> own_rate;                                  // Hz; that a file of fixed columns asks for
  std::string failure;  // why the file gives nothing; empty if it gives something
};

/// Looks into a file; what can't be read is its failure, nothing is thrown. The user is told nothing.
ScannedFile scan_field_file(const std::string& path);

}  // namespace Module_data_file
