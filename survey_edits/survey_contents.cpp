#include "survey_edits/survey_contents.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <numeric>
#include <set>
#include <tuple>
#include <utility>

#include "core/number_text.h"
#include "database/sites.h"
#include "database/sound_rows.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"
#include "platform/dao/case_folding.h"
#include "platform/dao/text_literal.h"

namespace Module_survey_edits {

namespace {

using dao::folded_text;
using Module_database::open_survey;

using StationName = std::pair<std::string, double>;  // line folded, station

/// Reads a survey table by table into its contents.
class ContentsReader {
 public:
  SurveyContents read() {
    read_stations();
    read_files();
    read_readings();
    count();
    sort_files();
    return std::move(contents_);
  }

 private:
  void read_stations() {
    for (const Module_database::ListedStation& listed : Module_database::listed_stations()) {
      const std::size_t index = station_index(listed.line, listed.station);
      contents_.stations[index].IDs.push_back(listed.ID);
      station_of_ID_[listed.ID] = index;
    }
    for (Module_database::Site& site : Module_database::listed_sites()) {
      if (const auto found = stations_.find({folded_text(site.line), site.station});
          found != stations_.end()) {
        contents_.stations[found->second].name = std::move(site.name);
      }
    }
  }

  std::size_t station_index(const std::string& line, double station) {
    const auto [entry, is_new] =
        stations_.try_emplace({folded_text(line), station}, contents_.stations.size());
    if (is_new) {
      contents_.stations.push_back({{}, {}, line, station, {}, 0, 0});
    }
    return entry->second;
  }

  void read_files() {
    dao::Recordset rows = open_survey().database.open_recordset(
        "SELECT ID,SurveyFile,DateCollected,EventNumber,LineNumber,Station FROM FileTable ORDER BY ID");
    std::map<std::pair<std::string, double>, std::size_t> file_of_name;
    Module_database::for_each_sound_row(rows, [&](const dao::Recordset& row) {
      const std::string name = row.get_text("SurveyFile");
      const double date = row.get_date("DateCollected");
      const HeldFileRow held{row.get_long("ID"), row.get_long("EventNumber"), row.get_text("LineNumber"),
                             row.get_double("Station")};
      const auto [entry, is_new] =
          file_of_name.try_emplace({folded_text(name), std::floor(date)}, contents_.files.size());
      if (is_new) {
        contents_.files.push_back({{}, name, date, {}, 0});
      }
      contents_.files[entry->second].rows.push_back(held);
      file_of_ID_[held.ID] = entry->second;
    });
  }

  std::size_t file_index(std::int32_t FileID) {
    const auto [entry, is_new] = file_of_ID_.try_emplace(FileID, contents_.files.size());
    if (is_new) {
      contents_.files.emplace_back();
    }
    return entry->second;
  }

  void read_readings() {
    dao::Recordset rows = open_survey().database.open_recordset(
        "SELECT FileID,StationID,LocationID,LineNumber,Station,EventNumber,ReferenceType,ReductionType,"
        "DataType,DipoleLength,SampleRate FROM ReadingsDataTable WHERE FileID > 0");
    Module_database::for_each_sound_row(rows, [this](const dao::Recordset& row) { take_reading(row); });
  }

  void take_reading(const dao::Recordset& row) {
    HeldReading reading;
    reading.FileID = row.get_long("FileID");
    reading.StationID = row.get_long("StationID");
    reading.LocationID = row.get_long("LocationID");
    reading.EventNumber = row.get_long("EventNumber");
    reading.ReductionType = row.get_long("ReductionType");
    HeldCurve curve;
    curve.key = {row.get_text("LineNumber"),   row.get_double("Station"), row.get_long("ReferenceType"),
                 row.get_single("SampleRate"), row.get_text("DataType"),  row.get_single("DipoleLength")};
    reading.file = file_index(reading.FileID);
    reading.station = curve.station = station_of(reading.StationID, curve.key);
    reading.curve = curve_index(std::move(curve));
    contents_.readings.push_back(reading);
  }

  /// A reading may have lost the row of its station; then it goes by what it says itself.
  std::size_t station_of(std::int32_t StationID, const Module_database::ReadingKey& key) {
    const auto found = station_of_ID_.find(StationID);
    if (found != station_of_ID_.end()) {
      return found->second;
    }
    const std::size_t index = station_index(key.line, key.station);
    std::vector<std::int32_t>& lost = contents_.stations[index].lost_IDs;
    if (std::ranges::find(lost, StationID) == lost.end()) {
      lost.push_back(StationID);
    }
    return index;
  }

  std::size_t curve_index(HeldCurve curve) {
    const auto [entry, is_new] = curves_.try_emplace(
        {curve.station, curve.key.reference_type, curve.key.scan_rate, curve.key.data_type, curve.key.dipole},
        contents_.curves.size());
    if (is_new) {
      contents_.curves.push_back(std::move(curve));
    }
    return entry->second;
  }

  void count() {
    std::set<std::pair<std::size_t, std::size_t>> parts;  // file, station
    for (const HeldReading& reading : contents_.readings) {
      ++contents_.files[reading.file].readings;
      ++contents_.stations[reading.station].readings;
      parts.emplace(reading.file, reading.station);
    }
    for (const auto& [file, station] : parts) {
      contents_.files[file].stations.push_back(station);
      ++contents_.stations[station].files;
    }
    std::map<std::string, std::size_t> lines;
    for (std::size_t index = 0; index < contents_.stations.size(); ++index) {
      const HeldStation& station = contents_.stations[index];
      const auto [entry, is_new] = lines.try_emplace(folded_text(station.line), contents_.lines.size());
      if (is_new) {
        contents_.lines.push_back({station.line, {}, 0});
      }
      HeldLine& line = contents_.lines[entry->second];
      line.stations.push_back(index);
      line.readings += station.readings;
    }
  }

  void sort_files() {
    std::vector<std::size_t> order(contents_.files.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, {}, [this](std::size_t index) {
      const HeldFile& file = contents_.files[index];
      return std::tuple(file.rows.empty(), folded_text(file.name), file.date);
    });
    std::vector<std::size_t> place(order.size());
    std::vector<HeldFile> sorted;
    for (std::size_t index = 0; index < order.size(); ++index) {
      place[order[index]] = index;
      sorted.push_back(std::move(contents_.files[order[index]]));
    }
    contents_.files = std::move(sorted);
    for (HeldReading& reading : contents_.readings) {
      reading.file = place[reading.file];
    }
    for (const auto& [ID, index] : file_of_ID_) {
      HeldFile& file = contents_.files[place[index]];
      if (file.rows.empty() && file.name.empty()) {
        file.name = "(unknown file " + plain_text(ID) + ")";
      }
    }
  }

  SurveyContents contents_;
  std::map<StationName, std::size_t> stations_;
  std::map<std::int32_t, std::size_t> station_of_ID_;
  std::map<std::int32_t, std::size_t> file_of_ID_;
  std::map<std::tuple<std::size_t, std::int32_t, float, std::string, float>, std::size_t> curves_;
};

template <class Item, class IsIt>
std::vector<std::size_t> places_where(const std::vector<Item>& items, const IsIt& is_it) {
  std::vector<std::size_t> places;
  for (std::size_t index = 0; index < items.size(); ++index) {
    if (is_it(items[index])) {
      places.push_back(index);
    }
  }
  return places;
}

}  // namespace

SurveyContents survey_contents() { return ContentsReader().read(); }

std::vector<std::string> readings_of(const HeldStation& station) {
  const auto of_ID = [](std::int32_t ID) { return "StationID = " + format_number(ID, "0"); };
  std::vector<std::string> criteria;
  std::ranges::transform(station.IDs, std::back_inserter(criteria), of_ID);
  for (const std::int32_t ID : station.lost_IDs) {  // readings of several stations may have the same one
    criteria.push_back(of_ID(ID) + " AND LineNumber = " + dao::text_literal(station.line) +
                       " AND Station = " + criterion_text(station.station));
  }
  return criteria;
}

std::string name_of(const HeldStation& station) {
  return "line " + station.line + " station " + plain_text(station.station);
}

std::vector<std::size_t> files_named(const SurveyContents& contents, std::string_view name) {
  return places_where(contents.files, [folded = folded_text(name)](const HeldFile& file) {
    return folded_text(file.name) == folded;
  });
}

std::vector<std::size_t> stations_named(const SurveyContents& contents, std::string_view line,
                                        double station) {
  return places_where(contents.stations, [&, folded = folded_text(line)](const HeldStation& held) {
    return held.station == station && folded_text(held.line) == folded;
  });
}

std::vector<std::size_t> lines_named(const SurveyContents& contents, std::string_view line) {
  return places_where(contents.lines, [folded = folded_text(line)](const HeldLine& held) {
    return folded_text(held.line) == folded;
  });
}

}  // namespace Module_survey_edits
