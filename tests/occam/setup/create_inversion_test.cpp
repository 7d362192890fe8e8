// Run directories created from lines of made-up stations, read back and checked by hand.
#include <algorithm>

#include "database/sites.h"
#include "occam/results/run_results.h"
#include "tests/occam/setup/made_line_run.h"
#include "tests/support/named_site.h"

namespace Module_occam {
namespace {

TEST_F(CreateInversionTest, Thirty_stations_give_a_run_that_is_read_back) {
  new_survey();
  store_stations(equally_spaced(30));
  ASSERT_EQ(create(), 0);
  EXPECT_EQ(interface.take_messages(),
            Messages{"Output complete. Number of data written: 180. The files are in " +
                     run().parent_path().string()});
  EXPECT_EQ(created.data_count, 180);
  EXPECT_EQ(created.directory, (folder.folder() / "run").string());
  EXPECT_EQ(created.earlier_run, "");

  ControlFile names;
  ASSERT_EQ(read_occam_control_file(run("startup").string(), names), 0);
  EXPECT_EQ(names.model_file, "inmodel");
  EXPECT_EQ(names.data_file, "occamdat");
  OccamData data;
  ASSERT_EQ(read_occam_data_file(run(names.data_file).string(), data), 0);
  EXPECT_EQ(data.title, "made");
  EXPECT_EQ(data.site_count(), 30);
  OccamModel model;
  ASSERT_EQ(read_occam_model(run(), names.model_file, data, model), 0);
  EXPECT_EQ(model.mesh.columns(), 18 + 2 * 30);
  EXPECT_EQ(model.mesh.rows(), 29);
  EXPECT_EQ(model.num_layers(), 24);
  EXPECT_EQ(model.layers.front().layer_blocks(), 30 + 4);
  for (int site = 0; site < 30; ++site) {
    const auto node = static_cast<std::size_t>(model.site_node[static_cast<std::size_t>(site)]);
    EXPECT_DOUBLE_EQ(model.node_x.at(node), 100.0 * (site + 1));
  }
  OccamIteration start;
  ASSERT_EQ(read_occam_iteration(IterationParts::with_parameters, run("startup").string(), start), 0);
  EXPECT_EQ(start.number, 0);
  EXPECT_EQ(start.PMU, 5.0);
  EXPECT_EQ(start.RLAST, 1e7);
  EXPECT_EQ(start.TLAST, 100.0);
  EXPECT_EQ(start.parameters, std::vector<double>(static_cast<std::size_t>(model.num_free_params), 2.0));
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST_F(CreateInversionTest, Three_stations_give_these_files) {
  new_survey();
  store_stations({100, 140, 300});  // nearer than half a block, then 1.6 blocks apart
  session().frequencies = {};       // the list is that of the reference type, whatever was loaded
  inputs.initial_res = "50";
  ASSERT_EQ(create(), 0);
  const auto set = files();
  const std::string data = set.at("occamdat");
  const std::string row = "0.1000\r\n";  // 5 % of log10 100
  EXPECT_TRUE(
      data.starts_with("FORMAT            OCCAM2MTDATA_1.0\r\nTITLE             made\r\n"
                       "SITES             3\r\nstation_100.0\r\nstation_140.0\r\nstation_300.0\r\n"
                       "OFFSETS\r\n       100.0\r\n       140.0\r\n       300.0\r\n"
                       "FREQUENCIES       3\r\n      1.0000\r\n     10.0000\r\n    100.0000\r\n"
                       "NO.DATABLOCKS     18\r\nSITE,FREQUENCY,DATATYPE,DATUM,ERROR\r\n"
                       "     1           1       5       2.0000      " +
                       row + "     1           1       6      45.0000      2.2500\r\n" +
                       "     1           2       5       2.0000      " + row))
      << data;
  EXPECT_TRUE(data.ends_with("     3           3       6      45.0000      2.2500\r\n"));
  EXPECT_TRUE(
      set.at("mesh").starts_with(" MESH FILE FROM Brenlox\r\n"
                                 "     0    27    30     0     0     2\r\n"  // four nodes
                                 "  43740.000000  14580.000000   4860.000000"));
  EXPECT_EQ(set.at("mesh"), set.at("MESH"));
  EXPECT_NE(set.at("inmodel").find("BINDING OFFSET:   40.0\r\nNUM LAYERS:       24\r\n"
                                   "     2     8\r\n     7     2     2     2     2     2     2     7\r\n"),
            std::string::npos);
  EXPECT_NE(set.at("startup").find("         1.6990         1.6990         1.6990         1.6990\r\n"),
            std::string::npos);
  EXPECT_EQ(set.at("occam_run.bat"), "occam2d\r\n");
  EXPECT_EQ(set.at("occam_run.sh"), "#!/bin/sh\noccam2d\n");
  EXPECT_NE(fs::status(run("occam_run.sh")).permissions() & fs::perms::owner_exec, fs::perms::none);
  EXPECT_EQ(set.size(), 7U);
}

TEST_F(CreateInversionTest, What_a_line_has_is_counted_beforehand) {
  new_survey();
  store_both_modes();
  // What a file had merged: the computed curve goes before it.
  made::store(made::key(0.0F, 300), 0, made::reading({{1, 100, 45}}), 2, 7);
  InversionChoices choices;
  ASSERT_EQ(check_inversion_inputs(inputs, choices), 0);
  const auto counted = [&](ModeChoice choice, const char* type) {
    return totals_text(mode_totals(count_data({"200E", 0, type, 50.0F}, choice, rhoplus), choices));
  };
  EXPECT_EQ(counted(ModeChoice::both, "ExHy"), "TE 12 data at 3 stations, TM 12 data at 3 stations");
  EXPECT_EQ(counted(ModeChoice::current_type, "ExHx"), "TM none (ExHx)");
  Module_tensor::LineTensors tensors;
  store_tensors({500, 600});
  ASSERT_EQ(Module_tensor::load_line_tensors({"200E", 0, 50.0F}, made::frequencies(), tensors), 0);
  inputs.modes = ModeChoice::both;
  inputs.rotate_to_strike = 25.0;
  EXPECT_EQ(totals_text(mode_totals(count_rotated_data(tensors, "ExHy", inputs, rhoplus), choices)),
            "TE 8 data at 2 stations, TM 8 data at 2 stations");
  choices.first_station = 350.0;
  choices.last_station = 450.0;
  EXPECT_EQ(counted(ModeChoice::both, "ExHy"), "TE 4 data at 1 station, TM none (ExHy)");
  store_curve("EyHy", 400, {{1, 100, -45}, {10, 100, -135}});
  EXPECT_EQ(counted(ModeChoice::current_type, "EyHy"), "TM 2 data at 1 station, no phases");
}

TEST_F(CreateInversionTest, Errors_of_files_are_used_where_they_are_larger_and_asked_for) {
  new_survey();
  static_factor = 2.0F;
  files_have_errors = true;
  store_stations({100, 200, 300});
  const auto rows_of_first_site = [this] {
    EXPECT_EQ(create_and_answer(true), 0);
    const std::string data = files().at("occamdat");
    const std::size_t begin = data.find("     1           1       5");
    return data.substr(begin, data.find("     2           1       5") - begin);
  };
  // 5 % of log10 200, and of 45 degrees; 100 ohm-m of 200 are 0.5 / ln 10.
  const std::string floors =
      "     1           1       5       2.3010      0.1151\r\n"
      "     1           1       6      45.0000      2.2500\r\n"
      "     1           2       5       2.3010      0.1151\r\n"
      "     1           2       6      45.0000      2.2500\r\n"
      "     1           3       5       2.3010      0.1151\r\n"
      "     1           3       6      45.0000      2.2500\r\n";
  std::string with_files = floors;
  with_files.replace(with_files.find("0.1151"), 6, "0.2171");
  with_files.replace(with_files.find("2.2500"), 6, "4.0000");
  EXPECT_EQ(rows_of_first_site(), floors);
  rhoplus.use_file_errors = 1;
  rhoplus.resistivity_error_floor = 90.0F;  // of Rho+: no error of an inversion in two dimensions
  EXPECT_EQ(rows_of_first_site(), with_files);

  // TM has no other curves than those; TE, that of the files and the floors in both.
  data_type = "EyHx";
  store_stations({100, 200, 300});
  inputs.modes = ModeChoice::both;
  EXPECT_EQ(create_and_answer(true), 0);
  for (const std::string type : {"1 ", "5 "}) {
    const Messages rows = rows_of_run();
    EXPECT_EQ(std::ranges::count(rows, "1 1 " + type + "2.301 0.2171"), 1) << type;  // 50 % of the files
    EXPECT_EQ(std::ranges::count(rows, "1 2 " + type + "2.301 0.0217"), 1) << type;  // 5 %, the files say 1 %
  }
}

TEST_F(CreateInversionTest, A_half_space_is_fitted_and_keeps_its_errors) {
  new_survey();
  store_stations({100, 200, 300});
  inputs.use_rhoplus_error = true;
  ASSERT_EQ(create(), 0);
  // Rho+ fits 100 ohm-m and 45 degrees, so the errors stay near 0.05 x 2 and 0.05 x 45.1.
  const std::string data = files().at("occamdat");
  const std::size_t row = data.find("     2           2       5       2.0000");
  ASSERT_NE(row, std::string::npos);
  EXPECT_NEAR(numeric_value(data.substr(row + 39, 12)), 0.1, 0.01);
  const std::size_t phase_row = data.find("     2           2       6      45.0000");
  ASSERT_NE(phase_row, std::string::npos);
  EXPECT_NEAR(numeric_value(data.substr(phase_row + 39, 12)), 2.255, 0.5);
}

TEST_F(CreateInversionTest, Too_few_stations_leave_only_the_files_that_start_the_program) {
  new_survey();
  store_stations({100, 200});
  EXPECT_EQ(create(), -1);
  EXPECT_EQ(interface.take_messages(), Messages{too_few});
  EXPECT_TRUE(files().contains("occam_run.bat"));
  EXPECT_FALSE(files().contains("occamdat"));
  EXPECT_FALSE(session().updating_controls);
}

TEST_F(CreateInversionTest, Start_and_end_station_limit_the_line) {
  new_survey();
  store_stations(equally_spaced(6));
  const auto sites = [&](const char* first, const char* last) {
    inputs.first_station = first;
    inputs.last_station = last;
    inputs.occam_directory = std::string("run/") + first + "_" + last;
    EXPECT_EQ(create(), 0);
    OccamData data;
    EXPECT_EQ(read_occam_data_file(run(std::string(first) + "_" + last + "/occamdat").string(), data), 0);
    return data.site_offsets;
  };
  EXPECT_EQ(sites("200", "400"), (std::vector<float>{200, 300, 400}));
  EXPECT_EQ(sites("350", ""), (std::vector<float>{400, 500, 600}));
  EXPECT_EQ(sites("", "499.9"), (std::vector<float>{100, 200, 300, 400}));
  interface.take_messages();
  inputs.first_station = "500";
  inputs.last_station = "600";
  inputs.occam_directory = "run/500_600";
  EXPECT_EQ(create(), -1);
  EXPECT_EQ(interface.take_messages(), Messages{too_few});
}

TEST_F(CreateInversionTest, Positions_can_be_distances_between_the_sites) {
  new_survey();
  store_stations({5, 15, 20});
  made::store(made::key(0.0F, 10), 0, made::reading({{1, 1000, 45}, {10, 1000, 45}}), 2, -1);
  const auto place = [](double station, double minutes_of_latitude, double longitude = 141.0) {
    Module_database::Site site;
    site.line = "200E";
    site.station = station;
    site.SurveyFile = "a.edi";
    site.latitude = -25.0 + minutes_of_latitude / 60.0;
    site.longitude = longitude;
    std::ignore = Module_database::keep_site(site);
  };
  place(5, 0.0);
  place(10, 0.2);
  place(15, 0.1);
  place(20, 0.4);
  inputs.positions = PositionSource::distances;
  std::vector<int> shown;
  steps.show_station = [&shown](int place_in_line) { shown.push_back(place_in_line); };
  ASSERT_EQ(create(), 0);
  EXPECT_EQ(shown, (std::vector<int>{1, 3, 2, 4}));
  OccamData data;
  ASSERT_EQ(read_occam_data_file(run("occamdat").string(), data), 0);
  EXPECT_EQ(data.site_names,
            (std::vector<std::string>{"station_5.0", "station_15.0", "station_10.0", "station_20.0"}));
  ASSERT_EQ(data.site_count(), 4);
  const float tenth_of_minute = 0.9996F * 184.64F;  // m; a minute on latitude -25 is 1846.4 m long
  for (const int site : {0, 1, 2}) {
    EXPECT_NEAR(data.site_offsets[static_cast<std::size_t>(site)], static_cast<float>(site) * tenth_of_minute,
                0.2);
  }
  EXPECT_NEAR(data.site_offsets[3], 4.0F * tenth_of_minute, 0.4);
  EXPECT_NE(files().at("occamdat").find("     3           1       5       3.0000"), std::string::npos);
  OccamModel model;
  ASSERT_EQ(read_occam_model(run(), "inmodel", data, model), 0);
  for (std::size_t site = 0; site < 4; ++site) {
    EXPECT_NEAR(model.node_x.at(static_cast<std::size_t>(model.site_node[site])), data.site_offsets[site],
                0.1);
  }

  interface.take_messages();
  const auto before = files();
  place(20, 0.1);
  EXPECT_EQ(create_and_answer(true), -1);
  EXPECT_EQ(interface.take_messages(),
            Messages{"Stations 15 and 20 are at the same place along the line, and an inversion takes one of "
                     "them. Switch the other one off (Use Data)"});
  place(10, 0.2, 141.003);
  EXPECT_EQ(create_and_answer(true), -1);
  const Messages refused = interface.take_messages();
  ASSERT_EQ(refused.size(), 1U);
  EXPECT_TRUE(refused[0].starts_with("The sites of line 200E lie on no straight line (RMS ")) << refused[0];
  EXPECT_TRUE(refused[0].ends_with(", so distances along it mean nothing"));
  EXPECT_EQ(files(), before);
}

TEST_F(CreateInversionTest, A_mesh_that_results_can_not_show_is_warned_of) {
  new_survey();
  store_stations(equally_spaced(3));
  inputs.block_width = "0.8";  // 250 spacings between two stations
  ASSERT_EQ(create(), 0);
  const Messages shown = interface.take_messages();
  ASSERT_EQ(shown.size(), 2U);
  EXPECT_EQ(shown[0],
            "The mesh has 520 columns and 29 rows of cells; the results of a run with more than 511 of "
            "either can't be opened here");
  EXPECT_TRUE(shown[1].starts_with("Output complete."));
}

TEST_F(CreateInversionTest, Sites_have_the_names_of_their_field_files) {
  new_survey();
  store_stations({100.0, 140.0, 300.0});
  name_site("200E", 100.0, "ET 001");
  name_site("200E", 300.0, "ET006");
  ASSERT_EQ(create(), 0);
  EXPECT_NE(
      files().at("occamdat").find("SITES             3\r\nET_001\r\nstation_140.0\r\nET006\r\nOFFSETS\r\n"),
      std::string::npos);
  const OccamData read = read_data_file_sites(run("occamdat").string());
  EXPECT_EQ(read.site_names, (std::vector<std::string>{"ET_001", "station_140.0", "ET006"}));
  EXPECT_EQ(read.site_offsets, (std::vector<float>{100.0F, 140.0F, 300.0F}));
}

TEST_F(CreateInversionTest, A_station_without_a_curve_is_skipped) {
  new_survey();
  store_stations({100, 300, 400});
  (void)find_station(Module_database::StationSearch::create, "200E", 200.0);
  ASSERT_EQ(create(), 0);
  OccamData data;
  ASSERT_EQ(read_occam_data_file(run("occamdat").string(), data), 0);
  EXPECT_EQ(data.site_offsets, (std::vector<float>{100, 300, 400}));
}

TEST_F(CreateInversionTest, The_line_must_have_two_stations_and_two_frequencies) {
  session().current_line = "200E";
  session().station_line = {"100N", "200E"};
  session().frequencies = {{1.0F, 2.0F, 4.0F}, {1, 0, 1}};
  EXPECT_EQ(check_line_for_inversion(), -1);
  EXPECT_EQ(interface.take_messages(), Messages{too_few});
  session().station_line.emplace_back("200E");
  EXPECT_EQ(check_line_for_inversion(), 0);
  session().frequencies.enabled = {1, 0, 0};
  EXPECT_EQ(check_line_for_inversion(), -1);
  EXPECT_EQ(interface.take_messages(),
            Messages{"There is not enough enabled frequencies to perform a 2D inversion"});
}

}  // namespace
}  // namespace Module_occam
