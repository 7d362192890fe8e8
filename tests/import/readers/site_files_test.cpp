// Files of the transfer functions of one site, EMTF XML, Z files and J files, on their way into a survey.
#include <cmath>
#include <filesystem>
#include <numbers>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "core/absent_value.h"
#include "core/calendar.h"
#include "database/reading_facts.h"
#include "database/sites.h"
#include "import/proposals/plan_maker.h"
#include "import/proposals/scanned_file.h"
#include "projections/survey_projection.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/import/import_fixture.h"
#include "tests/import/made_site_files.h"
#include "tests/projections/definitions.h"

using namespace Module_data_file;
using formats::FileReport;
using Module_database::Curve;
using Module_database::StoredReading;

namespace {

const std::string field_data = std::string(BRENLOX_FIELD_DATA) + "/exchange/";

class SiteFiles : public ImportRun {
 protected:
  SiteFiles() {
    choices.turn_ey = TurnEy::where_needed;
    choices.start_station = "100";
    choices.station_step = "100";
  }

  static StoredReading reading_of(double station, const std::string& data_type) {
    dao::Recordset rows = Module_database::open_survey().database.open_recordset(
        "SELECT * FROM ReadingsDataTable WHERE FileID > 0 AND Station = " + std::to_string(station) +
        " AND DataType = '" + data_type + "'");
    StoredReading reading = Module_database::read_reading(rows);
    Module_database::read_facts(reading);
    return reading;
  }
  static Curve stored(double station, const std::string& data_type) {
    return reading_of(station, data_type).curve;
  }
  static std::size_t index_of(const Curve& curve, double frequency) {
    for (std::size_t index = 0; index < curve.count(); ++index) {
      if (std::abs(curve.frequencies[index] / frequency - 1.0) < 1e-5) {
        return index;
      }
    }
    ADD_FAILURE() << "no point at " << frequency << " Hz";
    return 0;
  }
  static std::vector<std::string> data_types(double station) {
    std::vector<std::string> types;
    dao::Recordset rows = Module_database::open_survey().database.open_recordset(
        "SELECT DataType FROM ReadingsDataTable WHERE FileID > 0 AND Station = " + std::to_string(station));
    for (; !rows.eof(); rows.move_next()) {
      types.push_back(rows.get_text("DataType"));
    }
    return types;
  }
  static dao::Recordset row_of_file(const std::string& name) {
    return Module_database::open_survey().database.open_recordset(
        "SELECT * FROM FileTable WHERE SurveyFile = '" + name + "'");
  }

  using Types = std::vector<std::string>;
  const Types tensor{"ExHx", "ExHy", "EyHx", "EyHy"};
  const Types tensor_and_tipper{"ExHx", "ExHy", "EyHx", "EyHy", "HzHx", "HzHy"};
  const Types tipper_alone{"HzHx", "HzHy"};
};

class SampleSiteFiles : public SiteFiles {
 protected:
  void SetUp() override {
    if (!std::filesystem::is_directory(field_data)) {
      GTEST_SKIP() << "no field data beside the checkout";
    }
  }
};

void expect_point(const Curve& curve, std::size_t index, double resistivity, double phase, double rho_error,
                  double phase_error) {
  EXPECT_NEAR(curve.value(1, index), resistivity, 2e-6 * resistivity);
  EXPECT_NEAR(curve.value(2, index), phase, 2e-5);
  if (rho_error > 0.0) {
    EXPECT_NEAR(curve.error(1, index), rho_error, 1e-5 * rho_error);
    EXPECT_NEAR(curve.error(2, index), phase_error, 1e-5 * phase_error);
  } else {
    EXPECT_EQ(curve.error(1, index), no_data);
  }
}

}  // namespace

TEST_F(SampleSiteFiles, Each_gives_the_readings_that_it_holds) {
  struct Sample {
    const char* file;
    const char* filter;
    const char* site;
    std::int32_t frequencies;
    Types types;
    std::optional<double> latitude;
    double longitude;
    std::optional<double> azimuth;  // of x
    double date;
  };
  const double no_date = day_count(1900, 1, 1);
  const std::vector<Sample> samples{
      {"emtf_xml/NMX20.xml", "EMTFXML", "NMX20", 33, tensor_and_tipper, 34.470528, -108.712288, 0.0,
       day_count(2020, 9, 20)},
      {"emtf_xml/tf_xml_no_site_layout.xml", "EMTFXML", "500fdfilNB207", 26, tensor, -30.587969, 138.959969,
       0.0, day_count(2011, 1, 1)},
      {"emtf_xml/tf_xml_emtf_xml_iris.xml", "EMTFXML", "PAL53", 30, tensor_and_tipper, 40.965748, -80.10243,
       0.0, day_count(2016, 7, 12)},
      {"emtf_xml/tf_xml_with_derived_quantities.xml", "EMTFXML", "SMG1", 20, tensor_and_tipper, -38.41,
       -73.904722, 0.0, day_count(2003, 1, 2)},
      {"emtf_xml/example.xml",
       "EMTFXML",
       "s08",
       28,
       {"ExHy", "EyHx"},
       -34.646,
       137.006,
       0.0,
       day_count(2020, 10, 11)},
      {"emtf_xml/gv100.xml", "EMTFXML", "gv100", 48, tensor_and_tipper, 38.6113805555556, -118.535261111111,
       std::nullopt, day_count(2020, 8, 19)},
      {"zmm/tf_zmm.zmm", "EMTFZ", "300", 38, tensor_and_tipper, 34.727, -115.735, 13.1, no_date},
      {"zmm/tf_zss_tipper.zss", "EMTFZ", "YSW212abcdefghijkl", 44, tipper_alone, 44.631, -110.44, 11.18,
       no_date},
      {"zmm/PKD_272_00.zrr", "EMTFZ", "PKD_272_00", 25, tensor, 35.944, -120.543, 87.0, no_date},
      {"zmm/CAS04bcd_REV06.zrr", "EMTFZ", "CAS04bcd_REV06", 33, tensor_and_tipper, 37.633, -121.468, 13.17,
       no_date},
      {"jformat/BP02.j", "JFormat", "BP02", 11, tensor, std::nullopt, 0.0, 0.0, no_date},
      {"jformat/BP03.j", "JFormat", "BP03", 12, tensor, std::nullopt, 0.0, 0.0, no_date},
      {"jformat/kb0-s001.txt", "JFormat", "kb0001", 29, tensor_and_tipper, 41.9782, 140.8958, -30.0, no_date},
      {"jformat/S00.dat", "JFormat", "nia000", 17, {"ExHy"}, 26.0524, 113.48716, 0.0, no_date}};
  std::vector<std::string> files;
  for (const Sample& sample : samples) {
    files.push_back(field_data + sample.file);
  }
  ASSERT_EQ(import(files), 0);
  EXPECT_TRUE(interface.take_messages().empty());
  for (std::size_t index = 0; index < samples.size(); ++index) {
    const Sample& sample = samples[index];
    SCOPED_TRACE(sample.file);
    const FileReport& file = report.files.at(index);
    const double station = 100.0 * static_cast<double>(index + 1);
    EXPECT_EQ(file.failure, "");
    EXPECT_EQ(file.sections, 1);
    EXPECT_EQ(file.frequencies, sample.frequencies);
    EXPECT_EQ(data_types(station), sample.types);
    const StoredReading reading = reading_of(station, sample.types.back());
    EXPECT_EQ(reading.axes.HxAzimuth, static_cast<float>(sample.azimuth.value_or(no_data)));
    const dao::Recordset row = row_of_file(std::filesystem::path(sample.file).filename().string());
    ASSERT_FALSE(row.eof());
    EXPECT_EQ(row.get_text("Filter"), sample.filter);
    EXPECT_EQ(row.get_single("Orientation"), static_cast<float>(sample.azimuth.value_or(0.0)));
    EXPECT_EQ(row.get_date("DateCollected"), sample.date);
    const auto site = Module_database::find_site("200E", station);
    ASSERT_TRUE(site);
    EXPECT_EQ(site->name, sample.site);
    EXPECT_EQ(site->latitude.has_value(), sample.latitude.has_value());
    if (sample.latitude) {
      EXPECT_NEAR(*site->latitude, *sample.latitude, 1e-9);
      EXPECT_NEAR(*site->longitude, sample.longitude, 1e-9);
    }
  }
}

// Resistivities, phases and errors worked out by hand from the numbers that the files print.
TEST_F(SampleSiteFiles, Have_the_values_that_their_numbers_make) {
  struct Point {
    const char* file;
    const char* data_type;
    double frequency;
    double resistivity;
    double phase;
    double rho_error;  // 0: none
    double phase_error;
  };
  const Point points[] = {
      {"emtf_xml/NMX20.xml", "ExHy", 1 / 4.65455, 10.32757, 19.315823, 0.185533, 0.514655},
      {"emtf_xml/NMX20.xml", "EyHx", 1 / 4.65455, 6.246823, 180 - 162.511618, 0.102727, 0.471104},
      {"emtf_xml/tf_xml_emtf_xml_iris.xml", "ExHy", 1 / 7.31429, 172.6661, 21.970831, 0, 0},
      {"emtf_xml/tf_xml_with_derived_quantities.xml", "EyHx", 1 / 16.0, 1.839334, 180 - 145.060605, 0.199027,
       3.09988},
      {"zmm/tf_zmm.zmm", "ExHy", 1 / 1.16364, 107.0668, 36.373033, 10.2096, 2.73178},
      // Channels at 87, 177, 77.8 and 172.7 degrees: Z = V^-1 TF U with x along Hx.
      {"zmm/PKD_272_00.zrr", "ExHx", 1 / 0.11636, 0.983995, 29.782593, 0.00443053, 0.12899},
      {"zmm/PKD_272_00.zrr", "ExHy", 1 / 0.11636, 6.260757, 360 - 141.799376, 0.00947667, 0.0433632},
      {"zmm/PKD_272_00.zrr", "EyHx", 1 / 0.11636, 1.639524, 46.306955, 0.00467782, 0.081737},
      // Its impedances say S.I.; their errors are those of the limits beside the resistivities.
      {"jformat/BP02.j", "ExHx", 1 / 1.683333, 4801.269, -50.70264, 178.327, 1.06403},
      {"jformat/S00.dat", "ExHy", 1 / 1.22e-4, 277.0, -33.3, 0.5, 1.35},
  };
  for (const Point& point : points) {
    SCOPED_TRACE(std::string(point.file) + " " + point.data_type);
    choices.start_station = "100";
    ASSERT_EQ(import({field_data + point.file}), 0);
    const Curve curve = stored(100, point.data_type);
    expect_point(curve, index_of(curve, point.frequency), point.resistivity, point.phase, point.rho_error,
                 point.phase_error);
    ASSERT_EQ(Module_database::close_database(), 0);
    new_survey("next" + std::to_string(&point - points) + ".mdb");
  }
}

// Impedances in ohm beside the resistivities of the same points.
TEST_F(SampleSiteFiles, Ohm_comes_as_field_units) {
  ASSERT_EQ(import({field_data + "jformat/kb0-s001.txt"}), 0);
  const Curve curve = stored(100, "EyHy");
  const std::size_t at_8_Hz = index_of(curve, 8.0);
  EXPECT_NEAR(curve.value(1, at_8_Hz), 0.08515, 1e-7) << "as it stands in the block RYY";
  EXPECT_NEAR(curve.value(2, at_8_Hz), 95.2 - 180.0, 1e-4);
  EXPECT_NEAR(curve.value(9, at_8_Hz), 0.167829, 1e-6) << "turned with the phase";
  EXPECT_NEAR(curve.value(10, at_8_Hz), -1.83824, 1e-5);
  EXPECT_NEAR(curve.value(11, at_8_Hz), 0.00790108, 1e-8);
  EXPECT_NEAR(curve.error(2, at_8_Hz), 1.95095, 1e-4);
  int agreeing = 0;
  for (std::size_t index = 0; index < curve.count(); ++index) {
    const double computed = 0.2 * std::pow(std::hypot(curve.value(9, index), curve.value(10, index)), 2.0) /
                            curve.frequencies[index];
    agreeing += std::abs(computed / curve.value(1, index) - 1.0) < 0.01 ? 1 : 0;
  }
  EXPECT_EQ(agreeing, 29);
  const Curve tipper = stored(100, "HzHx");
  EXPECT_NEAR(tipper.value(1, index_of(tipper, 64.0)), -0.02143, 1e-7);
  EXPECT_NEAR(tipper.error(2, index_of(tipper, 64.0)), 0.009094 / std::sqrt(2.0), 1e-7);
}

TEST_F(SiteFiles, All_layouts_give_one_site_alike) {
  const std::vector<std::string> files{folder.write("a.xml", made_emtf_xml()),
                                       folder.write("b.zmm", made_z_file()), folder.write("c.j", made_j())};
  ASSERT_EQ(import(files), 0);
  for (const double station : {100.0, 200.0, 300.0}) {
    SCOPED_TRACE(station);
    const StoredReading reading = reading_of(station, "EyHx");
    EXPECT_EQ(reading.axes, (Module_database::ReadingAxes{Module_database::ey_turned, 12.5F}));
    const std::vector<float> ascending{1.0F, 10.0F};
    EXPECT_EQ(reading.curve.frequencies, ascending);
    for (const std::string type : {"ExHy", "EyHx"}) {
      const Curve curve = stored(station, type);
      for (std::size_t index = 0; index < 2; ++index) {
        EXPECT_NEAR(curve.value(1, index), 100.0, 1e-4);
        EXPECT_NEAR(curve.value(2, index), 45.0, 1e-4);
        EXPECT_EQ(curve.counts_at(1, index), 1);
        EXPECT_NEAR(curve.value(9, index), std::sqrt(250.0 * curve.frequencies[index]), 1e-4);
        EXPECT_EQ(curve.value(15, index), curve.value(10, index));
        if (station > 100.0) {
          EXPECT_NEAR(curve.error(1, index), 2.0, 1e-3);
          EXPECT_NEAR(curve.error(2, index), 0.01 * 180.0 / std::numbers::pi, 1e-3);
        }
      }
    }
    const StoredReading tipper = reading_of(station, "HzHy");
    EXPECT_EQ(tipper.axes.EyTurned, Module_database::ey_not_known);
    EXPECT_NEAR(tipper.curve.value(1, 1), 0.1, 1e-7);
    EXPECT_NEAR(tipper.curve.value(2, 1), 0.2, 1e-7);
    EXPECT_EQ(tipper.curve.counts_at(2, 1), 1);
  }
  EXPECT_EQ(Module_database::find_site("200E", 100)->datum, "WGS84");
  EXPECT_EQ(Module_database::find_site("200E", 300)->elevation, 250.5);
  EXPECT_EQ(report.files.at(0).sections_turned, 1);
  const int merged = rows_in("ReadingsDataTable WHERE ReductionType = 2");
  EXPECT_EQ(merged, 6 + 6 + 4) << "the J file has no diagonal elements";
}

// A rejected point has nothing beside its frequency, unless the impedance tells what it was.
TEST_F(SiteFiles, Points_that_the_file_switches_off_are_masked_and_kept) {
  const std::string rows =
      "SITE\nRXY\n 3\n 0.1 100 45 110 90 46 44 1 1\n 1 -100 45 110 90 46 44 1 1\n 10 50 -30 55 45 -29 -31 1 "
      "1\n";
  const std::string impedances = "ZXY FIELD\n 2\n 0.1 50 50 1 1\n 1 15.811388 15.811388 1 1\n";
  ASSERT_EQ(import({folder.write("a.j", rows), folder.write("b.j", rows + impedances)}), 0);
  for (const double station : {100.0, 200.0}) {
    SCOPED_TRACE(station);
    const Curve curve = stored(station, "ExHy");
    ASSERT_EQ(curve.count(), 3U);
    EXPECT_EQ(curve.value(1, 2), 100.0F) << "what the file has itself, also beside an impedance";
    EXPECT_EQ(curve.error(2, 2) > 0.0F, true);
    EXPECT_EQ(curve.counts_at(1, 1), 0);
    EXPECT_EQ(curve.counts_at(2, 1), 0);
    if (station == 100.0) {
      EXPECT_EQ(curve.value(1, 1), no_data);
    } else {
      EXPECT_NEAR(curve.value(1, 1), 100.0, 1e-4);
    }
    EXPECT_EQ(curve.counts_at(2, 0), 0) << "a phase below 0 is masked as in all files";
    EXPECT_EQ(curve.counts_at(1, 0), 1);
  }
}

TEST_F(SiteFiles, Two_points_at_one_frequency_both_stay) {
  const std::string twice = replaced(made_z_file(), "period :  1.000000", "period :  0.100000");
  ASSERT_EQ(import({folder.write("a.zmm", twice)}), 0);
  const Curve curve = stored(100, "ExHy");
  ASSERT_EQ(curve.count(), 2U);
  EXPECT_EQ(curve.frequencies[0], curve.frequencies[1]);
  EXPECT_NE(curve.value(1, 0), curve.value(1, 1));
}

TEST_F(SiteFiles, A_tipper_of_zeros_is_none_and_half_of_one_is_told) {
  const std::string zeros = replaced(made_emtf_xml(), "0.100000 0.200000", "0.0 0.0");
  const std::string half = replaced(made_j(), "TZY", "RTE");
  ASSERT_EQ(import({folder.write("a.xml", zeros), folder.write("b.j", half)}), 0);
  EXPECT_EQ(data_types(100), tensor);
  EXPECT_TRUE(told(0, "the tipper is 0 at all frequencies"));
  EXPECT_EQ(data_types(200), (Types{"ExHy", "EyHx", "HzHx"}));
  EXPECT_TRUE(told(1, "the tipper has the component HzHx only"));
  EXPECT_TRUE(told(1, "the block RTE, which is no tensor element"));
}

TEST_F(SiteFiles, Stations_follow_the_rules_of_named_sites) {
  struct Case {
    StationsBy rule;
    std::vector<std::string> names;  // of an XML, a Z and a J file
    std::vector<double> stations;
    const char* told;  // of the second file
  };
  const Case cases[] = {{StationsBy::count, {"A", "B", "C"}, {100, 200, 300}, ""},
                        {StationsBy::sectid,
                         {"7", "x8", "9.5"},
                         {7, 0, 9},
                         "station name 'x8' has no number, taken as station 0"},
                        {StationsBy::sectid_digits, {"MT07", "S12B", "E3N4"}, {7, 12, 4}, ""},
                        {StationsBy::sectid,
                         {"1", "", "3"},
                         {1, 100, 3},
                         "the file has no station name; it takes station 100"}};
  for (const Case& c : cases) {
    const std::string run = std::to_string(&c - cases);
    SCOPED_TRACE(run);
    choices.stations_by = c.rule;
    ASSERT_EQ(Module_database::close_database(), 0);
    new_survey("rule" + run + ".mdb");
    MadeSite site;
    std::vector<std::string> files;
    site.name = c.names[0];
    files.push_back(folder.write(run + "a.xml", made_emtf_xml(site)));
    site.name = c.names[1];
    files.push_back(folder.write(run + "b.zss", made_z_file(site)));
    site.name = c.names[2];
    files.push_back(folder.write(run + "c.dat", made_j(site)));
    ASSERT_EQ(import(files), 0);
    EXPECT_EQ(stations(), c.stations);
    EXPECT_TRUE(std::string(c.told).empty() || told(1, c.told));
  }
}

TEST_F(SiteFiles, The_Name_of_an_XML_counts_where_the_Id_is_what_became_of_it) {
  const std::pair<std::string, std::string> names[] = {
      {"100p5", "100.5"}, {"AONE", "A one"}, {"NV1", "Nevada, west"}, {"b2", " "}};
  std::vector<std::string> files;
  for (const auto& [id, name] : names) {
    MadeSite site;
    site.name = id;
    const std::string text = replaced(made_emtf_xml(site), "</Id>", "</Id>\n<Name>" + name + "</Name>");
    files.push_back(folder.write(id + ".xml", text));
  }
  ASSERT_EQ(import(files), 0);
  const std::string expected[] = {"100.5", "A one", "NV1", "b2"};
  for (std::size_t index = 0; index < files.size(); ++index) {
    EXPECT_EQ(Module_database::find_site("200E", 100.0 * static_cast<double>(index + 1)).value().name,
              expected[index]);
  }
}

TEST_F(SiteFiles, An_import_again_replaces_and_one_that_fails_leaves_what_was_there) {
  const std::string texts[] = {made_emtf_xml(), made_z_file(), made_j()};
  const std::string names[] = {"a.xml", "b.zmm", "c.j"};
  for (std::size_t index = 0; index < 3; ++index) {
    SCOPED_TRACE(names[index]);
    choices.start_station = std::to_string(100 * index);
    ASSERT_EQ(import({folder.write(names[index], texts[index])}), 0);
    const std::int32_t readings = report.files.at(0).readings;
    const std::int32_t all = raw_readings();
    ASSERT_EQ(import({folder.path(names[index])}), 0);
    EXPECT_EQ(report.files.at(0).replaced_readings, readings);
    EXPECT_EQ(raw_readings(), all);
    // J files have no mark of their end: one that is cut behind its first block is a smaller file.
    for (const double part : {0.0, 0.02, 0.2, 0.4}) {
      if (part > 0.2 && index == 2) {
        continue;
      }
      const auto length = static_cast<std::size_t>(part * static_cast<double>(texts[index].size()));
      (void)folder.write(names[index], texts[index].substr(0, length));
      ASSERT_EQ(import({folder.path(names[index])}), 0);
      EXPECT_NE(report.files.at(0).failure, "");
      EXPECT_EQ(raw_readings(), all) << part;
    }
    // Without its last line a Z file lacks a point of each reading, a J file one of its last reading.
    const Curve before = stored(100.0 * static_cast<double>(index), "HzHy");
    const std::string cut = texts[index].substr(0, texts[index].rfind('\n', texts[index].size() - 2) + 1);
    ASSERT_EQ(import({folder.write(names[index], cut)}), 0);
    const bool is_xml = index == 0;  // of which nothing can be read, its date neither
    EXPECT_NE(report.files.at(0).failure.find(is_xml ? "XML" : "the readings of its earlier import stay"),
              std::string::npos);
    EXPECT_EQ(raw_readings(), all);
    EXPECT_EQ(stored(100.0 * static_cast<double>(index), "HzHy").data, before.data);
    choices.start_station = std::to_string(1000 + 100 * index);
    ASSERT_EQ(import({folder.write("first_" + std::string(names[index]), cut)}), 0);
    EXPECT_EQ(report.files.at(0).readings, is_xml ? 0 : readings);
    EXPECT_EQ(report.files.at(0).failure.ends_with("; what stands before that is stored"), !is_xml);
    (void)interface.take_messages();
  }
}

TEST_F(SiteFiles, A_cut_anywhere_is_told_and_ends_nothing) {
  const std::string texts[] = {made_emtf_xml(), made_z_file(), made_j()};
  for (const std::string& text : texts) {
    std::int32_t readings = 0;
    for (std::size_t length = 0; length < text.size(); length += 7) {
      const std::string file = folder.write("cut", text.substr(0, length));
      ASSERT_EQ(import({file}, ImportMode::scan), 0);
      const FileReport& told = report.files.at(0);
      // Between two of its blocks a J file may end anywhere, and the last zeros of a number may be missing.
      const bool may_be_whole = &text == &texts[2] || length + 8 > text.size();
      EXPECT_TRUE(may_be_whole || !told.failure.empty()) << length;
      EXPECT_TRUE(told.readings > 0 || !told.failure.empty()) << length;
      EXPECT_TRUE(&text != &texts[0] || may_be_whole || told.readings == 0) << length;
      EXPECT_GE(told.readings, readings) << "fewer of a longer piece";
      readings = told.readings;
      const ScannedFile look = scan_field_file(file);
      EXPECT_EQ(look.failure.empty(), told.readings > 0) << length;
    }
  }
  (void)interface.take_messages();
}

TEST_F(SiteFiles, Are_put_on_the_map_where_they_say) {
  Module_projections::current_coord_system() = zone_definition("MGA 55", 55);
  ASSERT_EQ(Module_projections::store_survey_projection(), 0);
  choices.convert_coordinates = true;
  // Flinders Peak, a worked example of the GDA94 Technical Manual: -37 57 03.7203, 144 25 29.5244.
  MadeSite site;
  site.latitude = "-37.951033417";
  site.longitude = "144.424867889";
  MadeSite nowhere;
  nowhere.latitude = nowhere.longitude = "";
  ASSERT_EQ(import({folder.write("a.xml", made_emtf_xml(site)), folder.write("b.zmm", made_z_file(site)),
                    folder.write("c.j", made_j(site)), folder.write("d.xml", made_emtf_xml(nowhere))}),
            0);
  const std::vector<double> eastings = column_of("MapX", "StationsTable");
  const std::vector<double> northings = column_of("MapY", "StationsTable");
  ASSERT_EQ(eastings.size(), 4U);
  for (std::size_t index = 0; index < 3; ++index) {
    EXPECT_NEAR(eastings[index], 273741.297, 0.001);
    EXPECT_NEAR(northings[index], 5796489.777, 0.001);
  }
  EXPECT_EQ(eastings[3], 0.0);
  EXPECT_TRUE(told(3, "the file gives no latitude and longitude; the station has no place on the map"));
}
