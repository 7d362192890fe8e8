#include <filesystem>

#include "core/text_fields.h"
#include "formats/occam/start_file.h"
#include "occam/inversion/block_resolution.h"
#include "occam/inversion/inversion_files.h"
#include "occam/inversion/run_inversion.h"
#include "occam/inversion/run_problem.h"
#include "occam/results/iteration_response.h"
#include "occam/results/run_view.h"
#include "tests/formats/occam/made_run.h"
#include "tests/occam/inversion/made_inversion.h"

namespace fs = std::filesystem;
using namespace Module_occam;
using numerics::occam_inversion::Derivatives;
using numerics::occam_inversion::Ending;
using numerics::occam_inversion::Modelled;

namespace {

constexpr double true_shift = 0.3;  // decades, of the TE resistivities of site 2

double shift_of(const StaticsFile& statics, int site, int type) {
  for (const StaticShift& shift : statics.shifts) {
    if (shift.site_number == site && shift.data_type == type) {
      return shift.shift;
    }
  }
  ADD_FAILURE() << "no shift of site " << site;
  return 0.0;
}

class StaticShifts : public ::testing::Test {
 protected:
  StaticShifts() { made::write_inversion(folder, true_shift); }

  void write_statics(ShiftConstraint constraint, double error, const std::vector<StaticShift>& shifts,
                     int parameters) const {
    static_cast<void>(folder.write("inmodel", made::inverted_model("statics")));
    static_cast<void>(folder.write("statics", shift_file_text({constraint, error, shifts})));
    static_cast<void>(folder.write("startup", made::inverted_start("20", "1.0", parameters)));
  }
  [[nodiscard]] ObservedData data() const { return read_data_file(folder.path("occamdat")); }
  [[nodiscard]] OccamModel model() const {
    OccamData sites;
    sites.site_offsets = {200.0F, 600.0F, 1400.0F};
    return read_model_file(folder.folder(), "inmodel", sites);
  }
  /// Looks for shifts, three iterations. @return how
  [[nodiscard]] InversionOptions found_before() const {
    InversionOptions options;
    options.static_shift = 0.2;
    options.iterations = 3;
    (void)run_inversion(folder.folder(), options, {});
    return options;
  }
  [[nodiscard]] std::string refusal(const InversionOptions& options = {}) const {
    try {
      (void)run_inversion(folder.folder(), options, {});
    } catch (const std::exception& failure) {
      return failure.what();
    }
    return {};
  }

  TemporaryFolder folder;
};

}  // namespace

TEST_F(StaticShifts, Are_found_and_stand_beside_each_iteration) {
  InversionOptions options;
  options.static_shift = 0.2;
  const InversionReport report = run_inversion(folder.folder(), options, {});
  EXPECT_LE(report.steps.back().rms, 1.01) << report.reason;
  EXPECT_NEAR(shift_of(report.static_shifts, 2, 1) - shift_of(report.static_shifts, 2, 5), true_shift, 0.1);
  EXPECT_EQ(report.static_shifts.shifts.size(), 6U);
  const int last = report.steps.back().iteration;
  EXPECT_EQ(report.static_shift_file, "SHIFT" + iteration_file_name(last).substr(4, 2) + ".shift");
  EXPECT_EQ(read_start_file(folder.path(iteration_file_name(last))).parameters.size(), 36U);
  EXPECT_NE(file_contents(folder.path("LogFile.logfile")).find("SITE 2 DATA TYPE 1 SHIFT ="),
            std::string::npos);

  // Without them the same data end elsewhere.
  options = {};
  options.may_move_earlier = true;
  const InversionReport without = run_inversion(folder.folder(), options, {});
  EXPECT_TRUE(fs::exists(folder.path("earlier_1/" + report.static_shift_file)));
  EXPECT_FALSE(fs::exists(folder.path("SHIFT00.shift")));
  EXPECT_TRUE(without.static_shift_file.empty());

  // A model file that names them has the response of the iteration that they were found with.
  fs::copy_file(folder.path("earlier_1/" + report.static_shift_file), folder.path("found"));
  static_cast<void>(folder.write("inmodel", made::inverted_model("found")));
  fs::copy_file(folder.path("earlier_1/" + iteration_file_name(last)), folder.path("again"));
  options.from = "again";
  options.iterations = 0;
  const InversionReport named = run_inversion(folder.folder(), options, {});
  // The data that draw shifts to 0 no longer count.
  EXPECT_NEAR(named.steps.front().rms, report.steps.back().rms, 0.1 * report.steps.back().rms);
}

TEST_F(StaticShifts, Are_gone_on_with_also_where_nobody_asks_for_them_again) {
  InversionOptions options;
  options.static_shift = 0.2;
  const InversionReport unbroken = run_inversion(folder.folder(), options, {});
  const int last = unbroken.steps.back().iteration;
  const std::string response = file_contents(folder.path(response_name_of(last)));
  for (const bool asks : {true, false}) {
    SCOPED_TRACE(asks);
    InversionOptions again;
    again.from = "ITER02.iter";
    again.may_move_earlier = true;
    again.static_shift = asks ? options.static_shift : std::nullopt;
    const InversionReport rest = run_inversion(folder.folder(), again, {});
    EXPECT_NEAR(rest.steps.front().rms, unbroken.steps[2].rms, 1e-5);
    EXPECT_EQ(rest.steps.back().iteration, last);
    made::expect_same_numbers(file_contents(folder.path(response_name_of(last))), response,
                              made::response_part);
    for (std::size_t shift = 0; shift < rest.static_shifts.shifts.size(); ++shift) {
      EXPECT_NEAR(rest.static_shifts.shifts[shift].shift, unbroken.static_shifts.shifts[shift].shift, 1e-5);
    }
  }
}

TEST_F(StaticShifts, That_were_found_are_in_the_response_of_their_iteration) {
  (void)found_before();
  RunResults results;
  ASSERT_EQ(open_results(folder.path("startup"), results), 0);
  RunView view(results);
  ASSERT_EQ(view.load_iteration(), 0);
  const auto computed = compute_response(view.results(), view.iteration());
  ASSERT_TRUE(computed);
  const ModelledData& modelled = computed->modelled;
  made::expect_same_numbers(plain_response_text(computed->data, {}, modelled.modelled),
                            file_contents(folder.path("RESP03.resp")), 2e-3);
  RecordingInterface interface;
  static_cast<void>(folder.write("SHIFT02.shift", "rubbish\n"));
  view.choose_iteration(2);
  EXPECT_EQ(view.load_iteration(), -1);
  const made::Messages messages = interface.take_messages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_TRUE(messages[0].starts_with("The static shifts that were found can't be read: ")) << messages[0];
}

TEST_F(StaticShifts, That_were_found_make_standard_errors_larger_than_known_ones) {
  (void)found_before();
  const auto found = block_resolution(folder.folder(), "ITER03.iter", 1, {});
  fs::rename(folder.path("SHIFT03.shift"), folder.path("found"));
  static_cast<void>(folder.write("inmodel", made::inverted_model("found")));
  const auto known = block_resolution(folder.folder(), "ITER03.iter", 1, {});
  ASSERT_TRUE(found && known);
  ASSERT_EQ(found->standard_errors.size(), known->standard_errors.size());
  double larger = 0.0;
  for (std::size_t block = 0; block < found->standard_errors.size(); ++block) {
    larger = std::max(larger, found->standard_errors[block] / known->standard_errors[block]);
    EXPECT_DOUBLE_EQ(found->sensitivity[block], known->sensitivity[block]);
  }
  EXPECT_GT(larger, 1.05);
}

TEST_F(StaticShifts, In_a_file_named_like_that_of_an_iteration_stay_the_model_s) {
  const InversionOptions asks = found_before();
  const std::string shifts = file_contents(folder.path("SHIFT02.shift"));
  static_cast<void>(folder.write("inmodel", made::inverted_model("SHIFT02.shift")));
  InversionOptions options;
  options.iterations = 1;
  options.may_move_earlier = true;
  EXPECT_EQ(run_inversion(folder.folder(), options, {}).earlier_folder, "earlier_1");
  EXPECT_TRUE(fs::exists(folder.path("earlier_1/SHIFT03.shift")));
  EXPECT_EQ(file_contents(folder.path("SHIFT02.shift")), shifts);
  // Known by now, they are no longer looked for, also not by a run that goes on from their iteration.
  options.go_on = true;
  (void)run_inversion(folder.folder(), options, {});
  EXPECT_TRUE(run_inversion(folder.folder(), options, {}).static_shift_file.empty());
  EXPECT_EQ(file_contents(folder.path("SHIFT02.shift")), shifts);

  static_cast<void>(
      folder.write("SHIFT02.shift", shift_file_text({ShiftConstraint::none, 0.0, {{2, 1, 0.3, false}}})));
  InversionOptions anew = asks;
  anew.may_move_earlier = true;
  EXPECT_EQ(refusal(anew),
            "the model's statics file SHIFT02.shift would be replaced by that of iteration 2; give "
            "it another name");
  EXPECT_TRUE(fs::exists(folder.path("ITER02.iter")));
}

TEST_F(StaticShifts, Are_looked_for_only_where_there_are_log10_resistivities) {
  const InversionOptions asks = found_before();
  std::string rows = file_contents(folder.path("occamdat"));
  for (int site = 1; site <= 3; ++site) {
    for (int frequency = 1; frequency <= 3; ++frequency) {
      const std::string place = pad_field(std::to_string(site), 6) + pad_field(std::to_string(frequency), 12);
      rows = made::replaced(rows, place + pad_field("1", 8), place + pad_field("9", 8));
      rows = made::replaced(rows, place + pad_field("5", 8), place + pad_field("10", 8));
    }
  }
  static_cast<void>(folder.write("occamdat", rows));
  InversionOptions on;
  on.go_on = true;
  on.iterations = 1;
  EXPECT_TRUE(run_inversion(folder.folder(), on, {}).static_shift_file.empty());
  on.static_shift = asks.static_shift;
  EXPECT_EQ(refusal(on), "the run has no log10 resistivities whose static shifts could be looked for");
}

TEST_F(StaticShifts, Of_the_model_add_constraints_behind_the_rows) {
  const std::vector<StaticShift> shifts{
      {1, 1, 0.0, true}, {2, 1, 0.1, true}, {2, 5, -0.3, true}, {3, 5, 0.25, false}};
  struct Case {
    ShiftConstraint constraint;
    std::vector<double> data;                  // of the sums
    std::vector<std::vector<double>> factors;  // of the free shifts in each
  };
  const std::vector<Case> cases{
      {ShiftConstraint::none, {}, {}},
      {ShiftConstraint::sum_of_all, {-0.2}, {{1, 1, 1}}},
      {ShiftConstraint::sum_of_each_mode, {0.1, -0.3}, {{1, 1, 0}, {0, 0, 1}}},
  };
  const auto modelled_of = [&](const RunProblem& run) {
    std::vector<double> parameters(36, 2.0);
    for (const double shift : {0.01, 0.02, 0.04}) {
      parameters.push_back(shift);
    }
    return run.problem().respond(parameters, Derivatives::yes);
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(static_cast<int>(each.constraint));
    write_statics(each.constraint, 0.05, shifts, 39);
    const ObservedData observed = data();
    const OccamModel shifted = model();
    const RunProblem run(shifted, observed, {1, std::nullopt}, {});
    ASSERT_EQ(run.parameters(), 39U);
    const auto problem = run.problem();
    ASSERT_EQ(problem.data.size(), 36U + each.data.size());
    const Modelled modelled = modelled_of(run);
    for (std::size_t sum = 0; sum < each.data.size(); ++sum) {
      EXPECT_NEAR(problem.data[36 + sum], each.data[sum], 1e-12);
      EXPECT_DOUBLE_EQ(problem.errors[36 + sum], 0.05);
      double expected = 0.0;
      for (std::size_t shift = 0; shift < 3; ++shift) {
        const double factor = each.factors[sum][shift];
        expected += factor * std::vector<double>{0.01, 0.02, 0.04}[shift];
        EXPECT_DOUBLE_EQ(modelled.sensitivities[(36 + sum) * 39 + 36 + shift], factor);
      }
      EXPECT_NEAR(modelled.values[36 + sum], expected, 1e-12);
    }
    // Against the same model without shifts: 0.02 in the TE rows of site 2, 0.25 in the TM rows of site 3.
    OccamModel plain = shifted;
    plain.static_shifts.clear();
    const RunProblem bare(plain, observed, {1, std::nullopt}, {});
    const Modelled unshifted = bare.problem().respond(std::vector<double>(36, 2.0), Derivatives::no);
    for (std::size_t row = 0; row < 36; ++row) {
      const DataRow& entry = observed.rows[row];
      const int type = static_cast<int>(entry.type);
      double expected = 0.0;
      for (std::size_t shift = 0; shift < shifts.size(); ++shift) {
        if (shifts[shift].site_number == entry.site_number && shifts[shift].data_type == type) {
          expected = std::vector<double>{0.01, 0.02, 0.04, 0.25}[shift];
        }
      }
      EXPECT_NEAR(modelled.values[row] - unshifted.values[row], expected, 1e-9) << row;
    }
  }
}

TEST_F(StaticShifts, Of_the_model_are_listed_by_iterations_and_their_sums_by_responses) {
  write_statics(ShiftConstraint::sum_of_all, 0.05, {{1, 1, 0.0, true}, {2, 1, 0.0, true}, {3, 1, 0.0, true}},
                39);
  InversionOptions options;
  options.iterations = 3;
  const InversionReport report = run_inversion(folder.folder(), options, {});
  EXPECT_EQ(read_start_file(folder.path("ITER03.iter")).parameters.size(), 39U);
  const std::string response = file_contents(folder.path("RESP03.resp"));
  EXPECT_EQ(std::count(response.begin(), response.end(), '\n'), 37);
  const std::size_t last_line = response.rfind('\n', response.size() - 2) + 1;
  EXPECT_EQ(numeric_value(response.substr(last_line)), 0.0);  // of no site
  EXPECT_LT(report.steps.back().rms, report.steps.front().rms);
  EXPECT_TRUE(report.static_shift_file.empty());
}

TEST_F(StaticShifts, That_can_t_be_found_are_refused) {
  struct Case {
    std::vector<StaticShift> shifts;
    double error;
    int parameters;
    const char* word;
  };
  const std::vector<Case> cases{
      {{{1, 1, 0.0, true}, {1, 1, 0.0, true}}, 0.1, 38, "stands twice"},
      {{{1, 2, 0.0, true}}, 0.1, 37, "no log10 resistivity"},
      {{{9, 1, 0.0, true}}, 0.1, 37, "is free and has no data"},
      {{{1, 1, 0.0, true}}, 0.0, 37, "an error of 0"},
      {{{1, 1, 0.0, true}}, 0.1, 36, "36 free blocks and 1 free static shifts"},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.word);
    write_statics(ShiftConstraint::sum_of_all, each.error, each.shifts, each.parameters);
    EXPECT_NE(refusal().find(each.word), std::string::npos) << refusal();
    EXPECT_FALSE(fs::exists(folder.path("ITER00.iter")));
  }
  write_statics(ShiftConstraint::none, 0.1, {{1, 1, 0.0, true}}, 37);
  static_cast<void>(folder.write("statics", made::replaced(file_contents(folder.path("statics")),
                                                           "CONSTRAINT TYPE:  0", "CONSTRAINT TYPE:  3")));
  EXPECT_NE(refusal().find("constraint of type 3"), std::string::npos);
}

// Limits are those of resistivities; a shift may be below them.
TEST_F(StaticShifts, Are_not_held_by_the_limits_of_resistivities) {
  static_cast<void>(
      folder.write("startup", made::replaced(made::inverted_start("4"), "DEBUG LEVEL:      1\n",
                                             "DEBUG LEVEL:      1\nMODEL LIMITS:     0.5, 4.0\n")));
  InversionOptions options;
  options.static_shift = 0.2;
  const InversionReport report = run_inversion(folder.folder(), options, {});
  double least = 1.0;
  for (const StaticShift& shift : report.static_shifts.shifts) {
    least = std::min(least, shift.shift);
  }
  EXPECT_LT(least, 0.0);
}
