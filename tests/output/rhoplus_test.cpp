#include "output/rhoplus.h"

#include <algorithm>
#include <filesystem>
#include <limits>

#include "core/absent_value.h"
#include "output/line_stations.h"
#include "output/output_choices.h"
#include "platform/settings_store/settings_store.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/survey_fixture.h"
#include "tests/tensor/made_station.h"

using namespace Module_output;
using Module_database::StoredReading;
namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;

class Rhoplus : public SurveyTest {
 protected:
  /// A merged curve with errors of 5 ohm-m and 3 degrees, and 10 ohm-m, 20 degrees, 6 and 4 as the statistics
  /// of everything present.
  static StoredReading merged(const std::vector<made::Point>& points) {
    StoredReading reading = made::reading(points);
    for (std::size_t i = 0; i < points.size(); ++i) {
      const float fields[] = {5.0F, 3.0F, 10.0F, 20.0F, 6.0F, 4.0F};
      for (int field = 3; field <= 8; ++field) {
        reading.curve.value(field, i) = fields[field - 3];
      }
    }
    return reading;
  }
  static void store(double station, const StoredReading& reading) {
    made::store(made::key(0.0F, station), 0, reading, 2, -1);
  }
  static Frequencies all_enabled(const StoredReading& reading) {
    return {reading.curve.frequencies, std::vector<std::int32_t>(reading.curve.count(), 1)};
  }
  /// The rows of a merged curve whose frequencies are all listed and enabled.
  [[nodiscard]] RhoplusTables tables(const StoredReading& reading) const {
    StoredReading stored = reading;
    stored.ID = 1;
    return rhoplus_tables(stored, all_enabled(reading), settings);
  }
  [[nodiscard]] std::string contents(const std::string& name) const {
    return file_contents(folder.path(name));
  }

  const Module_database::LineSelection selection{"200E", 0, "ExHy", 50.0F};
  RhoplusSettings settings;
};

}  // namespace

TEST_F(Rhoplus, Files_of_a_line_to_the_byte) {
  new_survey();
  StoredReading reading = merged({{0.5F, 100.0F, 45.0F}, {10.0F, 250.004F, 30.25F}, {24000.0F, 2e6F, 0.0F}});
  reading.curve.counts_at(1, 1) = 0;
  reading.ResOffset = 3.0F;
  store(100.4, reading);
  store(200.0, merged({{10.0F, 50.0F, 45.0F}}));
  StoredReading no_resistivity = merged({{10.0F, 50.0F, 45.0F}});
  no_resistivity.curve.counts_at(1, 0) = 0;
  store(300.0, no_resistivity);
  settings.resistivity_scale = 2.0F;

  std::vector<int> shown;
  RhoplusCounts counts;
  ASSERT_EQ(
      output_rhoplus(
          selection, folder.path("new/deep"), settings, [&](int count) { shown.push_back(count); }, counts),
      0);
  EXPECT_EQ(contents("new/deep/tmd_100.dat"),
            "data *\r\ntask *\r\nmodel\r\nsurface ins\r\nroot tmd_100\r\nexecute\r\n\r\n"
            "    0.5000      600.00     30.00     45.00      3.00 1 1\r\n"
            "   10.0000       60.00     36.00     30.25      3.00 0 1\r\n"
            "24000.0000 12000000.00 480000.00     20.00      4.00 1 0\r\n"
            "    0\r\n\r\n"
            "    0.5000 rho  phi\r\n"
            "   10.0000 rho  phi\r\n"
            "24000.0000 rho  phi\r\n"
            "    0\r\n");
  EXPECT_EQ(contents("new/deep/tmd_run.bat"), "rhopp < tmd_100.dat\r\nrhopp < tmd_200.dat\r\n");
  EXPECT_FALSE(fs::exists(folder.path("new/deep/tmd_300.dat"))) << "phases alone are not inverted";
  EXPECT_EQ(counts.stations, 2);
  EXPECT_EQ(shown, (std::vector<int>{3, 4, 4}));
}

TEST_F(Rhoplus, Curves_can_be_rotated_to_the_strike) {
  new_survey();
  Module_tensor::StationCurves curves = made::station(100.0, {10.0F}, [](double f) {
    return made::in_axes_of_north(25.0, made::impedance(100.0, 30.0, f), made::impedance(400.0, 60.0, f));
  });
  for (std::size_t element = 0; element < 4; ++element) {
    made::ReadingKey key = made::key(0.0F, 100.0);
    curves.merged[element].ResOffset = 2.0F;
    key.data_type = Module_tensor::curve_types[element];
    made::store(key, 0, curves.merged[element], 2, -1);
  }
  store(200.0, merged({{10.0F, 50.0F, 45.0F}}));
  settings.resistivity_error_floor = 0.1F;
  settings.phase_error_floor = 0.1F;
  RhoplusCounts counts;
  ASSERT_EQ(output_rhoplus(selection, folder.path("out"), settings, {}, counts, 25.0), 0);
  EXPECT_EQ(contents("out/tmd_run.bat"),
            "rem rotated to a strike of 25 degrees from north\r\nrhopp < tmd_100.dat\r\n");
  // The element along the strike. Repeats deviate by 2 % and 1 degree in each element.
  const std::string text = contents("out/tmd_100.dat");
  EXPECT_NE(text.find("   10.0000      200.00"), std::string::npos) << text;
  EXPECT_NE(text.find("     30.00"), std::string::npos) << text;
  EXPECT_EQ(
      rhoplus_summary(counts, settings, "out"),
      "1 control file with 1 row written to out, with tmd_run.bat, rotated to a strike of 25 degrees from "
      "north. Left out for want of a tensor: Station 200: there is no ExHx, EyHx, EyHy");

  settings.apply_static = 0;
  ASSERT_EQ(output_rhoplus(selection, folder.path("unshifted"), settings, {}, counts, 25.0), 0);
  EXPECT_NE(contents("unshifted/tmd_100.dat").find("   10.0000      100.00"), std::string::npos);

  const auto set_rows = [](const std::string& count) {
    Module_database::open_survey().database.execute("UPDATE ReadingsDataTable SET NumFrequencies = " + count +
                                                    " WHERE DataType = 'EyHy'");
  };
  set_rows("99");  // a damaged row
  EXPECT_EQ(output_rhoplus(selection, folder.path("damaged"), settings, {}, counts, 25.0), -1);
  EXPECT_EQ(interface.take_messages().size(), 1U);
  EXPECT_FALSE(fs::exists(folder.path("damaged/tmd_100.dat")));
  set_rows("1");

  Module_database::LineSelection other = selection;
  other.data_type = "QP";
  EXPECT_EQ(output_rhoplus(other, folder.path("none"), settings, {}, counts, 25.0), -1);
  EXPECT_EQ(output_rhoplus(selection, folder.path("none"), settings, {}, counts, 361.0), -1);
  EXPECT_FALSE(fs::exists(folder.path("none")));
  Module_database::open_survey().database.execute("DELETE FROM ReadingsDataTable WHERE DataType = 'ExHx'");
  EXPECT_EQ(output_rhoplus(selection, folder.path("out"), settings, {}, counts, 25.0), -1);
  EXPECT_EQ(interface.take_messages(),
            (Texts{"QP is no element of the tensor and can't be rotated to a strike",
                   "The strike to rotate to must be from -180 to 360 degrees",
                   "No station of line 200E can be rotated, and nothing was written. Left out for want of a "
                   "tensor: Station 100: there is no ExHx; Station 200: there is no ExHx, EyHx, EyHy"}));
  EXPECT_EQ(contents("out/tmd_100.dat"), text);
}

TEST_F(Rhoplus, Long_periods_keep_their_frequency) {
  const RhoplusTables rows = tables(merged({{0.0000305176F, 50.0F, 45.0F},
                                            {0.00012207F, 50.0F, 45.0F},
                                            {0.0009765625F, 50.0F, 45.0F},
                                            {0.0078F, 50.0F, 45.0F},
                                            {0.3333333F, 50.0F, 45.0F}}));
  const std::string rest = "       50.00      5.00     45.00      3.00 1 1\r\n";
  EXPECT_EQ(rows.data_lines, "0.00003052" + rest + "0.00012207" + rest + " 0.0009766" + rest + "    0.0078" +
                                 rest + "    0.3333" + rest);
  EXPECT_EQ(rows.frequency_lines.substr(0, 32), "0.00003052 rho  phi\r\n0.00012207 ");
}

TEST_F(Rhoplus, Errors_are_raised_to_the_floors) {
  struct Case {
    const char* name;
    float resistivity, error, phase_error;
    float written, written_error, written_phase_error;
  };
  const Case cases[] = {{"4 % of 50", 50.0F, 0.5F, 0.5F, 50.0F, 2.0F, 2.0F},
                        {"a small resistivity", 1.0F, 0.0F, 2.5F, 1.0F, 0.1F, 2.5F},
                        {"errors above the floors", 50.0F, 2.5F, 9.0F, 50.0F, 2.5F, 9.0F},
                        {"a negative resistivity", -5.0F, 0.5F, 2.0F, 0.001F, 0.5F, 2.0F}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    StoredReading reading = merged({{10.0F, c.resistivity, 45.0F}});
    reading.curve.value(3, 0) = c.error;
    reading.curve.value(4, 0) = c.phase_error;
    const RhoplusTables rows = tables(reading);
    ASSERT_EQ(rows.data.size(), 1U);
    EXPECT_FLOAT_EQ(rows.data[0].resistivity, c.written);
    EXPECT_FLOAT_EQ(rows.data[0].resistivity_error, c.written_error);
    EXPECT_FLOAT_EQ(rows.data[0].phase_error, c.written_phase_error);
    EXPECT_EQ(rows.data[0].model_resistivity, no_data);
  }
}

TEST_F(Rhoplus, Errors_of_files_count_where_they_are_larger_and_asked_for) {
  struct Case {
    const char* name;
    float file_resistivity, file_phase;  // of 100 ohm-m, which the static factor doubles, and 45 degrees
    float error, phase_error;            // worked out by hand, the floors being 4 % and 2 degrees
    float kept_resistivity, kept_phase;  // as errors of files
    std::int32_t use_file_errors = 1;
    std::int32_t apply_static = 1;
    std::int32_t counts = 1;
  };
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  constexpr float infinite = std::numeric_limits<float>::infinity();
  const Case cases[] = {{"larger than the floors: 2 x 10", 10.0F, 5.0F, 20.0F, 5.0F, 20.0F, 5.0F},
                        {"smaller than the floors", 3.0F, 1.5F, 8.0F, 2.0F, 6.0F, 1.5F},
                        {"smaller than the deviations", 3.0F, 1.5F, 12.0F, 3.0F, 6.0F, 1.5F},
                        {"one of the two", no_data, 5.0F, 8.0F, 5.0F, 0.0F, 5.0F},
                        {"none", no_data, no_data, 8.0F, 2.0F, 0.0F, 0.0F},
                        {"no numbers", nan, infinite, 8.0F, 2.0F, 0.0F, 0.0F},
                        {"not asked for", 10.0F, 5.0F, 8.0F, 2.0F, 0.0F, 0.0F, 0},
                        {"without the static factor", 10.0F, 5.0F, 10.0F, 5.0F, 10.0F, 5.0F, 1, 0},
                        {"masked: 2 x 6, and 4", 100.0F, 50.0F, 12.0F, 4.0F, 0.0F, 0.0F, 1, 1, 0}};
  settings.exclude_data = 0;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    settings.use_file_errors = c.use_file_errors;
    settings.apply_static = c.apply_static;
    StoredReading reading = merged({{10.0F, 100.0F, 45.0F}, {20.0F, 100.0F, 45.0F}});
    const bool deviations = c.error == 12.0F;
    reading.curve.value(3, 0) = deviations ? 6.0F : 0.0F;
    reading.curve.value(4, 0) = deviations ? 3.0F : 0.0F;
    reading.ResOffset = 2.0F;
    reading.curve.error_at(1, 0) = c.file_resistivity;
    reading.curve.error_at(2, 0) = c.file_phase;
    reading.curve.counts_at(1, 0) = reading.curve.counts_at(2, 0) = c.counts;
    const RhoplusTables rows = tables(reading);
    ASSERT_EQ(rows.data.size(), 2U);
    ASSERT_EQ(rows.file_errors.size(), 2U);
    EXPECT_FLOAT_EQ(rows.data[0].resistivity_error, c.error);
    EXPECT_FLOAT_EQ(rows.data[0].phase_error, c.phase_error);
    EXPECT_FLOAT_EQ(rows.file_errors[0].resistivity, c.kept_resistivity);
    EXPECT_FLOAT_EQ(rows.file_errors[0].phase, c.kept_phase);
    EXPECT_EQ(rows.file_errors[1].resistivity, 0.0F) << "the point beside it";
  }
}

TEST_F(Rhoplus, An_error_longer_than_its_field_stays_large) {
  settings.use_file_errors = 1;
  StoredReading reading = merged({{10.0F, 100.0F, 45.0F}});
  reading.curve.error_at(1, 0) = 123456789012.0F;
  const RhoplusTables rows = tables(reading);
  EXPECT_EQ(rows.data_lines, "   10.0000      100.00 999999.00     45.00      3.00 1 1\r\n");
  EXPECT_FLOAT_EQ(rows.data[0].resistivity_error, 123456789012.0F);
}

TEST_F(Rhoplus, Rows_without_data_and_switched_off_frequencies) {
  StoredReading reading =
      merged({{1.0F, 100.0F, 45.0F}, {2.0F, 100.0F, -5.0F}, {4.0F, no_data, no_data}, {8.0F, 9.0F, 9.0F}});
  reading.curve.counts_at(1, 1) = 0;
  RhoplusTables rows = tables(reading);
  EXPECT_EQ(rows.index.row_number, (std::vector<std::int32_t>{1, 0, 0, 2}));
  EXPECT_EQ(rows.index.frequency_position, (std::vector<std::int32_t>{0, 3}));
  EXPECT_EQ(std::ranges::count(rows.frequency_lines, '\n'), 4) << "the model is asked for everywhere";

  settings.exclude_data = 0;
  rows = tables(reading);
  ASSERT_EQ(rows.data.size(), 4U);
  EXPECT_EQ(rows.data_lines.substr(rows.data_lines.find("2.0000")),
            "2.0000       10.00      6.00     20.00      4.00 0 0\r\n"
            "    4.0000       10.00      6.00     20.00      4.00 0 0\r\n"
            "    8.0000        9.00      5.00      9.00      3.00 1 1\r\n");
  reading.curve.value(2, 1) = 0.5F;
  EXPECT_EQ(tables(reading).data[1].use_phase, 1.0F);
  reading.curve.value(2, 1) = 0.0F;
  EXPECT_EQ(tables(reading).data[1].use_phase, 0.0F);
  settings.exclude_negative_phase = 0;
  EXPECT_EQ(tables(reading).data[1].use_phase, 1.0F);

  Frequencies frequencies = all_enabled(reading);
  frequencies.enabled[0] = 0;
  reading.ID = 1;
  rows = rhoplus_tables(reading, frequencies, settings);
  EXPECT_EQ(rows.index.row_number, (std::vector<std::int32_t>{0, 1, 2, 3}));
  EXPECT_EQ(rows.index.frequency_position, (std::vector<std::int32_t>{1, 2, 3}));
  EXPECT_EQ(std::ranges::count(rows.frequency_lines, '\n'), 3);
}

TEST_F(Rhoplus, A_reading_that_is_switched_off_gives_nothing) {
  const StoredReading whole = merged({{10.0F, 50.0F, 45.0F}});
  StoredReading off = whole;
  off.UseReading = false;
  EXPECT_TRUE(tables(off).data.empty());
  off = whole;
  off.UseResistivity = off.UsePhase = false;
  EXPECT_TRUE(tables(off).data.empty());
  off.UsePhase = true;
  EXPECT_EQ(tables(off).data.size(), 1U) << "the masks decide which points count";
}

TEST_F(Rhoplus, What_goes_wrong_is_told_and_leaves_earlier_files) {
  new_survey();
  RhoplusCounts counts;
  EXPECT_EQ(output_rhoplus(selection, folder.path("out"), settings, {}, counts), -1);
  EXPECT_EQ(interface.take_messages(), Texts{"There is no data for the specified line and data type"});
  EXPECT_FALSE(fs::exists(folder.path("out")));

  for (const double station : {100.0, 200.0, 300.0}) {
    store(station, merged({{10.0F, 50.0F, 45.0F}}));
  }
  fs::create_directories(folder.path("out/tmd_200.dat/in_the_way"));
  EXPECT_EQ(output_rhoplus(selection, folder.path("out"), settings, {}, counts), -1);
  const Texts messages = interface.take_messages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].rfind("An error occured while writing the rhoplus station data file ", 0), 0U);
  EXPECT_EQ(contents("out/tmd_run.bat"), "rhopp < tmd_100.dat\r\n");

  settings.root_name = "no folder/tmd";  // keeps the batch file from being written, too
  EXPECT_EQ(output_rhoplus(selection, folder.path("out"), settings, {}, counts), -1);
  EXPECT_EQ(interface.take_messages().size(), 1U);
  settings = {};

  dao::Recordset& lists = Module_database::open_survey().frequency_lists;
  lists.find_first("ReferenceType = 0");
  const std::int32_t frequency_count = lists.get_long("NumFrequencies");
  const auto set_frequency_count = [&](std::int32_t count) {
    lists.edit();
    lists.set_long("NumFrequencies", count);
    lists.update();
  };
  set_frequency_count(frequency_count + 1);  // a damaged list
  EXPECT_EQ(output_rhoplus(selection, folder.path("none"), settings, {}, counts), -1);
  EXPECT_EQ(interface.take_messages().size(), 1U);
  EXPECT_FALSE(fs::exists(folder.path("none")));
  set_frequency_count(frequency_count);

  int asked = 0;
  interface->stop = [&asked] { return ++asked > 1; };
  EXPECT_EQ(output_rhoplus(selection, folder.path("stopped"), settings, {}, counts), 0);
  EXPECT_EQ(contents("stopped/tmd_run.bat"), "rhopp < tmd_100.dat\r\n");
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST_F(Rhoplus, The_panel_asks_for_what_is_missing_in_its_order) {
  new_survey();
  store(100.0, merged({{10.0F, 50.0F, 45.0F}}));
  session().current_data_type = "ExHy";
  const OutputLists lists{{"200E"}, {50.0F}};
  const auto refused = [&](const OutputChoices& choices) {
    EXPECT_EQ(write_chosen_rhoplus(lists, choices, settings, "", {}), -1);
    return interface.take_messages();
  };
  const OutputChoices all{0, 0, 0, folder.path("out")};
  settings = {" ", -1, 0.0F, 0.0F, 0.0F, 1, 1, 1};
  EXPECT_EQ(refused({0, 0, -1, ""}), Texts{"Please select which dipole to output"});
  EXPECT_EQ(refused(all), Texts{"You must specify an output root file name"});
  settings.root_name = "run";
  EXPECT_EQ(refused(all), Texts{"Please select a surface boundary condition"});
  settings.surface = 0;
  EXPECT_EQ(refused(all), Texts{"The resistivity error floor is not valid"});
  settings.resistivity_error_floor = 0.5F;
  EXPECT_EQ(refused(all), Texts{"The phase error flor is not valid"});
  settings.phase_error_floor = 0.5F;
  EXPECT_EQ(refused(all), Texts{"The resistivity scale is not valid"});
  EXPECT_FALSE(fs::exists(folder.path("out")));
  settings.resistivity_scale = 0.5F;
  EXPECT_EQ(write_chosen_rhoplus(lists, all, settings, " line 200E ", {}), 0);
  EXPECT_EQ(interface.take_messages(), Texts{"Data output completed. 1 control file with 1 row written to " +
                                             folder.path("out/line 200E") + ", with run_run.bat"});
  EXPECT_NE(contents("out/line 200E/run_100.dat").find("surface con\r\n"), std::string::npos);
}

TEST_F(Rhoplus, Settings_are_kept_but_for_the_scale) {
  const auto earlier = install_settings_store(std::make_unique<MemorySettingsStore>());
  settings = load_rhoplus_settings();
  enter_root_name(settings, " survey 7 ");
  enter_root_name(settings, "  ");
  enter_positive(settings.resistivity_error_floor, " 6.26 ");
  for (const char* invalid : {"", "0", "-1", "5x", "1e60", "1e-60", "nan"}) {
    enter_positive(settings.phase_error_floor, invalid);
  }
  enter_positive(settings.resistivity_scale, "2.5");
  settings.surface = 0;
  settings.apply_static = 0;
  settings.use_file_errors = 1;
  save_rhoplus_settings(settings);
  EXPECT_EQ(settings.phase_error_floor, 2.0F);
  settings = load_rhoplus_settings();
  EXPECT_EQ(settings.root_name, "survey 7");
  EXPECT_EQ(settings.surface, 0);
  EXPECT_EQ(settings.resistivity_error_floor, 6.3F);
  EXPECT_EQ(settings.resistivity_scale, 1.0F);
  EXPECT_EQ(settings.exclude_data, 1);
  EXPECT_EQ(settings.apply_static, 0);
  EXPECT_EQ(settings.use_file_errors, 1);

  const auto set = [](const char* key, const char* value) {
    settings_store().set_value("Marrowgate", "Brenlox", key, value);
  };
  set("RhoPlusSurface", "2");
  set("RhoPlusApplyStatic", "yes");
  set("RhoPlusUseFileErrors", "-1");
  set("RhoPlusResFloor", "0");
  set("RhoPlusResScale", "1.5");
  settings = load_rhoplus_settings();
  EXPECT_EQ(settings.surface, 1);
  EXPECT_EQ(settings.apply_static, 1);
  EXPECT_EQ(settings.use_file_errors, 0);
  EXPECT_EQ(settings.resistivity_error_floor, 4.0F);
  EXPECT_EQ(settings.resistivity_scale, 1.5F);
}

TEST_F(Rhoplus, A_station_with_nothing_but_a_tipper_is_none_of_the_line) {
  new_survey();
  store(100.0, merged({{10.0F, 50.0F, 45.0F}}));
  for (const std::string data_type : {"HzHx", "HzHy"}) {
    made::ReadingKey key = made::key(0.0F, 200.0);
    key.data_type = data_type;
    made::store(key, 0, merged({{10.0F, 0.1F, -0.2F}}), 2, -1);
  }
  EXPECT_EQ(stations_with_readings(selection, DataTypes::all), std::vector<double>{100.0});
}
