// From field files to reduced curves and output files, through the batch program.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <tuple>

#include <gtest/gtest.h>

#include "core/session_state.h"
#include "database/reading_facts.h"
#include "database/sites.h"
#include "database/survey_database.h"
#include "numerics/impedance/apparent_resistivity.h"
#include "samples/sample_survey.h"
#include "tests/batch/batch_program.h"
#include "tests/formats/edi/made_edi.h"

namespace {

using Json = nlohmann::json;

std::vector<std::string> curve_arguments(const std::string& data_type, int reduction) {
  return {
      "curve", "survey.mdb", "--line", "200E",        "--station", "200",         "--reference",
      "0",     "--dipole",   "100",    "--data-type", data_type,   "--reduction", std::to_string(reduction),
      "--json"};
}

std::vector<std::string> with(std::vector<std::string> arguments, const std::vector<std::string>& more) {
  arguments.insert(arguments.end(), more.begin(), more.end());
  return arguments;
}

/// The stations of a ".stn" file, in its order.
std::vector<double> stations_of_set(const std::string& stn_file) {
  std::istringstream text(file_contents(stn_file));
  std::string line;
  std::getline(text, line);  // its name
  std::vector<double> stations;
  while (std::getline(text, line)) {
    stations.push_back(std::stod(line));
  }
  return stations;
}

std::set<std::string> keys(const Json& object) {
  std::set<std::string> names;
  for (const auto& [name, value] : object.items()) {
    names.insert(name);
  }
  return names;
}

/// For each frequency the values of a field (from 0) that count.
std::map<double, std::vector<double>> used_values(const std::vector<Json>& curves, std::size_t field) {
  std::map<double, std::vector<double>> values;
  for (const Json& curve : curves) {
    for (std::size_t k = 0; k < curve["frequencies"].size(); ++k) {
      if (curve["mask"][k][field] == 1) {
        values[curve["frequencies"][k]].push_back(curve["data"][k][field]);
      }
    }
  }
  return values;
}

double mean(const std::vector<double>& values) {
  double sum = 0.0;
  for (const double value : values) {
    sum += value;
  }
  return sum / static_cast<double>(values.size());
}

/// Gives all points of a stored reading the same errors, ohm-m and degrees.
void give_errors(const std::string& survey, std::int32_t ReadingID, float of_resistivity, float of_phase) {
  session().database_file = survey;
  ASSERT_EQ(Module_database::open_database(), 0);
  dao::Recordset& rows = Module_database::open_survey().readings;
  rows.find_first("ID = " + std::to_string(ReadingID));
  Module_database::StoredReading reading = Module_database::read_reading(rows);
  for (std::size_t k = 0; k < reading.curve.count(); ++k) {
    reading.curve.error_at(1, k) = of_resistivity;
    reading.curve.error_at(2, k) = of_phase;
  }
  Module_database::write_facts(ReadingID, reading.curve, {});
  ASSERT_EQ(Module_database::close_database(), 0);
}

/// Each used value of `reduced` is the mean of what its inputs hold at its frequency.
void expect_means(const Json& reduced, const std::vector<Json>& inputs) {
  for (const std::size_t field : {0U, 1U}) {
    const auto values = used_values(inputs, field);
    for (std::size_t k = 0; k < reduced["frequencies"].size(); ++k) {
      const auto found = values.find(reduced["frequencies"][k]);
      ASSERT_EQ(found != values.end(), reduced["mask"][k][field] == 1);
      if (found != values.end()) {
        const double expected = mean(found->second);
        EXPECT_NEAR(reduced["data"][k][field].get<double>(), expected, 1e-5 * std::abs(expected));
      }
    }
  }
}

TEST_F(Batch_program, Import_fills_the_survey_that_info_shows) {
  write_field_files(3);
  import_field_files();
  const Json info = run_for_json({"info", "survey.mdb", "--json"});
  const int raw = 3 * 2 * 3 * 4;  // stations, scan rates, repeats, elements
  EXPECT_EQ(info["tables"]["FileTable"], 18);
  EXPECT_EQ(info["tables"]["StationsTable"], 3);
  EXPECT_EQ(info["tables"]["ReadingsDataTable"], raw + raw / 3 + raw / 6);
  EXPECT_EQ(info["tables"]["SitesTable"], 3);
  EXPECT_EQ(info["tables"]["ReadingFactsTable"], raw + raw / 3 + raw / 6);
  EXPECT_EQ(info["tables"].size(), 10U);
  EXPECT_EQ(info["lines"], Json::parse(R"([{"line": "200E", "stations": [100, 200, 300]}])"));
  EXPECT_EQ(info["reference_types"], Json::parse("[0]"));
  EXPECT_EQ(info["data_types"], Json::parse(R"(["ExHx", "ExHy", "EyHx", "EyHy"])"));
  EXPECT_EQ(info["dipoles"], Json::parse("[100]"));
  EXPECT_EQ(info["scan_rates"], Json::parse("[256, 4096]"));

  // The same files again replace their readings.
  ASSERT_EQ(run(import_arguments("field")).status, 0);
  EXPECT_EQ(run_for_json({"info", "survey.mdb", "--json"}), info);

  const Outcome table = run({"info", "survey.mdb"});
  EXPECT_EQ(table.status, 0);
  EXPECT_NE(table.output.find("100 (100A) 200 (200A) 300 (300A)"), std::string::npos) << table.output;
}

TEST_F(Batch_program, Info_has_the_sites_of_the_stations) {
  write_field_files(3);
  import_field_files();
  session().database_file = folder_.path("survey.mdb");
  ASSERT_EQ(Module_database::open_database(), 0);
  Module_database::open_survey().database.execute("DELETE FROM SitesTable");
  Module_database::Site site;
  site.line = "200E";
  site.station = 100.0;
  site.name = "ET001";
  site.latitude = -20.5;
  site.longitude = 140.25;
  (void)Module_database::keep_site(site);
  Module_database::Site nameless;
  nameless.line = "200E";
  nameless.station = 300.0;
  nameless.elevation = 431.0;
  (void)Module_database::keep_site(nameless);
  ASSERT_EQ(Module_database::close_database(), 0);
  EXPECT_EQ(run_for_json({"info", "survey.mdb", "--json"})["sites"], Json::parse(R"([
    {"line": "200E", "station": 100.0, "name": "ET001", "latitude": -20.5, "longitude": 140.25, "elevation": null},
    {"line": "200E", "station": 300.0, "name": null, "latitude": null, "longitude": null, "elevation": 431.0}])"));
  const Outcome table = run({"info", "survey.mdb"});
  EXPECT_NE(table.output.find("100 (ET001) 200 300\n"), std::string::npos) << table.output;
}

TEST_F(Batch_program, Import_groups_what_it_tells_of_the_files) {
  const std::string blocks =
      ">RHOYX //3\n1 2 3\n>PHSYX //3\n-120 -130 -140\n>COH //3\n1 2 3\n>TANG //3\n1 2 3\n";
  for (const char* const name : {"a", "b", "c"}) {
    std::ignore = folder_.write(std::string("edi/") + name + ".edi",
                                made_edi({{.sectid = std::string(1, name[0]) + "1", .blocks = blocks}}));
    std::ignore = folder_.write(std::string("edi/x") + name + ".edi", "no field file\n");
  }
  ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
  const std::vector<std::string> arguments = {"import", "survey.mdb", "edi",        "--reference", "0",
                                              "--line", "200E",       "--event",    "0",           "--rate",
                                              "256",    "--report",   "report.json"};
  const Outcome imported = run(arguments);
  EXPECT_EQ(imported.status, 1);
  EXPECT_NE(imported.errors.find("3 files not imported: the file is of no known kind"), std::string::npos)
      << imported.errors;
  EXPECT_NE(imported.errors.find("/edi/xc.edi\n"), std::string::npos) << imported.errors;
  EXPECT_NE(imported.errors.find("3 files: all YX phases are negative, and masked; --turn-ey turns those of"),
            std::string::npos)
      << imported.errors;
  EXPECT_NE(imported.output.find("3 files: block \u2026 is not used (>COH, >TANG): 6 remarks\n"),
            std::string::npos)
      << imported.output;
  const Json report = Json::parse(file_contents(folder_.path("report.json")));
  EXPECT_EQ(report["files"][0]["ignored"].size(), 2U);

  const Outcome turned = run(with(arguments, {"--turn-ey"}));
  EXPECT_EQ(turned.errors.find("all YX phases"), std::string::npos) << turned.errors;
}

TEST_F(Batch_program, A_line_is_spelled_as_in_the_survey_whatever_is_typed) {
  write_field_files(2);
  import_field_files();
  std::vector<std::string> arguments = curve_arguments("ExHy", 2);
  const Json curve = run_for_json(arguments);
  *std::ranges::find(arguments, "200E") = "200e";
  EXPECT_EQ(run_for_json(arguments), curve);
  EXPECT_EQ(run({"import", "survey.mdb", "field", "--reference", "1", "--line", "200e", "--event", "1",
                 "--rate", "64", "--start-station", "900"})
                .status,
            0);
  const Json info = run_for_json({"info", "survey.mdb", "--json"});
  ASSERT_EQ(info["lines"].size(), 1U) << info;
  EXPECT_EQ(info["lines"][0]["line"], "200E");
  EXPECT_GT(info["lines"][0]["stations"].size(), 1U);
  EXPECT_EQ(run({"zonge", "survey.mdb", "--line", "200e", "--reference", "1", "--data-type", "ExHy",
                 "--dipole", "100", "--output", "typed.avg"})
                .status,
            0);
  std::string written;
  for (const char* const extension : {"avg", "mde", "stn"}) {
    written += file_contents(folder_.path(std::string("typed.") + extension));
  }
  EXPECT_NE(written.find("200E"), std::string::npos);
  EXPECT_EQ(written.find("200e"), std::string::npos);
}

TEST_F(Batch_program, The_debug_log_tells_what_was_done) {
  const std::string data = folder_.path("data");
  setenv("XDG_DATA_HOME", data.c_str(), 1);
  setenv("BRENLOX_DEBUG_LEVEL", "1", 1);
  write_field_files(1);
  import_field_files();
  unsetenv("BRENLOX_DEBUG_LEVEL");
  const std::string log = file_contents(data + "/Vexapp/Brenlox_debug.log");
  for (const char* const step : {"open_database ", "compact_database", "upgrade_survey", "run_import 6 files",
                                 "import_file ", "reduce_touched", "close_database"}) {
    EXPECT_NE(log.find(step), std::string::npos) << step << " is not in\n" << log;
  }
  std::filesystem::remove(data + "/Vexapp/Brenlox_debug.log");
  EXPECT_EQ(run({"info", "survey.mdb"}).status, 0);
  unsetenv("XDG_DATA_HOME");
  EXPECT_FALSE(std::filesystem::exists(data + "/Vexapp/Brenlox_debug.log"));
}

TEST_F(Batch_program, Averages_and_merged_curves_are_means_of_what_went_in) {
  write_field_files(2);
  import_field_files();
  std::vector<Json> averages;
  for (const char* rate : {"256", "4096"}) {
    SCOPED_TRACE(rate);
    const std::vector<Json> repeats =
        run_for_json(with(curve_arguments("EyHx", 0), {"--rate", rate})).get<std::vector<Json>>();
    ASSERT_EQ(repeats.size(), 3U);
    EXPECT_EQ(keys(repeats[0]), (std::set<std::string>{"id", "file_id", "event", "frequencies", "data",
                                                       "mask", "resistivity_error", "phase_error", "use",
                                                       "res_offset", "phase_offset"}));
    averages.push_back(run_for_json(with(curve_arguments("EyHx", 1), {"--rate", rate})));
    expect_means(averages.back(), repeats);
  }
  const Json merged = run_for_json(curve_arguments("EyHx", 2));
  expect_means(merged, averages);
  EXPECT_EQ(keys(merged),
            (std::set<std::string>{"id", "file_id", "frequencies", "data", "mask", "resistivity_error",
                                   "phase_error", "use", "res_offset", "phase_offset"}));
  EXPECT_EQ(merged["file_id"], -1);
  EXPECT_EQ(merged["use"], Json::parse("[true, true, true]"));
  EXPECT_EQ(merged["res_offset"], 1);
  EXPECT_EQ(merged["phase_offset"], 0);
  EXPECT_EQ(merged["frequencies"].size(), 17U + 21U - 9U);
  EXPECT_EQ(merged["data"][0].size(), 20U);
  EXPECT_TRUE(std::is_sorted(merged["frequencies"].begin(), merged["frequencies"].end()));
  EXPECT_EQ(run_for_json(curve_arguments("EyHx", 0)).size(), 6U) << "without --rate the repeats of all";
}

TEST_F(Batch_program, Curve_tells_errors_of_files_and_deviations_of_repeats_apart) {
  write_field_files(2);
  import_field_files();
  const std::vector<std::string> rate{"--rate", "256"};
  const Json repeats = run_for_json(with(curve_arguments("EyHx", 0), rate));
  ASSERT_EQ(repeats.size(), 3U);
  // 1, 2 and 2 ohm-m at all points; the last one tells nothing of its phase.
  give_errors(folder_.path("survey.mdb"), repeats[0]["id"], 1.0F, 0.1F);
  give_errors(folder_.path("survey.mdb"), repeats[1]["id"], 2.0F, 0.2F);
  give_errors(folder_.path("survey.mdb"), repeats[2]["id"], 2.0F, no_data);
  ASSERT_EQ(run({"recalculate", "survey.mdb"}).status, 0);
  const Json with_errors = run_for_json(with(curve_arguments("EyHx", 0), rate));
  const std::size_t count = repeats[0]["frequencies"].size();
  EXPECT_EQ(with_errors[1]["phase_error"], Json(std::vector<double>(count, 0.2)));
  EXPECT_EQ(with_errors[2]["phase_error"], Json(std::vector<Json>(count)));
  const Json average = run_for_json(with(curve_arguments("EyHx", 1), rate));
  std::size_t of_all = 0;
  for (std::size_t k = 0; k < count; ++k) {
    int used = 0;
    for (const Json& repeat : repeats) {
      used += repeat["mask"][k][0].get<int>();
    }
    if (used == 3) {
      EXPECT_EQ(average["resistivity_error"][k], 1.0);  // sqrt(1 + 4 + 4) / 3
      EXPECT_TRUE(average["phase_error"][k].is_null());
      ++of_all;
    }
  }
  EXPECT_GT(of_all, 10U);

  std::vector<std::string> arguments = with(curve_arguments("EyHx", 1), rate);
  std::erase(arguments, "--json");
  EXPECT_NE(
      run(arguments).output.find(
          "    Frequency  Resistivity        Error    Deviation        Phase        Error    Deviation"
          "  Mask\n"
          "           Hz        ohm-m        ohm-m        ohm-m      degrees      degrees      degrees\n"),
      std::string::npos);
  arguments = with(curve_arguments("EyHx", 0), rate);
  std::erase(arguments, "--json");
  EXPECT_EQ(run(arguments).output.find("Deviation"), std::string::npos);
}

// The reduced curve is that of the ground: half of its points within a few per cent of the forward response.
TEST_F(Batch_program, The_merged_curve_is_that_of_the_ground) {
  using namespace Module_samples;
  using namespace numerics::impedance;
  write_field_files(2);
  import_field_files();
  const Json merged = run_for_json(curve_arguments("ExHy", 2));
  const std::vector<Layer> ground = ground_below(sample_lines[0], 200.0);
  std::vector<double> misfits;
  for (std::size_t k = 0; k < merged["frequencies"].size(); ++k) {
    const double frequency = merged["frequencies"][k];
    const double truth = apparent_resistivity(surface_impedance(ground, frequency), frequency);
    misfits.push_back(std::abs(std::log(merged["data"][k][0].get<double>() / truth)));
  }
  std::ranges::sort(misfits);
  EXPECT_LT(misfits[misfits.size() / 2], 0.05);
}

TEST_F(Batch_program, Recalculating_an_untouched_survey_changes_no_curve) {
  write_field_files(2);
  import_field_files();
  const Json before = run_for_json(curve_arguments("ExHy", 2));
  EXPECT_EQ(run({"recalculate", "survey.mdb"}).status, 0);
  EXPECT_EQ(run_for_json(curve_arguments("ExHy", 2)), before);
}

// A folder that is given with one below it counts once; two sites on one station are told, and the work goes
// on.
TEST_F(Batch_program, Import_tells_namesakes_and_sites_apart) {
  ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
  for (const char* const site : {"north", "south", "east"}) {
    std::filesystem::create_directories(folder_.path(std::string("edi/") + site));
    const std::string name = site == std::string("east") ? "/02.edi" : "/01.edi";
    std::ignore = folder_.write(std::string("edi/") + site + name,
                                made_edi({{.sectid = site == std::string("south") ? "2" : "Z1"}}));
  }
  const std::vector<std::string> arguments{"import",
                                           "survey.mdb",
                                           "edi",
                                           "edi/north",
                                           "--reference",
                                           "0",
                                           "--line",
                                           "200E",
                                           "--event",
                                           "0",
                                           "--rate",
                                           "1",
                                           "--sectid-as-station",
                                           "--sectid-digits"};
  const Outcome apart = run(arguments);
  EXPECT_EQ(apart.status, 0) << apart.errors;
  EXPECT_NE(apart.output.find("3 files, 12 readings stored, 0 files without"), std::string::npos)
      << apart.output;
  EXPECT_EQ(apart.errors.find("Different sites"), std::string::npos) << apart.errors;
  EXPECT_EQ(run_for_json({"info", "survey.mdb", "--json"})["lines"][0]["stations"].size(), 2U);

  std::ignore = folder_.write("edi/east/02.edi", made_edi({{.sectid = "Q1"}}));
  const Outcome shared = run(with(arguments, {"--report", "report.json"}));
  EXPECT_EQ(shared.status, 0) << shared.errors;
  const std::string told = "Station 1 of line 200E: Q1 (02.edi), Z1 (north/01.edi)";
  EXPECT_NE(shared.errors.find(told), std::string::npos) << shared.errors;
  EXPECT_NE(shared.output.find("3 files replaced readings of an earlier import\n"), std::string::npos);
  const Json report = Json::parse(file_contents(folder_.path("report.json")));
  EXPECT_EQ(report["shared_stations"], Json::array({told}));
  EXPECT_EQ(report["files"][1]["replaced_readings"], 4);
}

TEST_F(Batch_program, Zonge_writes_three_files_where_the_caller_stands) {
  write_field_files(2);
  std::filesystem::create_directory(folder_.path("surveys"));
  import_field_files();
  std::filesystem::rename(folder_.path("survey.mdb"), folder_.path("surveys/survey.mdb"));
  const std::vector<std::string> arguments{
      "zonge", "surveys/survey.mdb", "--line", "200E",     "--reference", "0", "--data-type",
      "ExHy",  "--dipole",           "100",    "--output", "200E_0.avg"};
  const Outcome written = run(arguments);
  ASSERT_EQ(written.status, 0) << written.errors;
  const std::string avg = file_contents(folder_.path("200E_0.avg"));
  EXPECT_NE(avg.find("BRENLOX  V1.00 February, 2012"), std::string::npos) << avg.substr(0, 200);
  EXPECT_NE(avg.find("\r\n 2       100"), std::string::npos);
  EXPECT_NE(avg.find("\r\n 2       200"), std::string::npos);
  EXPECT_EQ(stations_of_set(folder_.path("200E_0.stn")), (std::vector<double>{100, 200}))
      << "no start station was given";
  EXPECT_TRUE(file_contents(folder_.path("200E_0.mde")).starts_with("$ STNLO= 100.0\r\n$ STNHI= 200.0\r\n"));

  std::ignore = folder_.write("200E_0.avg", "mine");
  const Outcome refused = run(arguments);
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.errors.find("The specified file already exists, overwrite?"), std::string::npos);
  EXPECT_EQ(file_contents(folder_.path("200E_0.avg")), "mine");
  EXPECT_EQ(run(with(arguments, {"--overwrite"})).status, 0);
  EXPECT_EQ(file_contents(folder_.path("200E_0.avg")), avg);
}

TEST_F(Batch_program, Rhoplus_writes_a_control_file_a_station) {
  write_field_files(2);
  import_field_files();
  const std::vector<std::string> arguments{
      "rhoplus",  "survey.mdb", "--line",      "200E", "--reference", "0",    "--data-type", "ExHy",
      "--dipole", "100",        "--directory", "rho",  "--root",      "demo", "--surface",   "0"};
  const Outcome written = run(arguments);
  ASSERT_EQ(written.status, 0) << written.errors;
  EXPECT_EQ(written.output.rfind("2 control files with 58 rows written to ", 0), 0U) << written.output;
  EXPECT_EQ(file_contents(folder_.path("rho/demo_run.bat")),
            "rhopp < demo_100.dat\r\nrhopp < demo_200.dat\r\n");
  EXPECT_EQ(file_contents(folder_.path("rho/demo_200.dat")).substr(0, 62),
            "data *\r\ntask *\r\nmodel\r\nsurface con\r\nroot demo_200\r\nexecute\r\n\r\n");
  EXPECT_EQ(run(with(arguments, {"--floor", "0"})).status, 2);
  EXPECT_EQ(run(with(arguments, {"--root", " "})).status, 2);
}

TEST_F(Batch_program, Plots_makes_a_page_of_the_profile_and_of_each_station) {
  write_field_files(2);
  import_field_files();
  const std::vector<std::string> arguments{"plots", "survey.mdb", "--line", "200E", "--output", "line.pdf"};
  const Outcome written = run(arguments);
  if (written.status == 2) {
    GTEST_SKIP() << "built without windows";
  }
  ASSERT_EQ(written.status, 0) << written.errors;
  const std::string document = file_contents(folder_.path("line.pdf"));
  EXPECT_EQ(document.substr(0, 5), "%PDF-");
  EXPECT_NE(document.find("/Count 9"), std::string::npos) << "pages, six of them of the line as a whole";

  EXPECT_EQ(run({"plots", "survey.mdb", "--line", "none", "--output", "line.pdf"}).status, 1);
  EXPECT_EQ(file_contents(folder_.path("line.pdf")), document);
}

TEST_F(Batch_program, Invert_gives_misfit_and_sheets_of_each_station) {
  write_field_files(2);
  import_field_files();
  const std::vector<std::string> arguments{"invert", "survey.mdb",  "--line", "200E",     "--reference",
                                           "0",      "--data-type", "ExHy",   "--dipole", "100"};
  const Json stations = run_for_json(with(arguments, {"--json"}));
  ASSERT_EQ(stations.size(), 2U);
  EXPECT_EQ(stations[1]["station"], 200);
  EXPECT_EQ(stations[1]["used_values"], 58);
  const double chi = stations[1]["achieved_chi"];
  EXPECT_GT(chi, 0.0);
  EXPECT_LT(chi, stations[1]["target_chi"]) << "the errors of repeats allow more than their mean is off";
  EXPECT_LT(stations[1]["optimality_gap"].get<double>(), 1e-4 * chi * chi);
  ASSERT_GE(stations[1]["model"].size(), 2U);
  EXPECT_LT(stations[1]["model"][0]["depth"], stations[1]["model"][1]["depth"]);

  EXPECT_EQ(run(with(arguments, {"--json", "out.json"})).output, "");
  EXPECT_EQ(Json::parse(file_contents(folder_.path("out.json"))), stations);
  const Outcome table = run(arguments);
  EXPECT_NE(table.output.find("Station 200: 58 values, chi "), std::string::npos);
  EXPECT_EQ(table.output.find("No reading is in use"), std::string::npos);

  session().database_file = folder_.path("survey.mdb");
  ASSERT_EQ(Module_database::open_database(), 0);
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE ReductionType = 0 AND Station = 200");
  for (; !rows.eof(); rows.move_next()) {
    rows.edit();
    rows.set_bit("UseReading", false);
    rows.update();
  }
  rows = {};
  ASSERT_EQ(Module_database::close_database(), 0);
  const std::string hint = "No reading is in use, and the earlier curve remains: station 200, ExHy";
  EXPECT_NE(run(arguments).output.find("  " + hint), std::string::npos);
  const Json without = run_for_json(with(arguments, {"--json"}));
  EXPECT_FALSE(without[0].contains("unsupported"));
  EXPECT_TRUE(without[1].value("unsupported", "").starts_with(hint));
}

// The flag stands before the file as well: what follows it is never its value.
TEST_F(Batch_program, Turns_Ey_where_needed_or_always) {
  const std::string head = ">HEAD\n>=MTSECT\n NFREQ=1\n>FREQ\n 10\n>RHOYX\n 100\n>PHSYX\n ";
  std::ignore = folder_.write("third.edi", head + "-135\n>END\n");
  std::ignore = folder_.write("fourth.edi", head + "-45\n>END\n");
  ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
  const auto turned = [&](const std::vector<std::string>& options) {
    std::vector<std::string> arguments{"import"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Outcome outcome =
        run(with(arguments, {"survey.mdb", "third.edi", "fourth.edi", "--reference", "0", "--line", "200E",
                             "--event", "0", "--rate", "24", "--report", "report.json"}));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    const bool all_turned = options == std::vector<std::string>{"--turn-ey=always"};
    EXPECT_EQ(outcome.errors.find("--turn-ey=always all") == std::string::npos, all_turned);
    const Json files = Json::parse(file_contents(folder_.path("report.json")))["files"];
    return std::pair<int, int>(files[0]["sections_turned"], files[1]["sections_turned"]);
  };
  EXPECT_EQ(turned({}), std::pair(0, 0));
  EXPECT_EQ(turned({"--turn-ey"}), std::pair(1, 0));
  EXPECT_EQ(turned({"--turn-ey=always"}), std::pair(1, 1));
}

TEST_F(Batch_program, A_scan_lists_stations_and_stores_nothing) {
  write_field_files(2);
  ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
  const Outcome scan = run(with(import_arguments("field"), {"--scan"}));
  EXPECT_EQ(scan.status, 0) << scan.errors;
  EXPECT_NE(scan.output.find("200E 100"), std::string::npos) << scan.output;
  EXPECT_NE(scan.output.find("200E 200"), std::string::npos) << scan.output;
  EXPECT_EQ(run_for_json({"info", "survey.mdb", "--json"})["tables"]["ReadingsDataTable"], 0);
}

// Public files: SECTIDs with letters, YX phases in the third quadrant.
TEST_F(Batch_program, A_folder_of_real_files_becomes_a_survey) {
  const std::string files = BRENLOX_FIELD_DATA "/edi/tensor_line";
  if (!std::filesystem::exists(files)) {
    GTEST_SKIP() << files << " is absent";
  }
  ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
  const Outcome imported =
      run({"import", "survey.mdb", files, "--reference", "1", "--line", "100E", "--event", "0", "--rate",
           "24000", "--sectid-as-station", "--sectid-digits", "--turn-ey", "--report", "report.json"});
  ASSERT_EQ(imported.status, 0) << imported.errors;
  const Json info = run_for_json({"info", "survey.mdb", "--json"});
  ASSERT_EQ(info["lines"].size(), 1U);
  EXPECT_EQ(info["lines"][0]["stations"].size(), 24U);
  EXPECT_EQ(imported.errors.find("Different sites"), std::string::npos) << imported.errors;
  const Json report = Json::parse(file_contents(folder_.path("report.json")));
  EXPECT_EQ(report["files"].size(), 24U);
  const Json merged =
      run_for_json({"curve", "survey.mdb", "--line", "100E", "--station", "1", "--reference", "1",
                    "--data-type", "EyHx", "--dipole", "100", "--reduction", "2", "--json"});
  ASSERT_EQ(merged["frequencies"].size(), 88U);
  std::size_t used = 0;
  for (const Json& mask : merged["mask"]) {
    used += mask[1] == 1 ? 1U : 0U;
  }
  EXPECT_GT(used, 60U);
  ASSERT_EQ(run({"zonge", "survey.mdb", "--line", "100E", "--reference", "1", "--data-type", "ExHy",
                 "--dipole", "100", "--output", "line.avg"})
                .status,
            0);
  EXPECT_EQ(stations_of_set(folder_.path("line.stn")),
            (std::vector<double>{1,  6,  9,  11, 16, 21, 26, 30, 35,  40,  46,  51,
                                 56, 61, 66, 72, 78, 83, 90, 95, 104, 109, 113, 118}));
  EXPECT_TRUE(file_contents(folder_.path("line.mde")).starts_with("$ STNLO= 1.0\r\n$ STNHI= 118.0\r\n"));
}

TEST_F(Batch_program, Tells_the_account_of_a_raw_file_on_the_error_output) {
  ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
  const std::vector<std::string> arguments{"import", "survey.mdb", "day.raw", "--reference", "0", "--line",
                                           "200E",   "--event",    "0",       "--rate",      "1"};
  (void)folder_.write("day.raw",
                      "0001\nCSAMT    2004-05-12 08:15:22 12.4v VEC\nOPER 7  A-SP 50 m\n"
                      "0002\nCSAMT    2004-05-12 08:20:01 12.4v\n8 Hz\n"
                      "1 Hy 100 0.0123 45.2 0 OUT 4\n2 Ex 100 12.345 44.1 105.2 OUT 16\n"
                      "0003\nTEM\n");
  const Outcome refused = run(arguments);
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.errors.find("No stn file was located"), std::string::npos) << refused.errors;

  (void)folder_.write("day.stn", "100 500100 6200000 351\n");
  const Outcome outcome = run(arguments);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.errors.find("day.raw:\n"
                                "Block : 1 Survey Configuration is Vector\n"
                                "Block : 1 A spacing is 50\n"
                                "Block : 2 Frequency is 8\n"
                                "Block : 2 Gain for input 1 is 4\n"
                                "Block : 2 Gain for input 2 is 16\n"
                                "Block : 2 Number of data channels is 2\n"
                                "Block : 3 - Time Domain EM Block\n"),
            std::string::npos)
      << outcome.errors;
  const Json info = run_for_json({"info", "survey.mdb", "--json"});
  EXPECT_EQ(info["scan_rates"], Json::parse("[8]"));
  EXPECT_EQ(info["dipoles"], Json::parse("[50]"));
}

}  // namespace
