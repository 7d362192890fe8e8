// station_sites.h: the sites that an import brings to each station, to tell where two become one.
//
// A site is known by its name, of EDI by its SECTID, else the DATAID of the file's head, else the file's
// name. Files of the formats that hold the station's number mean the station that they say: of those two are
// one site.
#pragma once
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "formats/file_report.h"

namespace Module_data_file {

using LineStation = std::pair<std::string, double>;  // the line in upper case

struct Site {
  std::string name;
  std::string file;
  bool says_station = false;   // the file holds the station's number itself
  std::size_t file_index = 0;  // in the list of files
};

/// A station that several sites come to.
struct SharedStation {
  std::string line;
  double station = 0.0;
  std::vector<Site> sites;             // of the import, each once; one or more
  std::vector<std::string> in_survey;  // files of other sites that have readings there

  /// "Station 7 of line 200E: Z2HX7 (a.edi), ET7 (c.edi), d.edi in the survey"; of many the first.
  [[nodiscard]] std::string text() const;
};

class StationSites {
 public:
  void add(const std::string& line, double station, Site site);

  struct AtStation {
    std::string line;  // as it is written
    std::vector<Site> sites;
  };
  [[nodiscard]] const std::map<LineStation, AtStation>& all() const { return stations_; }
  [[nodiscard]] bool contains(const LineStation& place) const { return stations_.contains(place); }

 private:
  std::map<LineStation, AtStation> stations_;
};

/// What is known of the files of an import, as far as they have been read.
struct FoundSites {
  StationSites sites;
  std::set<LineStation> claimed;    // by files whose head has a name, if the station is free then
  std::set<std::int32_t> own_rows;  // of FileTable
};

/// The files that have readings at the stations of the open survey. Each line is read when it is first asked
/// for; none without an open survey, as a scan needs none.
class FilesAtStations {
 public:
  struct File {
    std::int32_t ID = 0;  // of FileTable
    std::string name;
    bool says_station = false;
  };
  struct Station {
    std::vector<File> files;
    std::string site;  // its name; empty if the survey has none
  };
  using Line = std::map<double, Station>;  // by station

  /// Throws dao::Error.
  const Line& of_line(const std::string& line);
  const Station& at(const std::string& line, double station);

 private:
  static Line read_line(const std::string& line);

  std::map<std::string, Line> lines_;  // by name in upper case
};

/// The stations that different sites come to, in the import or with what the survey holds. Throws dao::Error.
std::vector<SharedStation> shared_stations(const FoundSites& found, FilesAtStations& survey);

/// The kind of these remarks.
inline constexpr std::string_view different_sites_kind = "different sites come to one station";

/// Notes each shared station in the reports of the files whose sites come to it after another.
void remark_on_shared_stations(const std::vector<SharedStation>& shared,
                               std::vector<formats::FileReport>& files);

std::vector<std::string> texts_of(const std::vector<SharedStation>& shared);

/// What is said of stations, a line each; of many the first, and how many more there are.
std::string list_of_stations(const std::vector<std::string>& texts);

/// Asks whether different sites may be taken as repeats of one station; true if there are none.
/// @param texts  what is said of each of the stations
[[nodiscard]] bool may_share_stations(const std::vector<std::string>& texts);

}  // namespace Module_data_file
