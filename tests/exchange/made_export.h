// made_export.h: surveys whose curves and places are known, and what was written of them.
#pragma once
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "core/text_fields.h"
#include "database/sites.h"
#include "exchange/export_files.h"
#include "exchange/export_plan.h"
#include "reduction/averages.h"
#include "tests/reduction/made_line.h"
#include "tests/support/named_site.h"
#include "tests/support/survey_fixture.h"

namespace made {

/// A table by the names of its columns. Cells of these tests hold no commas.
struct Table {
  std::vector<std::map<std::string, std::string>> rows;

  explicit Table(std::string_view text) {
    std::vector<std::string> names;
    for (std::string_view line; take_line(text, line);) {
      const std::vector<std::string> cells = split(line);
      if (names.empty()) {
        names = cells;
        continue;
      }
      std::map<std::string, std::string>& row = rows.emplace_back();
      EXPECT_EQ(cells.size(), names.size()) << line;
      for (std::size_t i = 0; i < names.size() && i < cells.size(); ++i) {
        row[names[i]] = cells[i];
      }
    }
  }
  /// The first row that has these cells; an empty one if there is none.
  [[nodiscard]] std::map<std::string, std::string> find(
      const std::map<std::string, std::string>& cells) const {
    for (const auto& row : rows) {
      const bool has_all = std::ranges::all_of(cells, [&](const auto& cell) {
        const auto found = row.find(cell.first);
        return found != row.end() && found->second == cell.second;
      });
      if (has_all) {
        return row;
      }
    }
    ADD_FAILURE() << "there is no such row";
    return {};
  }
  static std::vector<std::string> split(std::string_view line) {
    std::vector<std::string> cells(1);
    for (const char c : line) {
      if (c == ',') {
        cells.emplace_back();
      } else {
        cells.back() += c;
      }
    }
    return cells;
  }
};

/// Merged curves of a station of line 200E at 1, 10 and 100 Hz: rho xy 100 ohm-m at 45 degrees, rho yx 400 at
/// -135, diagonals of 1 ohm-m at 30 degrees.
inline void store_tensor(double station) {
  const std::pair<const char*, Point> elements[] = {{"ExHx", {0.0F, 1.0F, 30.0F}},
                                                    {"ExHy", {0.0F, 100.0F, 45.0F}},
                                                    {"EyHx", {0.0F, 400.0F, -135.0F}},
                                                    {"EyHy", {0.0F, 1.0F, 30.0F}}};
  for (const auto& [type, values] : elements) {
    std::vector<Point> points;
    for (const float frequency : {1.0F, 10.0F, 100.0F}) {
      points.push_back({frequency, values.resistivity, values.phase});
    }
    StoredReading merged = with_errors(reading(points), 0.1F * values.resistivity, 3.0F);
    for (std::size_t at = 0; at < points.size(); ++at) {
      merged.curve.value(Module_database::field_resistivity_deviation, at) = 0.0F;  // one repeat
      merged.curve.value(Module_database::field_phase_deviation, at) = 0.0F;
    }
    merged.axes = {Module_database::ey_as_measured, 0.0F};
    ReadingKey of_element = key(0.0F, station);
    of_element.data_type = type;
    store(of_element, 0, merged, 2, -1);
  }
}

inline void place_site(double station, double latitude, double longitude, const std::string& name = {}) {
  Module_database::Site site;
  site.line = "200E";
  site.station = station;
  site.name = name;
  site.latitude = latitude;
  site.longitude = longitude;
  site.elevation = 218.0;
  site.SurveyFile = std::to_string(station);
  (void)Module_database::keep_site(site);
}

}  // namespace made

class ExportTest : public SurveyTest {
 protected:
  ExportTest() {
    new_survey("north line.mdb");
    choices.lines = {{"200E", 0, 50.0F}};
    choices.folder = folder.path("out");
  }

  [[nodiscard]] std::string written(const std::string& file) const {
    return file_contents(folder.path("out/" + file));
  }
  [[nodiscard]] std::vector<std::string> files_in_folder() const {
    std::vector<std::string> files;
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(choices.folder, missing)) {
      files.push_back(entry.path().filename().string());
    }
    std::ranges::sort(files);
    return files;
  }
  int write() { return export_files(choices, {}, result); }

  Module_exchange::ExportChoices choices;
  Module_exchange::ExportResult result;
};
