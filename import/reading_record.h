// reading_record.h: the record that the import choices and a reader fill and the store writes to the survey.
#pragma once
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "core/session_state.h"
#include "database/reading.h"
#include "database/sites.h"
#include "formats/edi/edi_names.h"
#include "formats/transfer_function/transfer_function.h"
#include "import/earlier_files.h"
#include "import/free_stations.h"
#include "import/import_choices.h"
#include "import/import_plan.h"
#include "import/station_sites.h"

namespace Module_data_file {

inline constexpr double start_date = 2.0;  // 1 January 1900, in days since 30 December 1899

/// One station key found in an import; averages and merged curves of these are brought up to date at its end.
struct ScannedStation {
  std::string LineNumber;
  double Station = 0.0;
  std::int32_t ReferenceType = 0;
  float SampleRate = 0.0F;    // Hz
  float DipoleLength = 0.0F;  // m

  bool operator<(const ScannedStation& other) const {
    return std::tie(LineNumber, Station, ReferenceType, SampleRate, DipoleLength) <
           std::tie(other.LineNumber, other.Station, other.ReferenceType, other.SampleRate,
                    other.DipoleLength);
  }
};

/// Keys in order, each once; lines are the same in any case.
struct KeyOrder {
  bool operator()(const Module_database::ReadingKey& a, const Module_database::ReadingKey& b) const;
};
using KeySet = std::set<Module_database::ReadingKey, KeyOrder>;

struct MapPosition {
  double x = 0.0;  // m, east
  double y = 0.0;  // m, north
};

/// Where a file says that it was measured.
struct SitePlace {
  std::optional<double> latitude;   // degrees, north positive; either both or none
  std::optional<double> longitude;  // degrees, east positive
  std::optional<double> elevation;  // m
  std::string datum;                // as the file names it; empty if it doesn't
};

/// A station that a file has come to, with what the file says of its site.
struct FileSite {
  std::string line;
  double station = 0.0;
  std::string name;  // as the file has it; empty if it has none
  SitePlace place;   // of the station itself, as far as the file says it
};

/// Where a section's station comes from.
enum class StationRule {
  own,        // it says it, or it is counted
  from_head,  // of its file, which has a name where the section has none
  next_free,
};

/// What an import knows beyond the file that it reads.
struct RunState {
  double next_station = 0.0;  // of sections that take theirs from the count; runs on by StationSpacing
  std::shared_ptr<FreeStations> free_stations;  // none in a look at the files, which finds what isn't free
  std::shared_ptr<EarlierFiles> earlier_files;  // made when the first file is looked for
  const ImportPlan* plan = nullptr;             // where one is carried out; its owner outlives the run
  FoundSites found;
  std::set<std::int32_t> stations_left;  // StationID of readings that were replaced
  KeySet keys_left;                      // those that replaced readings had and the new ones don't have
  /// What the files have said of sites, with their places in the list of files.
  std::vector<std::pair<std::size_t, Module_database::Site>> said_sites;
};

/// What the choices and a reader fill, one file after the other, and the store writes. -1 is "not known yet".
struct ReadingRecord {
  ImportChoices choices;
  std::int32_t file_index = 0;    // from 1, place in the list of files
  std::size_t section_index = 0;  // in the file, of the section that is being read
  std::int32_t file_format = -1;  // FileFormat, -1 not known
  bool is_own_edi = false;        // this program wrote the EDI file, so that what its words mean is known
  std::int32_t length_unit_factor = 1;  // of the head's UNITS; lengths are stored without it

  std::string SurveyFile;
  std::vector<std::string>
      path_tails;  // names that earlier imports may have given the file, the longest first
  std::string LineNumber;
  std::string line_in_file;  // the same as a table of stations has it, perhaps without a letter
  std::int32_t EventNumber = 0;
  float SampleRate = 0.0F;  // Hz
  double Station = station_not_set;
  double DateCollected = start_date;  // days since 30 December 1899
  double DateAnalysed = start_date;
  float DipoleLength = 0.0F;    // m
  float StationSpacing = 0.0F;  // m
  float Orientation = 0.0F;     // degrees
  std::string Filter;

  Module_database::Curve curve;
  Module_database::ReadingAxes axes;
  std::int32_t StationID = -1;
  std::int32_t LocationID = -1;
  double LocalX = 0.0;  // m
  double LocalY = 0.0;
  double MapX = 0.0;
  double MapY = 0.0;
  double Elevation = 0.0;
  std::optional<MapPosition>
      converted_place;      // the file's own, in the survey's projection, if that was asked for
  std::int32_t FileID = 0;  // 0: the header isn't stored yet
  FileRows file_rows;       // the rows that the file has in FileTable
  // Stations where nothing but an earlier import of the file has readings; these are lost when it is stored.
  std::optional<std::set<double>> earlier_stations;

  std::optional<formats::edi::EdiNames> edi_names;  // of the file, once they were asked for
  std::shared_ptr<const formats::transfer_function::TransferFunction>
      site_file;          // all that a file of one site holds, once its format was recognised
  std::string site;       // the name of the section's site; empty where the file says the station itself
  std::string site_name;  // the same as the file has it; empty where it has none, though its own name serves
  SitePlace place;        // of the file
  SitePlace station_place;  // of the station being read, in files that say where each of theirs is
  std::map<LineStation, FileSite> sites;  // of the file's stations, as far as they have been stored
  StationRule station_rule = StationRule::own;

  std::vector<ScannedStation> scan_list;  // each once, in the order they were found
  std::set<ScannedStation> scanned;       // the same, for looking one up
  std::set<std::string> scanned_types;    // data types of the readings found
  RunState run;
};

/// Makes the record ready for the next file; what a reader did to station, step or dipole ends with its file.
/// @param index of the file in the list, from 0
void start_file(ReadingRecord& record, std::size_t index);

/// The rows of FileTable that the record's file has, file_rows, are this run's from now on, and no other file
/// of it may find them.
void own_rows_of_file(ReadingRecord& record);

}  // namespace Module_data_file
