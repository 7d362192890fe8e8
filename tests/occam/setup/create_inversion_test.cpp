// Run directories created from lines of made-up stations, read back and checked by hand.
#include "occam/setup/create_inversion.h"

#include <algorithm>
#include <map>

#include "core/number_text.h"
#include "database/reading_facts.h"
#include "database/sites.h"
#include "formats/occam/data_file.h"
#include "occam/occam_files.h"
#include "occam/results/run_results.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/named_site.h"
#include "tests/support/survey_fixture.h"
#include "tests/tensor/made_station.h"

namespace Module_occam {
namespace {

namespace fs = std::filesystem;
using Messages = std::vector<std::string>;

const std::string failed = "An error occurred while creating the Occam inversion: ";
const std::string too_few = "There are not enough stations for the current line to perform a 2D inversion";

class CreateInversionTest : public SurveyTest {
 protected:
  CreateInversionTest() {
    inputs.use_rhoplus_error = false;
    inputs.directory = folder.path("");
    inputs.occam_directory = "run";
    inputs.description = "made";
  }

  /// Merged curves of 100 ohm-m and 45 degrees at 1, 10 and 100 Hz.
  void store_stations(const std::vector<double>& stations) {
    for (const double station : stations) {
      made::ReadingKey key = made::key(0.0F, station);
      key.data_type = data_type;
      made::StoredReading curve = made::reading({{1, 100, 45}, {10, 100, 45}, {100, 100, 45}});
      for (std::size_t index = 0; index < curve.curve.count(); ++index) {
        curve.curve.value(Module_database::field_resistivity_deviation, index) = 1.0F;
        curve.curve.value(Module_database::field_phase_deviation, index) = 0.5F;
      }
      curve.ResOffset = static_factor;
      const std::int32_t ID = made::store(key, 0, curve, 2, -1);
      if (files_have_errors) {  // 50 % and 4 degrees at 1 Hz, small ones at 10 Hz, none at 100 Hz
        curve.curve.error_at(Module_database::field_resistivity, 0) = 50.0F;
        curve.curve.error_at(Module_database::field_phase, 0) = 4.0F;
        curve.curve.error_at(Module_database::field_resistivity, 1) = 1.0F;
        curve.curve.error_at(Module_database::field_phase, 1) = 0.5F;
        Module_database::write_facts(ID, curve.curve, {});
      }
    }
  }

  /// A merged curve of a line of both modes. @param counts  1 or 0 for each point: masked
  void store_curve(const char* type, double station, const std::vector<made::Point>& points,
                   int counts = 1) const {
    made::ReadingKey key = made::key(0.0F, station);
    key.data_type = type;
    made::StoredReading curve = made::reading(points);
    for (std::size_t index = 0; index < curve.curve.count(); ++index) {
      curve.curve.counts_at(Module_database::field_resistivity, index) = counts;
      curve.curve.counts_at(Module_database::field_phase, index) = counts;
    }
    curve.ResOffset = type == std::string("EyHx") ? te_static_factor : 1.0F;
    made::store(key, 0, curve, 2, -1);
  }

  /// TM at 100 to 300; TE at 100, 300 and 400 and, all masked, at 200.
  void store_both_modes() const {
    for (const double station : {100.0, 200.0, 300.0}) {
      store_curve("ExHy", station, {{1, 100, 45}, {10, 100, 45}});
    }
    for (const double station : {100.0, 300.0, 400.0}) {
      store_curve("EyHx", station, {{1, 10, 60}, {100, 1000, 30}});
    }
    store_curve("EyHx", 200, {{1, 10, 60}}, 0);
  }

  /// All elements over ground of strike 25: 100 ohm-m and 30 degrees along, 400 ohm-m and 60 degrees across
  /// it.
  void store_tensors(const std::vector<double>& stations) const {
    for (const double station : stations) {
      const Module_tensor::StationCurves curves = made::station(station, {1.0F, 10.0F}, [](double f) {
        return made::in_axes_of_north(25.0, made::impedance(100.0, 30.0, f), made::impedance(400.0, 60.0, f));
      });
      for (std::size_t element = 0; element < 4; ++element) {
        made::ReadingKey key = made::key(0.0F, station);
        key.data_type = Module_tensor::curve_types[element];
        made::store(key, 0, curves.merged[element], 2, -1);
      }
    }
  }

  /// The rows of the data file as "site frequency type datum error".
  [[nodiscard]] Messages rows_of_run() const {
    Messages rows;
    for (const DataRow& row : read_data_file(run("occamdat").string()).rows) {
      rows.push_back(std::to_string(row.site_number) + " " + std::to_string(row.frequency_number) + " " +
                     std::to_string(static_cast<int>(row.type)) + " " + plain_text(row.datum) + " " +
                     plain_text(row.error));
    }
    return rows;
  }

  int create() { return create_inversion({"200E", 0, data_type, 50.0F}, inputs, rhoplus, steps, created); }
  int create_and_answer(bool replace) {
    interface->questions.clear();
    interface->yes_no_answers = {replace};
    return create();
  }

  [[nodiscard]] fs::path run(const std::string& name = "") const { return folder.folder() / "run" / name; }

  /// Contents of the files below a folder of the run directory by name.
  [[nodiscard]] std::map<std::string, std::string> files(const std::string& name = "") const {
    std::map<std::string, std::string> found;
    if (fs::exists(run(name))) {
      for (const fs::directory_entry& entry : fs::recursive_directory_iterator(run(name))) {
        found[entry.path().lexically_relative(run(name)).string()] =
            entry.is_directory() ? "folder" : file_contents(entry.path().string());
      }
    }
    return found;
  }
  void write(const std::string& name, const std::string& contents) const {
    static_cast<void>(folder.write("run/" + name, contents));
  }

  InversionInputs inputs;
  Module_output::RhoplusSettings rhoplus;
  StationSteps steps;
  CreatedInversion created;
  std::string data_type = "ExHy";
  float static_factor = 1.0F;
  float te_static_factor = 1.0F;
  bool files_have_errors = false;
};

std::vector<double> equally_spaced(int count) {
  std::vector<double> stations;
  for (int station = 1; station <= count; ++station) {
    stations.push_back(100.0 * station);
  }
  return stations;
}

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

TEST_F(CreateInversionTest, Fits_and_modes_reach_the_data) {
  new_survey();
  data_type = "EyHx";
  store_stations({100, 200, 300});
  inputs.use_rhoplus_error = true;
  rhoplus.surface = 0;
  rhoplus.apply_static = 0;
  int shown = 0;
  steps.show_station = [&shown](int place) { EXPECT_EQ(place, ++shown); };
  steps.fit_station = [](const Module_output::RhoplusSettings& settings,
                         Module_output::RhoplusTables& tables) {
    EXPECT_EQ(settings.surface, 0);
    EXPECT_EQ(settings.apply_static, 1);  // an entry of the run, whatever the user's setting is
    for (auto& row : tables.data) {
      row.model_resistivity = 110.0F;
      row.model_phase = 50.0F;
    }
  };
  ASSERT_EQ(create(), 0);
  EXPECT_EQ(shown, 3);
  // (0.05 + 0.1) x 2 and 0.05 x 45.1 + 5
  EXPECT_NE(files()
                .at("occamdat")
                .find("     2           3       1       2.0000      0.3000\r\n"
                      "     2           3       2      45.0000      7.2550\r\n"),
            std::string::npos);
}

TEST_F(CreateInversionTest, Both_modes_go_into_one_run) {
  new_survey();
  te_static_factor = 2.0F;
  store_both_modes();
  inputs.modes = ModeChoice::both;
  inputs.te_res_error_floor = "10";
  inputs.phase_error_floor = "1.5";
  data_type = "QP";  // plays no part
  ASSERT_EQ(create(), 0);
  EXPECT_EQ(interface.take_messages(),
            Messages{"Output complete. Number of data written: 24. The files are in " +
                     run().parent_path().string() + ". TE 12 data at 3 stations, TM 12 data at 3 stations"});
  const ObservedData data = read_data_file(run("occamdat").string());
  EXPECT_EQ(data.site_offsets, (std::vector<double>{100, 200, 300, 400}));
  EXPECT_EQ(data.frequencies, (std::vector<double>{1, 10, 100}));
  // log10 of 2 x 10 and 2 x 1000; 0.1 and 0.05 over ln 10; 1.5 degrees in both.
  EXPECT_EQ(rows_of_run(),
            (Messages{"1 1 1 1.301 0.0434", "1 1 2 60 1.5", "1 1 5 2 0.0217",     "1 1 6 45 1.5",
                      "1 2 5 2 0.0217",     "1 2 6 45 1.5", "1 3 1 3.301 0.0434", "1 3 2 30 1.5",
                      "2 1 5 2 0.0217",     "2 1 6 45 1.5", "2 2 5 2 0.0217",     "2 2 6 45 1.5",
                      "3 1 1 1.301 0.0434", "3 1 2 60 1.5", "3 1 5 2 0.0217",     "3 1 6 45 1.5",
                      "3 2 5 2 0.0217",     "3 2 6 45 1.5", "3 3 1 3.301 0.0434", "3 3 2 30 1.5",
                      "4 1 1 1.301 0.0434", "4 1 2 60 1.5", "4 3 1 3.301 0.0434", "4 3 2 30 1.5"}));
  OccamModel model;
  ASSERT_EQ(read_occam_model(run(), "inmodel", read_data_file_sites(run("occamdat").string()), model), 0);
  EXPECT_EQ(model.mesh.columns(), 18 + 2 * 4);
}

TEST_F(CreateInversionTest, Fits_go_through_both_modes_and_errors_as_before_have_both_floors) {
  new_survey();
  store_both_modes();
  inputs.modes = ModeChoice::both;
  inputs.errors = ErrorForm::as_before;
  inputs.use_rhoplus_error = true;
  inputs.te_phase_error_floor = "10";
  int fits = 0;
  steps.fit_station = [&fits](const Module_output::RhoplusSettings&, Module_output::RhoplusTables& tables) {
    ++fits;
    for (auto& row : tables.data) {  // TE is missed by a fifth, TM by nothing
      row.model_resistivity = row.phase == 45.0F ? row.resistivity : 1.2F * row.resistivity;
      row.model_phase = row.phase;
    }
  };
  ASSERT_EQ(create(), 0);
  EXPECT_EQ(fits, 6);  // none of what is masked
  const Messages rows = rows_of_run();
  // (0.05 + 0.2) x 1, 0.1 x 60.1, 0.05 x 2, 0.05 x 45.1
  EXPECT_EQ(Messages(rows.begin(), rows.begin() + 4),
            (Messages{"1 1 1 1 0.25", "1 1 2 60 6.01", "1 1 5 2 0.1", "1 1 6 45 2.255"}));
}

TEST_F(CreateInversionTest, The_strike_decides_which_element_is_of_which_mode) {
  new_survey();
  store_tensors({100, 200, 300});
  inputs.modes = ModeChoice::both;
  const auto first_rows = [&](std::optional<double> strike) {
    inputs.rotate_to_strike = strike;
    EXPECT_EQ(create_and_answer(true), 0);
    EXPECT_EQ(created.data_count, 24);
    const Messages rows = rows_of_run();
    return Messages(rows.begin(), rows.begin() + 4);
  };
  // log10 of 100 and of 400; 5 % are 0.0217 decades.
  EXPECT_EQ(first_rows(25.0),
            (Messages{"1 1 1 2 0.0217", "1 1 2 30 5", "1 1 5 2.6021 0.0217", "1 1 6 60 5"}));
  EXPECT_EQ(first_rows(115.0),
            (Messages{"1 1 1 2.6021 0.0217", "1 1 2 60 5", "1 1 5 2 0.0217", "1 1 6 30 5"}));
  EXPECT_EQ(first_rows(-65.0), first_rows(115.0));

  // To the east as x: TE is what EyHx was, errors of the files included.
  rhoplus.use_file_errors = 1;
  inputs.use_rhoplus_error = true;
  inputs.res_error_floor = "1";
  inputs.phase_error_floor = "1";
  EXPECT_EQ(first_rows(90.0), first_rows(std::nullopt));
}

TEST_F(CreateInversionTest, A_rotated_run_says_so_and_names_what_it_leaves_out) {
  new_survey();
  store_tensors({100, 200, 300});
  store_curve("ExHy", 400, {{1, 100, 45}, {10, 100, 45}});
  made::ReadingKey other_dipole = made::key(0.0F, 500.0);
  other_dipole.dipole = 25.0F;
  made::store(other_dipole, 0, made::reading({{1, 100, 45}}), 2, -1);
  name_site("200E", 400, "ET004");
  inputs.rotate_to_strike = 25.0;
  const std::string left_out =
      "Left out for want of a tensor: Station 400 (ET004): there is no ExHx, EyHx, EyHy";
  ASSERT_EQ(create(), 0);  // of TM: the mode of ExHy stays, and is the element across the strike
  EXPECT_EQ(interface.take_messages(),
            Messages{"Output complete. Number of data written: 12. The files are in " +
                     run().parent_path().string() +
                     ". The curves are rotated to a strike of 25 degrees from north. " + left_out});
  EXPECT_EQ(rows_of_run().front(), "1 1 5 2.6021 0.1301");
  for (const char* const file : {"startup", "inmodel", "occamdat"}) {
    EXPECT_NE(files().at(file).find(" made, rotated to a strike of 25 degrees from north\r\n"),
              std::string::npos)
        << file;
  }

  data_type = "EyHx";
  EXPECT_EQ(create_and_answer(true), 0);
  EXPECT_EQ(rows_of_run().front(), "1 1 1 2 0.1");
  interface.take_messages();

  const auto before = files();
  data_type = "QP";
  EXPECT_EQ(create(), -1);
  data_type = "ExHy";
  inputs.rotate_to_strike = 400.0;
  EXPECT_EQ(create(), -1);
  inputs.rotate_to_strike = 25.0;
  inputs.first_station = "300";
  EXPECT_EQ(create_and_answer(true), -1);
  EXPECT_EQ(
      interface.take_messages(),
      (Messages{"A run that is rotated to the strike is of TE (EyHx) or TM (ExHy), not of QP",
                "The strike to rotate to must be from -180 to 360 degrees", too_few + ". " + left_out}));
  EXPECT_EQ(files(), before);
}

TEST_F(CreateInversionTest, Static_factors_can_be_left_out_of_a_rotated_run) {
  new_survey();
  store_tensors({100, 200, 300});
  Module_database::open_survey().database.execute(
      "UPDATE ReadingsDataTable SET ResOffset = 4 WHERE DataType IN ('ExHx', 'ExHy')");
  inputs.rotate_to_strike = 0.0;
  inputs.apply_static = true;
  const auto te = [this] {  // ExHy
    EXPECT_EQ(create_and_answer(true), 0);
    return read_data_file(run("occamdat").string()).rows.front().datum;
  };
  data_type = "EyHx";
  const double with_static = te();
  inputs.apply_static = false;
  EXPECT_NEAR(with_static - te(), std::log10(4.0), 2e-4);  // four decimals in the file
}

TEST_F(CreateInversionTest, A_mode_without_data_is_named_and_nothing_is_written) {
  new_survey();
  store_stations(equally_spaced(3));
  for (const double station : {100.0, 200.0, 300.0}) {
    store_curve("EyHx", station, {{1, 10, 60}}, 0);
  }
  inputs.modes = ModeChoice::both;
  EXPECT_EQ(create(), -1);
  EXPECT_EQ(
      interface.take_messages(),
      Messages{"An inversion of both modes needs TE and TM; line 200E has no TE data (EyHx) in use for a "
               "dipole of 50 m"});
  EXPECT_FALSE(fs::exists(run()));
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

TEST_F(CreateInversionTest, A_stop_leaves_what_was_there_before) {
  new_survey();
  store_stations(equally_spaced(5));
  interface->stop = [this] { return interface->progress.size() > 2; };
  ASSERT_EQ(create(), 0);
  EXPECT_TRUE(created.stopped);
  EXPECT_FALSE(fs::exists(run()));

  interface->stop = [] { return false; };
  ASSERT_EQ(create(), 0);
  const auto before = files();
  inputs.block_width = "20";
  interface->progress.clear();
  interface->stop = [this] { return interface->progress.size() > 2; };
  ASSERT_EQ(create_and_answer(true), 0);
  EXPECT_TRUE(created.stopped);
  EXPECT_EQ(files(), before);
  EXPECT_FALSE(session().updating_controls);
  EXPECT_FALSE(interface->busy);
  EXPECT_EQ(interface->progress.back(), -1);
}

TEST_F(CreateInversionTest, Failures_are_reported_once_and_leave_what_was_there_before) {
  new_survey();
  store_stations(equally_spaced(3));
  ASSERT_EQ(create(), 0);
  interface.take_messages();
  fs::create_directory(run("a folder"));
  const auto before = files();
  const InversionInputs good = inputs;
  const auto expect_failure = [&](const std::string& message) {
    EXPECT_EQ(create_and_answer(true), -1);
    EXPECT_EQ(interface.take_messages(), Messages{message});
    EXPECT_EQ(files(), before);
    inputs = good;
  };
  inputs.data_file = "inmodel";
  expect_failure(failed + "two files of the inversion would have the name inmodel");
  inputs.data_file = "../occamdat";
  expect_failure(failed + "../occamdat is more than the name of a file");
  inputs.model_file = "a folder";  // seen when the earlier run has moved
  expect_failure(failed + run("a folder").string() + ": is a folder");
  inputs.model_file = "Startup";
  expect_failure(failed + "two files of the inversion would have the name Startup");
  inputs.directory = inputs.occam_directory = " ";
  expect_failure(failed + "no folder has been chosen");
  inputs.block_width = "0.0001";
  expect_failure(failed + "the block width is too small for the length of the line");
  inputs.num_layers = "2000";
  inputs.layers_per_decade = "1";
  expect_failure(failed + "the layers reach too deep");
  inputs.max_iterations = "x";
  expect_failure("The number of iterations is invalid");
}

/// What an inversion program and this one leave, with a file of the user's.
TEST_F(CreateInversionTest, An_earlier_inversion_is_kept_as_a_whole) {
  new_survey();
  store_stations(equally_spaced(3));
  ASSERT_EQ(create(), 0);
  std::string iteration = files().at("startup");
  iteration.replace(iteration.find("ITERATION:        0"), 19, "ITERATION:        7");
  write("ITER07.iter", iteration);
  write("RESP07.resp", "response");
  write("SHIFT07.shift", "static shifts");
  write("LogFile.logfile", "log");
  write("Brenlox/ITER07.xyz", "points");
  write("occam_run.sh", "#!/bin/sh\n/opt/occam2d\n");  // changed by the user
  write("notes.txt", "mine");
  interface.take_messages();
  auto before = files();

  inputs.num_layers = "20";
  EXPECT_EQ(create_and_answer(false), -1);
  EXPECT_EQ(interface->questions, Messages{"Replace the inversion in " + run().parent_path().string() +
                                           "? It is kept in earlier_1."});
  EXPECT_TRUE(interface.take_messages().empty());
  EXPECT_EQ(files(), before);
  inputs.first_station = "250";  // fails when the stations have been read
  EXPECT_EQ(create_and_answer(true), -1);
  EXPECT_EQ(interface.take_messages(), Messages{too_few});
  EXPECT_EQ(files(), before);

  inputs.first_station = "";
  ASSERT_EQ(create_and_answer(true), 0);
  EXPECT_EQ(created.earlier_run, run("earlier_1").string());
  EXPECT_EQ(
      interface.take_messages(),
      Messages{"Output complete. Number of data written: 18. The files are in " +
               run().parent_path().string() + ", the earlier inversion in " + run("earlier_1").string()});
  EXPECT_EQ(file_contents(run("notes.txt").string()), "mine");
  EXPECT_NE(files().at("inmodel"), before.at("inmodel"));
  EXPECT_FALSE(fs::exists(run("ITER07.iter")));
  before.erase("notes.txt");
  EXPECT_EQ(files("earlier_1"), before);
  RunResults results;
  EXPECT_EQ(open_results(run("earlier_1/startup"), results), 0);
  EXPECT_EQ(results.last_iteration, 7);
  EXPECT_EQ(results.model.num_layers(), 24);

  ASSERT_EQ(create_and_answer(true), 0);
  EXPECT_EQ(created.earlier_run, run("earlier_2").string());
  EXPECT_EQ(files("earlier_1"), before);
}

TEST_F(CreateInversionTest, An_earlier_inversion_under_other_names_is_found) {
  new_survey();
  store_stations(equally_spaced(3));
  ASSERT_EQ(create(), 0);
  // As another program makes it: a start file of any name, the model in a folder of its own.
  std::string start = files().at("startup");
  start.replace(start.find("inmodel"), 7, "sub/Model");
  start.replace(start.find("occamdat"), 8, "Data.dat");
  std::string model = files().at("inmodel");
  model.replace(model.find("MESH FILE:        MESH"), 22, "MESH FILE:        mesh_topo");
  write("Occam2DStartup", start);
  write("sub/Model", model);
  write("Data.dat", files().at("occamdat"));
  write("mesh_topo", files().at("mesh"));
  for (const char* name : {"startup", "inmodel", "occamdat", "mesh", "MESH"}) {
    fs::remove(run(name));
  }
  ASSERT_EQ(create_and_answer(true), 0);
  EXPECT_EQ(interface->questions.size(), 1U);
  for (const char* name : {"Occam2DStartup", "sub/Model", "Data.dat", "mesh_topo"}) {
    EXPECT_TRUE(fs::exists(run("earlier_1") / name)) << name;
    EXPECT_FALSE(fs::exists(run(name))) << name;
  }
  // A run that needs a file beside its folder would lose it.
  start.replace(start.find("sub/Model"), 9, "../Model1");
  write("ITER_1", start);
  interface.take_messages();
  EXPECT_EQ(create_and_answer(true), -1);
  EXPECT_EQ(
      interface.take_messages(),
      Messages{failed + "the earlier inversion there needs ../Model1, which it would not find once it is "
                        "moved; choose another folder"});
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
