#include "occam/inversion/run_inversion.h"

#include <filesystem>
#include <map>
#include <set>

#include "core/text_fields.h"
#include "formats/occam/response_file.h"
#include "formats/occam/start_file.h"
#include "occam/inversion/inversion_input.h"
#include "occam/inversion/run_problem.h"
#include "occam/results/run_results.h"
#include "tests/formats/occam/made_run.h"
#include "tests/occam/inversion/made_inversion.h"

namespace fs = std::filesystem;
using namespace Module_occam;
using numerics::occam_inversion::Ending;

namespace {

constexpr const char* inversion_log = "LogFile.logfile";

class RunInversion : public ::testing::Test {
 protected:
  RunInversion() { made::write_inversion(folder); }

  InversionReport invert(InversionOptions options = {}) const {
    options.threads = 1;
    return run_inversion(folder.folder(), options, {});
  }
  [[nodiscard]] bool has(const std::string& name) const { return fs::exists(folder.path(name)); }
  [[nodiscard]] std::map<std::string, std::string> contents() const {
    std::map<std::string, std::string> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder.folder())) {
      if (entry.is_regular_file()) {
        files[entry.path().lexically_relative(folder.folder()).string()] =
            file_contents(entry.path().string());
      }
    }
    return files;
  }
  static InversionOptions go_on() {
    InversionOptions options;
    options.go_on = true;
    return options;
  }
  static InversionOptions from(const std::string& file) {
    InversionOptions options;
    options.from = file;
    options.may_move_earlier = true;
    return options;
  }

  TemporaryFolder folder;
};

}  // namespace

TEST_F(RunInversion, Comes_to_the_target_and_leaves_whole_files_of_each_iteration) {
  const InversionReport report = invert();
  EXPECT_EQ(report.ending, Ending::smooth_and_fitting) << report.reason;
  EXPECT_TRUE(report.reason.ends_with("the model is the smoothest one found that fits to the target."));
  ASSERT_GT(report.steps.size(), 4U);
  EXPECT_LE(report.steps.back().rms, 1.0);
  const std::string header = folder.path("occamdat");
  for (const InversionStep& step : report.steps) {
    const InversionStart left = read_start_file(folder.path(iteration_file_name(step.iteration)));
    EXPECT_EQ(left.iteration, step.iteration);
    EXPECT_EQ(left.parameters.size(), 36U);
    EXPECT_NEAR(left.rms, step.rms, 1e-6 * step.rms);
    // What stands in the response is the model's own, the start's too.
    const OccamResponse response = read_response_file(folder.path(response_name_of(step.iteration)), header);
    double sum = 0.0;
    std::size_t rows = 0;
    for (const auto& row : response.rows()) {
      EXPECT_NEAR(row.values[0] - row.values[2], row.values[1], 1e-3);
      sum += row.values[3] * row.values[3];
      ++rows;
    }
    EXPECT_EQ(rows, 36U);
    EXPECT_NEAR(std::sqrt(sum / 36.0), step.rms, 1e-3 * step.rms);
  }
  const std::string log = file_contents(folder.path(inversion_log));
  EXPECT_TRUE(log.starts_with(" STARTING R.M.S. ="));
  EXPECT_TRUE(log.ends_with(" Stop on normal convergence\n"));
  EXPECT_FALSE(has("inversion.lock"));
}

TEST_F(RunInversion, Goes_on_from_any_iteration_as_the_unbroken_run) {
  const InversionReport unbroken = invert();
  const int last = unbroken.steps.back().iteration;
  const auto before = contents();
  for (int start = 0; start < last; ++start) {
    SCOPED_TRACE(start);
    const InversionReport again = invert(from(iteration_file_name(start)));
    EXPECT_EQ(again.ending, unbroken.ending);
    EXPECT_EQ(again.steps.size(), static_cast<std::size_t>(last - start + 1));
    EXPECT_TRUE(has(again.earlier_folder + "/" + iteration_file_name(start + 1)));
    EXPECT_FALSE(has(again.earlier_folder + "/" + iteration_file_name(start)));
    for (int iteration = 0; iteration <= last; ++iteration) {
      const std::string name = iteration_file_name(iteration);
      made::expect_same_numbers(file_contents(folder.path(name)), before.at(name), made::iteration_part);
      const std::string response = response_name_of(iteration);
      made::expect_same_numbers(file_contents(folder.path(response)), before.at(response),
                                made::response_part);
    }
  }
}

TEST_F(RunInversion, In_parts_is_the_same_run) {
  const InversionReport unbroken = invert();
  const auto before = contents();
  fs::remove_all(folder.path("earlier_1"));
  InversionOptions one;
  one.iterations = 1;
  one.may_move_earlier = true;
  InversionReport part = invert(one);
  EXPECT_EQ(part.earlier_folder, "earlier_1");
  EXPECT_EQ(part.ending, Ending::iterations_done);
  one.go_on = true;
  one.may_move_earlier = false;  // nothing is in the way
  for (int round = 0; part.ending == Ending::iterations_done && round < 30; ++round) {
    part = invert(one);
  }
  EXPECT_EQ(part.ending, unbroken.ending);
  EXPECT_EQ(part.steps.back().iteration, unbroken.steps.back().iteration);
  const std::string last = response_name_of(unbroken.steps.back().iteration);
  made::expect_same_numbers(file_contents(folder.path(last)), before.at(last), made::response_part);
}

TEST_F(RunInversion, Earlier_iterations_are_asked_about_and_kept) {
  InversionOptions options;
  options.iterations = 2;
  (void)invert(options);
  static_cast<void>(folder.write("ITER02.iter.bak", "a copy"));
  const auto before = contents();
  EXPECT_THROW((void)invert(options), EarlierIterations);
  EXPECT_EQ(contents(), before);

  options.may_move_earlier = true;
  options.target_rms = 2.0;
  const InversionReport report = invert(options);
  EXPECT_EQ(report.earlier_folder, "earlier_1");
  for (const char* name : {"ITER00.iter", "ITER02.iter", "RESP00.resp", "RESP02.resp", inversion_log}) {
    EXPECT_EQ(file_contents(folder.path(std::string("earlier_1/") + name)), before.at(name)) << name;
  }
  EXPECT_EQ(file_contents(folder.path("startup")), before.at("startup"));
  EXPECT_TRUE(has("ITER02.iter.bak"));
  RunResults earlier;
  ASSERT_EQ(open_results(folder.path("earlier_1/startup"), earlier), 0);
  EXPECT_EQ(earlier.last_iteration, 2);
  EXPECT_EQ(earlier.model.num_free_params, made::inverted_blocks);
  EXPECT_NEAR(read_start_file(folder.path("ITER00.iter")).target_rms, 2.0, 1e-12);

  // A response whose iteration has gone is somebody's, too; a log alone is gone on with.
  for (const char* name : {"ITER00.iter", "ITER01.iter", "ITER02.iter", "RESP00.resp", "RESP01.resp"}) {
    fs::remove(folder.path(name));
  }
  options.may_move_earlier = false;
  EXPECT_THROW((void)invert(options), EarlierIterations);
  fs::remove(folder.path("RESP02.resp"));
  const std::string log = file_contents(folder.path(inversion_log));
  (void)invert(options);
  EXPECT_TRUE(file_contents(folder.path(inversion_log)).starts_with(log));
}

// Two start files of a folder, as before and after its mesh is masked.
TEST_F(RunInversion, Earlier_iterations_take_the_files_of_their_own_model_along) {
  const std::string model = made::replaced(made::inverted_model(), "mesh\n", "MESH\n");  // the file is "mesh"
  static_cast<void>(folder.write("inmodel", model));
  static_cast<void>(folder.write("sub/other", model));
  static_cast<void>(
      folder.write("other_start", made::replaced(made::inverted_start(), "inmodel", "sub/other")));
  InversionOptions options;
  options.iterations = 1;
  (void)invert(options);
  InversionOptions other = from("other_start");
  other.iterations = 1;
  EXPECT_EQ(invert(other).earlier_folder, "earlier_1");
  EXPECT_EQ(invert(other).earlier_folder, "earlier_2");
  const auto names_in = [&](const std::string& place) {
    std::set<std::string> names;
    for (const auto& [name, text] : contents()) {
      const bool is_result = name.find("ITER") != std::string::npos ||
                             name.find("RESP") != std::string::npos ||
                             name.find(inversion_log) != std::string::npos;
      if (name.starts_with(place + "/") && !is_result) {
        names.insert(name.substr(place.size() + 1));
      }
    }
    return names;
  };
  EXPECT_EQ(names_in("earlier_1"), (std::set<std::string>{"inmodel", "mesh", "occamdat", "startup"}));
  EXPECT_EQ(names_in("earlier_2"), (std::set<std::string>{"sub/other", "mesh", "occamdat", "other_start"}));
  EXPECT_EQ(run_inversion(folder.path("earlier_2"), go_on(), {}).steps.front().iteration, 1);
}

TEST_F(RunInversion, A_lost_response_comes_back_with_the_restart) {
  InversionOptions options;
  options.iterations = 1;
  (void)invert(options);
  const std::string response = file_contents(folder.path("RESP01.resp"));
  fs::remove(folder.path("RESP01.resp"));
  options.go_on = true;
  (void)invert(options);
  made::expect_same_numbers(file_contents(folder.path("RESP01.resp")), response, made::response_part);
  EXPECT_TRUE(has("ITER02.iter"));
}

// The public program ends a failed iteration with a file of the next number that holds the unchanged model.
TEST_F(RunInversion, An_iteration_with_the_unchanged_model_is_gone_on_from) {
  InversionOptions options;
  options.iterations = 2;
  const InversionReport first = invert(options);
  std::string repeated = file_contents(folder.path("ITER02.iter"));
  repeated = made::replaced(repeated, "Iteration:            2", "Iteration:            3");
  static_cast<void>(folder.write("ITER03.iter", repeated));
  options.go_on = true;
  const InversionReport second = invert(options);
  EXPECT_NEAR(second.steps.front().rms, first.steps.back().rms, 1e-5);
  EXPECT_EQ(second.steps.back().iteration, 5);
  EXPECT_LT(second.steps.back().rms, first.steps.back().rms);
}

TEST_F(RunInversion, Locks_its_directory_while_it_runs) {
  static_cast<void>(folder.write("inversion.lock", ""));  // left by a crash: it locks nothing
  std::string refusal;
  InversionListener listener;
  listener.step = [&](const InversionStep& step) {
    if (step.iteration == 1) {
      try {
        (void)invert(go_on());
      } catch (const std::runtime_error& failure) {
        refusal = failure.what();
      }
    }
  };
  InversionOptions options;
  options.iterations = 2;
  const InversionReport report = run_inversion(folder.folder(), options, listener);
  EXPECT_EQ(refusal, "Another inversion is running in " + folder.folder().string() + ".");
  EXPECT_EQ(report.steps.size(), 3U);
  EXPECT_FALSE(has("inversion.lock"));
}

TEST_F(RunInversion, A_stop_leaves_finished_iterations_and_can_be_gone_on_from) {
  const auto stopped_after = [&](int calls) {
    InversionListener listener;
    listener.progress = [calls](auto) mutable { return --calls > 0; };
    InversionOptions options = go_on();
    options.iterations = 2;
    return run_inversion(folder.folder(), options, listener);
  };
  const auto before = contents();
  const InversionReport at_once = stopped_after(1);
  EXPECT_EQ(at_once.ending, Ending::stopped);
  EXPECT_EQ(at_once.reason, "Stopped before the first response was done; nothing was written.");
  EXPECT_EQ(contents(), before);
  for (int calls = 10; calls < 100; calls += 20) {
    SCOPED_TRACE(calls);
    const InversionReport report = stopped_after(calls);
    const std::string last = last_iteration_file(folder.folder());
    EXPECT_EQ(read_start_file(folder.path(last)).iteration, report.steps.back().iteration);
    if (report.ending == Ending::stopped) {
      EXPECT_TRUE(file_contents(folder.path(inversion_log)).ends_with(" Stopped by the user\n"));
    }
  }
  EXPECT_TRUE(has("ITER01.iter"));
}

TEST_F(RunInversion, What_never_fits_ends_with_the_sites_to_look_at) {
  std::string data = file_contents(folder.path("occamdat"));
  // Site 2 is said to be known far better than it can be fitted.
  std::string other;
  std::size_t from_line = 0;
  for (std::size_t end = data.find('\n'); end != std::string::npos; end = data.find('\n', from_line)) {
    std::string line = data.substr(from_line, end + 1 - from_line);
    if (line.starts_with("     2           ") && line.find("      5       ") != std::string::npos) {
      line = made::replaced(line, "0.0200", "0.0002");
    }
    other += line;
    from_line = end + 1;
  }
  static_cast<void>(folder.write("occamdat", other));
  // Nor may the ground be anything but nearly uniform.
  static_cast<void>(
      folder.write("startup", made::replaced(made::inverted_start("40", "0.5"), "DEBUG LEVEL:      1\n",
                                             "DEBUG LEVEL:      1\nMODEL LIMITS:     2.45, 2.55\n")));
  const InversionReport report = invert();
  EXPECT_EQ(report.ending, Ending::no_better_fit) << report.reason;
  EXPECT_NE(report.reason.find("Stopped improving at RMS "), std::string::npos) << report.reason;
  EXPECT_TRUE(
      report.reason.ends_with("within the model limits of the file the target of 0.5 asks for larger errors, "
                              "look at the misfit of site 2 (pb27)."))
      << report.reason;
  EXPECT_TRUE(file_contents(folder.path(inversion_log)).ends_with(" Convergence problems from RMS Misfit\n"));
}

// One resistivity is wrong by a decade.
TEST_F(RunInversion, With_outliers_counted_linearly_the_target_is_that_of_the_misfit_so_counted) {
  std::string data = file_contents(folder.path("occamdat"));
  const std::string begin = pad_field("2", 6) + pad_field("2", 12) + pad_field("1", 8);
  const std::size_t at = data.find(begin);
  ASSERT_NE(at, std::string::npos);
  static_cast<void>(
      folder.write("occamdat", data.replace(at, data.find('\r', at) - at, begin + "  3.0  0.02")));
  InversionOptions options;
  options.robust = true;
  options.target_rms = 3.0;
  const InversionReport unbroken = invert(options);
  EXPECT_EQ(unbroken.ending, Ending::smooth_and_fitting) << unbroken.reason;
  EXPECT_GT(unbroken.steps.back().rms, 2.6);
  EXPECT_NE(unbroken.reason.find("(3.00 with outliers counted linearly)"), std::string::npos)
      << unbroken.reason;
  EXPECT_NE(file_contents(folder.path(inversion_log)).find("\n AND IS =   2.99"), std::string::npos);

  options.iterations = 1;
  options.may_move_earlier = true;
  InversionReport part = invert(options);
  options.go_on = true;
  options.may_move_earlier = false;
  for (int round = 0; part.ending == Ending::iterations_done && round < 30; ++round) {
    part = invert(options);
  }
  EXPECT_EQ(part.ending, unbroken.ending);
  EXPECT_EQ(part.steps.back().iteration, unbroken.steps.back().iteration);
  EXPECT_EQ(part.reason.find("Up to"), std::string::npos) << part.reason;

  // Whoever goes on without it, or with it again, hears that the iterations went by two misfits.
  const auto goes_on = [&](bool robust) {
    options.robust = robust;
    const std::string from = "ITER" + format_number(part.steps.back().iteration, "00") + ".iter";
    part = invert(options);
    return part.reason.substr(part.reason.find(" Up to " + from) + 7 + from.size());
  };
  EXPECT_EQ(goes_on(false), " outliers counted linearly, from then on by their squares.");
  EXPECT_EQ(goes_on(true), " outliers counted by their squares, from then on linearly.");
}

// The deepest blocks are 4800 m high, those above 800 m.
TEST_F(RunInversion, The_last_layer_counts_as_thick_as_the_one_above_if_it_has_as_many_blocks) {
  const auto last_height = [&](const std::string& last_layer) {
    const std::string model = made::inverted_model();
    const std::string like_above = " 2 6\n 4 2 2 2 2 4\n";
    static_cast<void>(folder.write(
        "inmodel", std::string(model).replace(model.rfind(like_above), like_above.size(), last_layer)));
    static_cast<void>(
        folder.write("startup", made::inverted_start("1", "1", last_layer == like_above ? 36 : 33)));
    const InversionInput input = read_inversion_input(folder.folder(), "startup");
    return RunProblem(input.model, input.data, {1, std::nullopt}, {}).blocks().back().height;
  };
  EXPECT_EQ(last_height(" 2 6\n 4 2 2 2 2 4\n"), 800.0);
  EXPECT_EQ(last_height(" 2 3\n 6 4 6\n"), 4800.0);
}

TEST_F(RunInversion, Threads_don_t_change_a_digit) {
  InversionOptions options;
  options.iterations = 2;
  (void)invert(options);
  const auto one = contents();
  options.may_move_earlier = true;
  options.threads = 3;
  (void)run_inversion(folder.folder(), options, {});
  for (const char* name : {"ITER02.iter", "RESP02.resp"}) {
    EXPECT_EQ(file_contents(folder.path(name)), one.at(name));
  }
}

// A run of the public program: its last iteration has the misfit and the roughness that it says it has.
TEST_F(RunInversion, Begins_at_an_iteration_of_the_public_program) {
  const fs::path finished = fs::path(BRENLOX_FIELD_DATA) / "occam2d";
  if (!fs::exists(finished)) {
    GTEST_SKIP() << "no field data";
  }
  const TemporaryFolder copy;
  fs::copy(finished, copy.folder(), fs::copy_options::recursive);
  const std::string response = file_contents(copy.path("RESP12.resp"));
  const std::string log = file_contents(copy.path(inversion_log));
  InversionOptions options = go_on();
  options.iterations = 0;
  const InversionReport report = run_inversion(copy.folder(), options, {});
  EXPECT_EQ(report.steps.front().iteration, 12);
  EXPECT_NEAR(report.steps.front().rms, 0.9999997, 0.002);  // its arithmetic is in single precision
  EXPECT_NEAR(report.steps.front().roughness, 16.63050, 1e-4);
  EXPECT_EQ(file_contents(copy.path("RESP12.resp")), response);
  EXPECT_TRUE(file_contents(copy.path(inversion_log)).starts_with(log));
}

TEST_F(RunInversion, Shifts_of_another_run_are_not_taken_for_its_own) {
  static_cast<void>(
      folder.write("SHIFT01.shift", shift_file_text({ShiftConstraint::none, 0.1, {{2, 1, 0.5, false}}})));
  InversionOptions options;
  options.iterations = 1;
  EXPECT_EQ(invert(options).earlier_folder, "earlier_1");
  EXPECT_TRUE(has("earlier_1/SHIFT01.shift"));
  options.go_on = true;
  EXPECT_TRUE(invert(options).static_shift_file.empty());
}

TEST_F(RunInversion, Numbers_beyond_99_are_written_in_full) {
  std::string start = made::inverted_start("1");
  start = made::replaced(start, "ITERATION:        0", "ITERATION:        99");
  static_cast<void>(folder.write("startup", start));
  (void)invert();
  EXPECT_TRUE(has("ITER99.iter") && has("ITER100.iter") && has("RESP100.resp"));
  EXPECT_EQ(last_iteration_file(folder.folder()), "ITER100.iter");
  EXPECT_EQ(read_start_file(folder.path("ITER100.iter")).iteration, 100);
}

TEST_F(RunInversion, Ends_with_the_last_iteration_that_can_be_shown) {
  static_cast<void>(folder.write(
      "startup", made::replaced(made::inverted_start("20"), "ITERATION:        0", "ITERATION:        511")));
  EXPECT_EQ(invert().steps.back().iteration, 512);
  InversionOptions options;
  options.go_on = true;
  try {
    (void)invert(options);
    ADD_FAILURE();
  } catch (const std::runtime_error& failure) {
    EXPECT_STREQ(failure.what(), "ITER512.iter is of iteration 512; 512 is the last that can be shown");
  }
}

TEST_F(RunInversion, Resistivities_beyond_those_of_rocks_are_cut_but_at_debug_level_0) {
  std::string start = made::inverted_start("1");
  while (start.find("  2.5\n") != std::string::npos) {
    start = made::replaced(start, "  2.5\n", "  9.0\n");
  }
  const auto resistivity = [&](const std::string& level) {
    static_cast<void>(
        folder.write("startup", made::replaced(start, "DEBUG LEVEL:      1", "DEBUG LEVEL:      " + level)));
    InversionOptions options;
    options.may_move_earlier = true;
    options.iterations = 0;
    (void)invert(options);
    OccamResponse response = read_response_file(folder.path("RESP00.resp"), folder.path("occamdat"));
    return response.value(modelled, DataType::tm_resistivity, 1, 3);
  };
  EXPECT_NEAR(resistivity("0") - resistivity("1"), 1.0, 0.1);
}

TEST_F(RunInversion, Finds_its_start_file) {
  EXPECT_EQ(find_start_file(folder.folder()), "startup");
  fs::rename(folder.path("startup"), folder.path("OccamStart"));
  EXPECT_EQ(find_start_file(folder.folder()), "OccamStart");
  const auto complaint = [this] {
    try {
      return find_start_file(folder.folder());
    } catch (const std::runtime_error& failure) {
      return std::string(failure.what());
    }
  };
  const std::string in_folder = folder.folder().string();
  fs::copy_file(folder.path("OccamStart"), folder.path("OtherStart"));
  EXPECT_EQ(complaint(), "there are several start files in " + in_folder + ": OccamStart, OtherStart");
  fs::remove(folder.path("OtherStart"));
  const std::string start = file_contents(folder.path("OccamStart"));
  static_cast<void>(folder.write("OccamStart", start.substr(0, start.size() / 2)));
  EXPECT_EQ(find_start_file(folder.folder()), "OccamStart") << "so that its reader says what is wrong";
  static_cast<void>(folder.write("OccamStart", start));
  fs::rename(folder.path("OccamStart"), folder.path("ITER00.iter"));
  EXPECT_EQ(complaint(),
            "there is no start file in " + in_folder + "; the inversion can be continued from ITER00.iter");
  EXPECT_EQ(last_iteration_file(folder.folder()), "ITER00.iter");
}
