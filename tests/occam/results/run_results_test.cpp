// A run's iterations and responses: found, computed, and found again while the inversion is running.
#include "occam/results/run_results.h"

#include <cmath>
#include <complex>
#include <numbers>

#include "core/absent_value.h"
#include "formats/occam/response_file.h"
#include "occam/results/grid_export.h"
#include "occam/results/iteration_response.h"
#include "occam/results/response_plots.h"
#include "occam/results/run_summary.h"
#include "occam/results/run_view.h"
#include "tests/occam/results/made_results.h"
#include "tests/support/read_only_folder.h"

namespace Module_occam {
namespace {

namespace fs = std::filesystem;

class RunResultsTest : public made::OccamTest {
 protected:
  /// Two looks: a file is taken when it has not changed between them.
  bool settle(RunResults& results) {
    const bool first = refresh_results(results);
    return refresh_results(results) || first;
  }
};

TEST_F(RunResultsTest, Lists_iterations_by_their_own_numbers) {
  const fs::path started_in = fs::current_path();
  RunResults results;
  ASSERT_EQ(open_results(made::write_results(folder), results), 0);
  EXPECT_EQ(results.last_iteration, 3);
  EXPECT_TRUE(results.has(1));
  EXPECT_FALSE(results.has(2));
  EXPECT_EQ(results.iteration_file[3], "iter_3");
  EXPECT_EQ(results.response_file[3], "RESP_iter_3.out");
  EXPECT_EQ(results.iteration_misfit[3], 4.25F);
  EXPECT_EQ(results.iteration_roughness[1], 20.5F);
  EXPECT_EQ(results.iteration_multiplier[1], 5.0F);
  EXPECT_EQ(results.iteration_misfit[2], no_data);
  EXPECT_TRUE(fs::is_directory(folder.folder() / "Brenlox"));
  EXPECT_EQ(fs::current_path(), started_in);
  EXPECT_EQ(control_file_in(folder.folder()).filename(), "startup");
}

TEST_F(RunResultsTest, A_run_without_iterations_shows_the_model_it_starts_with) {
  const std::string start = made::write_results(folder);
  fs::remove(folder.path("ITER_1"));
  fs::remove(folder.path("iter_3"));
  RunResults results;
  ASSERT_EQ(open_results(start, results, Iterations::may_come), 0);
  EXPECT_TRUE(results.has_start_only());
  EXPECT_EQ(results.iteration_misfit[0], no_data);
  RunView view(results);
  EXPECT_EQ(view.section({1.0, 3.0, 2000.0, false}, {600, 300}).rectangles.size(), 5U);
  ASSERT_EQ(view.load_iteration(), 0);
  EXPECT_EQ(view.parameters().size(), 9U);
  EXPECT_EQ(interface.take_messages(), made::Messages{});

  static_cast<void>(folder.write("ITER_1", made::iteration_text(1, made::nine_parameters)));
  ASSERT_TRUE(settle(results));
  EXPECT_FALSE(results.has_start_only());
  EXPECT_FALSE(results.has(0));
  EXPECT_EQ(results.last_iteration, 1);

  fs::remove(folder.path("ITER_1"));
  EXPECT_EQ(open_results(start, results), -1);
  EXPECT_EQ(interface.take_messages(), made::Messages{no_iterations_message});
  static_cast<void>(folder.write("startup", made::iteration_text(0, "")));
  ASSERT_EQ(open_results(start, results, Iterations::may_come), 0);
  EXPECT_FALSE(results.has(0)) << "a start file without parameters has no model to show";
}

// A masked mesh has a model and a start file of its own beside those that it was made from.
TEST_F(RunResultsTest, An_iteration_is_shown_with_the_model_that_it_names) {
  const std::string start = made::write_results(folder);
  static_cast<void>(folder.write(
      "masked_model", made::replaced(made::results_model, "     2     4\n     1     2     2     1\n",
                                     "     2     3\n     1     4     1\n")));
  static_cast<void>(folder.write(
      "iter_3", made::replaced(made::replaced(made::iteration_text(3, " 2.0 1.0 1.5 2.0 2.0\n 2.0 3.0 2.0\n"),
                                              "NO. PARMS:        9", "NO. PARMS:        8"),
                               "MODEL FILE:       inmodel", "MODEL FILE:       masked_model")));
  RunResults results;
  ASSERT_EQ(open_results(start, results), 0);
  RunView view(results);
  EXPECT_EQ(view.section({1.0, 3.0, 2000.0, false}, {600, 300}).rectangles.size(), 4U);
  EXPECT_EQ(view.results().model.num_free_params, 8);
  view.choose_iteration(1);
  EXPECT_EQ(view.section({1.0, 3.0, 2000.0, false}, {600, 300}).rectangles.size(), 5U);
  EXPECT_EQ(view.results().names.model_file, "inmodel");

  RunSummary summary;
  EXPECT_EQ(read_run(folder.folder(), "", summary), 0);
  EXPECT_EQ(summary.names.model_file, "masked_model");
  EXPECT_EQ(summary.model.num_free_params, 8);
  EXPECT_EQ(interface.take_messages(), made::Messages{}) << "each iteration is of its own model";
  fs::remove(folder.path("masked_model"));
  view.choose_iteration(3);
  EXPECT_EQ(view.load_iteration(), -1);
  EXPECT_EQ(view.load_iteration(), -1);
  EXPECT_EQ(interface.take_messages().size(), 1U) << "told once";
}

// Before its inversion the masked mesh has a start, and the iterations are those of the mesh as it was.
TEST_F(RunResultsTest, A_start_file_of_another_name_has_the_iterations_of_its_own_model) {
  const std::string start = made::write_results(folder);
  static_cast<void>(folder.write(
      "hill_model", made::replaced(made::results_model, "     2     4\n     1     2     2     1\n",
                                   "     2     3\n     1     4     1\n")));
  const auto of_hill = [](int number) {
    return made::replaced(made::replaced(made::iteration_text(number, " 2.0 1.0 1.5 2.0 2.0\n 2.0 3.0 2.0\n"),
                                         "NO. PARMS:        9", "NO. PARMS:        8"),
                          "MODEL FILE:       inmodel", "MODEL FILE:       ./Hill_model");
  };
  const std::string hill = folder.write("hill_startup", made::replaced(of_hill(0), "./Hill", "hill"));
  RunResults results;
  EXPECT_EQ(open_results(hill, results), -1);
  EXPECT_EQ(interface.take_messages(),
            made::Messages{"No iteration files were found at the specified location "
                           "for the model hill_model"});
  ASSERT_EQ(open_results(hill, results, Iterations::may_come), 0);
  EXPECT_TRUE(results.has_start_only());
  EXPECT_EQ(results.last_iteration, 0);
  RunView view(results);
  ASSERT_EQ(view.load_iteration(), 0);
  EXPECT_EQ(view.parameters().size(), 8U);
  EXPECT_FALSE(settle(results)) << "nothing has changed";
  RunSummary summary;
  ASSERT_EQ(read_run(folder.folder(), "hill_startup", summary), 0);
  EXPECT_TRUE(summary.iterations.empty());

  // Its iterations come; "startup" stands for the folder, with all of them.
  static_cast<void>(folder.write("ITER_2", of_hill(2)));
  ASSERT_TRUE(settle(results));
  EXPECT_FALSE(results.has_start_only());
  EXPECT_EQ(results.last_iteration, 2);
  EXPECT_FALSE(results.has(1));
  ASSERT_EQ(open_results(start, results), 0);
  EXPECT_TRUE(results.has(1) && results.has(2) && results.has(3));
  EXPECT_EQ(interface.take_messages(), made::Messages{});
}

TEST_F(RunResultsTest, Tells_what_can_not_be_opened) {
  RunResults results;
  const std::string start = made::write_results(folder);
  static_cast<void>(folder.write("ITER_9", "FORMAT:           OCCAMITER_1.0\n"));
  EXPECT_EQ(open_results(start, results), 0);
  const made::Messages shown = interface.take_messages();
  ASSERT_EQ(shown.size(), 2U);
  EXPECT_EQ(shown[1], "Error -1 occurred while calculating the response for ITER_9");
  EXPECT_EQ(results.last_iteration, 3);

  static_cast<void>(
      folder.write("inmodel", made::replaced(made::results_model, "STATICS FILE:     none", "")));
  EXPECT_EQ(open_results(start, results), -1);
  EXPECT_EQ(interface.take_messages(), made::Messages{"inmodel has an empty line in place of a text"});
  static_cast<void>(folder.write("inmodel", made::results_model));
  static_cast<void>(folder.write("ITER_9", made::iteration_text(513, made::nine_parameters)));
  EXPECT_EQ(open_results(start, results), -1);
  EXPECT_EQ(interface.take_messages().size(), 1U);

  for (const char* name : {"ITER_9", "ITER_1", "iter_3"}) {
    fs::remove(folder.folder() / name);
  }
  EXPECT_EQ(open_results(start, results), -1);
  EXPECT_EQ(interface.take_messages(),
            made::Messages{"No iteration files were found at the specified location"});
}

TEST_F(RunResultsTest, Takes_an_iteration_when_it_is_no_longer_being_written) {
  RunResults opened;
  ASSERT_EQ(open_results(made::write_results(folder), opened), 0);
  RunView view(opened);
  const std::string whole = made::iteration_text(4, made::nine_parameters);
  static_cast<void>(folder.write("ITER_4", whole.substr(0, whole.size() - 20)));
  EXPECT_FALSE(view.refresh());
  static_cast<void>(folder.write("ITER_4", whole));  // it has grown since the last look
  EXPECT_FALSE(view.refresh());
  EXPECT_TRUE(view.refresh());
  EXPECT_EQ(view.results().last_iteration, 4);
  EXPECT_FALSE(view.refresh());

  view.choose_iteration(4);
  EXPECT_EQ(view.load_iteration(), 0);
  EXPECT_EQ(view.parameters().front(), 2.0);
  // The run starts again with other resistivities: what is on show follows the file.
  static_cast<void>(folder.write("ITER_4", made::iteration_text(4, " 1.25 1 1 1 1 1 1 1 1 \n")));
  EXPECT_EQ(view.load_iteration(), 0);
  EXPECT_EQ(view.parameters().front(), 1.25);
  // Its files go; the highest number is one that is there.
  fs::remove(folder.folder() / "ITER_4");
  EXPECT_TRUE(view.refresh());
  EXPECT_EQ(view.current_iteration(), 3);
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST_F(RunResultsTest, A_half_written_iteration_is_reported_once_and_read_when_it_is_whole) {
  RunResults opened;
  ASSERT_EQ(open_results(made::write_results(folder), opened), 0);
  RunView view(opened);
  static_cast<void>(folder.write("iter_3", made::iteration_text(3, " 2.0 1.0")));
  EXPECT_EQ(view.load_iteration(), -1);
  EXPECT_EQ(view.load_iteration(), -1);
  EXPECT_TRUE(view.parameters().empty());
  EXPECT_EQ(interface.take_messages().size(), 1U);
  static_cast<void>(folder.write("iter_3", made::iteration_text(3, made::nine_parameters)));
  EXPECT_EQ(view.load_iteration(), 0);
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST_F(RunResultsTest, Makes_the_response_that_the_inversion_has_not_left) {
  RunResults opened;
  ASSERT_EQ(open_results(made::write_results(folder), opened), 0);
  RunView view(opened);
  ASSERT_EQ(view.load_response(), 0);
  const fs::path made_file = folder.folder() / "Brenlox" / "RESP_iter_3.out";
  EXPECT_TRUE(fs::exists(made_file));
  const OccamResponse& response = view.response();
  EXPECT_EQ(response.resp_sites(), 2);
  EXPECT_EQ(response.resp_site_names[0], "station_110.0");
  const OccamResponse::Row row = response.row(DataType::tm_resistivity, 1, 1);
  EXPECT_FLOAT_EQ(row[0], 2.0F);
  EXPECT_NEAR(row[1], row[0] - row[2], 1e-5);
  EXPECT_NEAR(row[3], row[1] / 0.1F, 1e-3);
  EXPECT_GT(row[2], 1.0F);  // between the resistivities of the model
  EXPECT_LT(row[2], 3.0F);
  EXPECT_TRUE(is_absent(static_cast<double>(response.value(modelled, DataType::tm_phase, 2, 1))));

  // Ours goes before one that the inversion leaves later, but not once the iteration is written again.
  static_cast<void>(folder.write("RESP_iter_3.out", file_contents(made_file.string())));
  EXPECT_EQ(find_response(opened, 3), made_file);
  fs::last_write_time(folder.folder() / "iter_3", fs::last_write_time(made_file) + std::chrono::seconds(5));
  EXPECT_EQ(find_response(opened, 3), folder.folder() / "RESP_iter_3.out");

  // What the mesh lacks is reported with the first response of a run.
  const made::Messages shown = interface.take_messages();
  ASSERT_EQ(shown.size(), 1U);
  EXPECT_NE(shown[0].find("\nThe mesh ends 0."), std::string::npos) << shown[0];
  view.choose_iteration(1);
  ASSERT_EQ(view.load_response(), 0);
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST_F(RunResultsTest, The_response_is_of_all_data_types_that_can_be_computed) {
  const std::string start = made::write_results(folder);
  std::vector<int> types = made::computed_types;
  types.insert(types.end(), {7, 12, 300});
  static_cast<void>(folder.write("occamdat", made::data_of_types(types)));
  RunResults opened;
  ASSERT_EQ(open_results(start, opened), 0);
  RunView view(opened);
  ASSERT_EQ(view.load_response(), 0);
  const made::Messages shown = interface.take_messages();
  ASSERT_EQ(shown.size(), 2U);
  EXPECT_EQ(shown[0], "12 data have types that can't be computed (7, 12, 300); the response leaves them out");
  const OccamResponse& response = view.response();
  EXPECT_EQ(response.rows().size(), 4 * made::computed_types.size());
  // What is read from the file has the digits that it takes to make one type from another.
  const double omega_mu = 2.0 * std::numbers::pi * 1.0 * 4e-7 * std::numbers::pi;
  for (int site = 1; site <= 2; ++site) {
    const auto value = [&](DataType type) {
      return static_cast<double>(response.value(modelled, type, site, 1));
    };
    const std::complex<double> zxy(value(DataType::te_real_impedance),
                                   value(DataType::te_imaginary_impedance));
    const std::complex<double> zyx(value(DataType::tm_real_impedance),
                                   value(DataType::tm_imaginary_impedance));
    EXPECT_GT(zxy.real(), 0.0);
    EXPECT_LT(zyx.real(), 0.0);  // third quadrant
    EXPECT_LT(zyx.imag(), 0.0);
    EXPECT_NEAR(std::log10(std::norm(zxy) / omega_mu), value(DataType::te_resistivity), 2e-6);
    EXPECT_NEAR(std::log10(std::norm(zyx) / omega_mu), value(DataType::tm_resistivity), 2e-6);
    EXPECT_NEAR(std::log10(value(DataType::te_linear_resistivity)), value(DataType::te_resistivity), 2e-6);
    EXPECT_NEAR(std::log10(value(DataType::tm_linear_resistivity)), value(DataType::tm_resistivity), 2e-6);
    EXPECT_NEAR(std::arg(zxy) * 180.0 / std::numbers::pi, value(DataType::te_phase), 1e-4);
    EXPECT_NEAR(std::arg(-zyx) * 180.0 / std::numbers::pi, value(DataType::tm_phase), 1e-4);
    EXPECT_NE(value(DataType::te_real_tipper), 0.0);
    EXPECT_LT(std::abs(value(DataType::te_real_tipper)), 1.0);
    EXPECT_FLOAT_EQ(response.value(misfit, DataType::te_real_impedance, site, 1),
                    (1.5F - response.value(modelled, DataType::te_real_impedance, site, 1)) / 0.25F);
  }
}

TEST_F(RunResultsTest, A_run_without_data_that_can_be_computed_has_no_response) {
  const std::string start = made::write_results(folder);
  static_cast<void>(folder.write("occamdat", made::data_of_types({7})));
  RunResults opened;
  ASSERT_EQ(open_results(start, opened), 0);
  RunView view(opened);
  EXPECT_EQ(view.load_response(), -1);
  EXPECT_EQ(
      interface.take_messages(),
      made::Messages{"An error occurred while calculating the response: the data file holds no row of a "
                     "data type that can be computed"});
}

TEST_F(RunResultsTest, An_iteration_of_another_model_is_refused) {
  const std::string start = made::write_results(folder);
  static_cast<void>(
      folder.write("iter_3", made::replaced(made::iteration_text(3, made::nine_parameters + " 2.0\n"),
                                            "NO. PARMS:        9", "NO. PARMS:        10")));
  const std::string refusal =
      "iter_3 has 10 parameters, the model has 9 free blocks; they are not of the same run";
  RunResults opened;
  ASSERT_EQ(open_results(start, opened), 0);
  RunView view(opened);
  EXPECT_TRUE(view.section({1.0, 3.0, 2000.0, false}, {600, 300}).rectangles.empty());
  EXPECT_EQ(interface.take_messages(), made::Messages{refusal});
  EXPECT_EQ(view.load_response(), -1);
  EXPECT_EQ(write_grids(view), -1);
  EXPECT_FALSE(fs::exists(folder.folder() / "Brenlox" / "iter_3.xyz"));
  EXPECT_TRUE(interface.take_messages().empty());  // told before
  view.choose_iteration(1);
  EXPECT_EQ(view.load_iteration(), 0);

  RunSummary summary;
  EXPECT_EQ(read_run(folder.folder(), "", summary), 0);
  EXPECT_EQ(summary.iterations.size(), 2U);
  EXPECT_EQ(interface.take_messages(), made::Messages{refusal});
}

TEST_F(RunResultsTest, Free_static_shifts_stand_behind_the_blocks) {
  const std::string start = made::write_results(folder);
  RunResults plain;
  ASSERT_EQ(open_results(start, plain), 0);
  RunView without(plain);
  ASSERT_EQ(without.load_response(), 0);
  const auto modelled_at = [](const RunView& view, DataType type, int site) {
    return view.response().value(modelled, type, site, site);
  };

  static_cast<void>(folder.write(
      "inmodel", made::replaced(made::results_model, "STATICS FILE:     none", "STATICS FILE:     shifts")));
  static_cast<void>(folder.write("shifts",
                                 "FORMAT:           OCCAM2MTSHIFT_1.0\nof the line\nby hand\n"
                                 "CONSTRAINT TYPE:  0\nERROR:            0.1\nNO. SHIFTS:       2\n"
                                 "SITE,TYPE,SHIFT,FREE\n 1 5 0.25 0\n 2 5 0.0 1\n"));
  const std::string eleven = made::nine_parameters + " -0.5\n";
  for (const auto& [name, number] : {std::pair("ITER_1", 1), std::pair("iter_3", 3)}) {
    static_cast<void>(folder.write(
        name,
        made::replaced(made::iteration_text(number, number == 3 ? eleven : made::nine_parameters),
                       "NO. PARMS:        9", number == 3 ? "NO. PARMS:        10" : "NO. PARMS:        9")));
  }
  fs::remove(folder.folder() / "Brenlox" / "RESP_iter_3.out");
  interface.take_messages();
  RunResults opened;
  ASSERT_EQ(open_results(start, opened), 0);
  RunView view(opened);
  ASSERT_EQ(view.load_response(), 0);
  EXPECT_EQ(view.parameters().size(), 9U);
  EXPECT_NEAR(modelled_at(view, DataType::tm_resistivity, 1),
              modelled_at(without, DataType::tm_resistivity, 1) + 0.25F, 1e-5);
  EXPECT_NEAR(modelled_at(view, DataType::tm_resistivity, 2),
              modelled_at(without, DataType::tm_resistivity, 2) - 0.5F, 1e-5);
  EXPECT_EQ(modelled_at(view, DataType::tm_phase, 2), modelled_at(without, DataType::tm_phase, 2));
  interface.take_messages();
  view.choose_iteration(1);
  EXPECT_EQ(view.load_iteration(), -1);
  EXPECT_EQ(
      interface.take_messages(),
      made::Messages{"ITER_1 has 9 parameters, the model has 9 free blocks and 1 free static shifts; they "
                     "are not of the same run"});
}

TEST_F(RunResultsTest, A_run_that_can_not_be_written_is_shown_and_its_response_kept_in_memory) {
  const std::string start = made::write_results(folder);
  OccamResponse written;
  {
    RunResults opened;
    ASSERT_EQ(open_results(start, opened), 0);
    RunView view(opened);
    ASSERT_EQ(view.load_response(), 0);
    written = view.response();
    fs::remove_all(folder.folder() / "Brenlox");
  }
  const TemporaryFolder elsewhere;
  fs::permissions(elsewhere.folder(), fs::perms::all);
  interface.take_messages();
  {
    const ReadOnlyFolder read_only(folder.folder());
    RunResults opened;
    ASSERT_EQ(open_results(start, opened), 0);
    EXPECT_TRUE(interface.take_messages().empty());
    RunView view(opened);
    EXPECT_FALSE(view.can_write());
    ASSERT_EQ(view.load_response(), 0);
    EXPECT_EQ(interface.take_messages().size(), 1U);  // what the mesh lacks
    const OccamResponse& kept = view.response();
    EXPECT_EQ(kept.resp_site_names, written.resp_site_names);
    EXPECT_EQ(kept.resp_frequencies, written.resp_frequencies);
    ASSERT_EQ(kept.rows().size(), written.rows().size());
    for (std::size_t row = 0; row < kept.rows().size(); ++row) {
      EXPECT_EQ(kept.rows()[row].type, written.rows()[row].type);
      for (std::size_t k = 0; k < 4; ++k) {
        EXPECT_NEAR(kept.rows()[row].values[k], written.rows()[row].values[k], 2e-6) << row << ' ' << k;
      }
    }
    view.write_to(elsewhere.folder() / "grids");
    EXPECT_TRUE(view.can_write());
    view.write_to(folder.folder());  // the run's own: beside its files they would be taken for iterations
    EXPECT_EQ(view.results().output_folder, view.results().folder / "Brenlox");
    view.write_to(elsewhere.folder() / "grids");
    EXPECT_EQ(write_grids(view), 0);
    EXPECT_EQ(interface.take_messages(), made::Messages{"Grid file has been written. The files are in " +
                                                        (elsewhere.folder() / "grids").string()});
  }
  EXPECT_TRUE(fs::exists(elsewhere.folder() / "grids" / "iter_3_data_fit.dat"));
  EXPECT_FALSE(fs::exists(folder.folder() / "Brenlox"));
}

TEST_F(RunResultsTest, A_part_that_can_not_be_read_is_one_message) {
  made::write_results(folder);
  RunSummary summary;
  const auto expect_one = [&](const char* name, const std::string& contents, const std::string& message) {
    static_cast<void>(folder.write(name, contents));
    EXPECT_EQ(read_run(folder.folder(), "", summary), -1);
    EXPECT_EQ(interface.take_messages(), made::Messages{message});
  };
  expect_one("inmodel", "no model\n",
             "inmodel can't be read as a model file: The file does not have the correct format");
  expect_one("inmodel", made::replaced(made::results_model, "STATICS FILE:     none", ""),
             "inmodel can't be read as a model file: empty line");
  expect_one("occamdat", "no data\n",
             "occamdat can't be read as a data file: The file does not have the correct format");
  expect_one("startup", "no start\n",
             "startup can't be read as a start file: The file does not have the correct format");
}

TEST_F(RunResultsTest, A_half_written_response_is_reported_once_and_read_when_it_is_whole) {
  RunResults opened;
  ASSERT_EQ(open_results(made::write_results(folder), opened), 0);
  RunView view(opened);
  const std::string row = "     1     1     5     0     2.0     0.5     5.0\n";
  static_cast<void>(folder.write("RESP_iter_3.out", row + row));  // of four
  EXPECT_EQ(view.load_response(), -1);
  EXPECT_EQ(view.load_response(), -1);
  EXPECT_EQ(interface.take_messages().size(), 1U);
  EXPECT_FALSE(view.refresh());
  static_cast<void>(folder.write("RESP_iter_3.out", row + row + row + row));
  EXPECT_FALSE(view.refresh());
  EXPECT_TRUE(view.refresh());
  EXPECT_EQ(view.load_response(), 0);
  EXPECT_FLOAT_EQ(view.response().value(modelled, DataType::tm_resistivity, 1, 1), 1.5F);
  EXPECT_FALSE(view.refresh());
}

TEST_F(RunResultsTest, A_response_without_header_is_read_with_the_data_file_that_the_run_names) {
  made::write_results(folder);
  const std::string start = folder.write(
      "startup", made::replaced(made::iteration_text(0, made::nine_parameters), "occamdat", "line_7"));
  static_cast<void>(folder.write("line_7", made::data));
  // What is left of an earlier run in the folder has other sites and frequencies.
  static_cast<void>(folder.write(
      "occamdat", made::replaced(made::replaced(made::data, "110.0\n       130.0", "510.0\n       530.0"),
                                 "      1.0000\n     10.0000", "      2.0000\n     20.0000")));
  std::string rows;
  for (const char* place : {"1 1 5", "1 1 6", "2 2 5", "2 2 6"}) {
    rows += std::string(place) + " 0 2.0 0.5 5.0\n";
  }
  static_cast<void>(folder.write("RESP_iter_3.out", rows));
  RunResults opened;
  ASSERT_EQ(open_results(start, opened), 0);
  RunView view(opened);
  ASSERT_EQ(view.load_response(), 0);
  EXPECT_EQ(view.response().resp_offsets, (std::vector<double>{110.0, 130.0}));
  EXPECT_EQ(view.response().resp_frequencies, (std::vector<double>{1.0, 10.0}));
  // Once the named one has gone, the usual one has to do.
  fs::remove(folder.folder() / "line_7");
  static_cast<void>(folder.write("RESP_iter_3.out", rows + " "));
  ASSERT_EQ(view.load_response(), 0);
  EXPECT_EQ(view.response().resp_offsets, (std::vector<double>{510.0, 530.0}));
}

TEST_F(RunResultsTest, A_stopped_response_leaves_no_file) {
  RunResults opened;
  ASSERT_EQ(open_results(made::write_results(folder), opened), 0);
  RunView view(opened);
  interface->stop = [] { return true; };
  EXPECT_EQ(view.load_response(), -1);
  EXPECT_FALSE(view.response_ready());
  EXPECT_FALSE(fs::exists(folder.folder() / "Brenlox" / "RESP_iter_3.out"));
  view.choose_iteration(2);
  EXPECT_EQ(view.load_response(), -1);
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST_F(RunResultsTest, The_field_runs_response_is_that_of_the_inversion) {
  const fs::path field = fs::path(BRENLOX_FIELD_DATA) / "occam2d";
  if (!fs::exists(field)) {
    GTEST_SKIP() << "no field data beside the checkout";
  }
  for (const fs::directory_entry& entry : fs::directory_iterator(field)) {
    fs::copy_file(entry.path(), folder.folder() / entry.path().filename());
  }
  RunResults opened;
  ASSERT_EQ(open_results(folder.folder() / "Occam2DStartup", opened), 0);
  RunView view(opened);
  ASSERT_EQ(view.current_iteration(), 12);
  ASSERT_EQ(view.load_response(), 0);
  const OccamResponse left = view.response();
  // The log of the run gives this misfit of all data.
  EXPECT_NEAR(misfit_table(left).of_all().rms(), 0.9999997, 1e-4);
  EXPECT_EQ(misfit_table(left).data_types, (std::vector{DataType::te_resistivity, DataType::te_phase,
                                                        DataType::tm_resistivity, DataType::tm_phase}));
  fs::remove(folder.folder() / "RESP12.resp");
  ASSERT_EQ(view.load_response(), 0);
  const OccamResponse& ours = view.response();
  ASSERT_EQ(ours.rows().size(), left.rows().size());
  for (std::size_t i = 0; i < left.rows().size(); ++i) {
    const bool phase = find_meaning(left.rows()[i].type)->quantity == Quantity::phase;
    EXPECT_EQ(ours.rows()[i].type, left.rows()[i].type);
    EXPECT_NEAR(ours.rows()[i].values[2], left.rows()[i].values[2], phase ? 0.003 : 2e-5) << i;
  }
  const made::Messages shown = interface.take_messages();
  ASSERT_EQ(shown.size(), 1U);
  EXPECT_NE(shown[0].find("0.20 skin depths thick at 78.125 Hz"), std::string::npos) << shown[0];
}

}  // namespace
}  // namespace Module_occam
