// An inversion is killed at each of its file operations, its disk fills up, its folder becomes read-only:
// what is there afterwards are whole files of finished iterations, and the directory can be gone on from.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>

#include "formats/occam/response_file.h"
#include "formats/occam/start_file.h"
#include "occam/inversion/run_inversion.h"
#include "tests/kills/killed_process.h"
#include "tests/occam/inversion/made_inversion.h"
#include "tests/support/child_process.h"

namespace fs = std::filesystem;
using namespace Module_occam;

namespace {

constexpr int iterations = 3;
constexpr const char* run_files[] = {"mesh", "inmodel", "occamdat", "startup"};

InversionReport invert(const fs::path& directory, int more, bool go_on = false) {
  InversionOptions options;
  options.iterations = more;
  options.threads = 1;
  options.go_on = go_on;
  options.may_move_earlier = !go_on;
  options.static_shift = 0.2;
  return run_inversion(directory, options, {});
}

class InversionKills : public ::testing::Test {
 protected:
  InversionKills() { made::write_inversion(folder); }

  [[nodiscard]] fs::path copy(const std::string& name) const {
    fs::path place = folder.folder() / name;
    fs::create_directory(place);
    for (const char* file : run_files) {
      fs::copy_file(folder.path(file), place / file);
    }
    return place;
  }

  /// All files of iterations are those of the unbroken run, and each iteration has its shifts.
  static void expect_whole(const fs::path& directory, const fs::path& unbroken) {
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
      const std::string name = entry.path().filename().string();
      const bool is_kept = name.ends_with(".iter") || name.ends_with(".resp") || name.ends_with(".shift");
      if (is_kept) {
        EXPECT_EQ(file_contents(entry.path().string()), file_contents((unbroken / name).string())) << name;
      }
      if (name.ends_with(".iter")) {
        EXPECT_TRUE(fs::exists(directory / ("SHIFT" + name.substr(4, 2) + ".shift"))) << name;
      }
    }
  }

  /// Goes on to the last iteration.
  static void expect_continues(const fs::path& directory, const fs::path& unbroken) {
    const std::string last = last_iteration_file(directory);
    const int done = last.empty() ? 0 : read_start_file((directory / last).string()).iteration;
    const InversionReport report = invert(directory, iterations - done, !last.empty());
    EXPECT_EQ(report.steps.back().iteration, iterations);
    EXPECT_FALSE(fs::exists(directory / "inversion.lock"));
    for (const std::string& name : {iteration_file_name(iterations), response_name_of(iterations)}) {
      const auto numbers = [&](const fs::path& place) {
        const std::string text = file_contents((place / name).string());
        return text.substr(text.find("Roughness Value") == std::string::npos ? 0
                                                                             : text.find("Roughness Value"));
      };
      made::expect_same_numbers(numbers(directory), numbers(unbroken), made::response_part);
    }
    for (int iteration = 0; iteration <= iterations; ++iteration) {
      EXPECT_TRUE(fs::exists(directory / response_name_of(iteration))) << iteration;
    }
  }

  TemporaryFolder folder;
};

}  // namespace

TEST_F(InversionKills, Leave_whole_iterations_that_can_be_gone_on_from) {
  const fs::path unbroken = copy("unbroken");
  const std::int64_t operations =
      run_until_operation(0, [&](const TellProgress&) { (void)invert(unbroken, iterations); }).operations;
  ASSERT_GT(operations, 20);
  for (std::int64_t operation = 1; operation <= operations; ++operation) {
    SCOPED_TRACE(operation);
    const fs::path place = copy("kill_" + std::to_string(operation));
    EXPECT_TRUE(
        run_until_operation(operation, [&](const TellProgress&) { (void)invert(place, iterations); }).killed);
    expect_whole(place, unbroken);
    EXPECT_EQ(wait_for_child(start_child([&] { expect_continues(place, unbroken); })), 0);
  }
}

TEST_F(InversionKills, Among_the_moves_of_an_earlier_inversion_lose_none_of_its_files) {
  const fs::path first = copy("first");
  ASSERT_EQ(wait_for_child(start_child([&] { (void)invert(first, iterations); })), 0);
  const auto expect_same = [&](const fs::path& file) {
    EXPECT_EQ(file_contents(file.string()), file_contents((first / file.filename()).string())) << file;
  };
  int moved_by_halves = 0;
  for (std::int64_t operation = 1; operation <= 33; operation += 2) {
    SCOPED_TRACE(operation);
    const fs::path place = folder.folder() / ("again_" + std::to_string(operation));
    fs::copy(first, place);
    EXPECT_TRUE(
        run_until_operation(operation, [&](const TellProgress&) { (void)invert(place, iterations); }).killed);
    const fs::path moved = place / "earlier_1";
    const bool has_moved = fs::exists(moved / iteration_file_name(iterations));
    moved_by_halves += has_moved && fs::exists(place / iteration_file_name(0)) ? 1 : 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(first)) {
      const fs::path name = entry.path().filename();
      if (std::ranges::find(run_files, name) == std::end(run_files)) {
        expect_same(fs::exists(moved / name) ? moved / name : place / name);
        continue;
      }
      expect_same(place / name);
      if (has_moved) {
        expect_same(moved / name);
      }
    }
  }
  EXPECT_GT(moved_by_halves, 3);
}

TEST_F(InversionKills, A_disk_that_fills_up_is_told_and_costs_no_iteration) {
  const bool possible = run_in_own_mounts([&] {
    const fs::path unbroken = copy("unbroken");
    (void)invert(unbroken, iterations);
    const fs::path disk = folder.folder() / "disk";
    fs::create_directory(disk);
    own_mounts::put_disk(disk, std::size_t{1} << 20U);
    const fs::path run = copy("disk/run");
    InversionOptions options;
    options.threads = 1;
    options.static_shift = 0.2;
    options.iterations = iterations;
    InversionListener listener;
    listener.step = [&](const InversionStep& step) {
      if (step.iteration == 1) {
        std::ofstream ballast(disk / "ballast", std::ios::binary);
        ballast << std::string(std::size_t{2} << 20U, 'x');
      }
    };
    std::string reason;
    try {
      (void)run_inversion(run, options, listener);
    } catch (const std::exception& failure) {
      reason = failure.what();
    }
    EXPECT_NE(reason.find("No space left"), std::string::npos) << reason;
    EXPECT_NE(reason.find("iteration 1 is in place, and it can be continued"), std::string::npos) << reason;
    EXPECT_EQ(last_iteration_file(run), "ITER01.iter");
    expect_whole(run, unbroken);

    // Nor does an earlier inversion move where there is no room for the files that it needs.
    options.may_move_earlier = true;
    listener = {};
    reason.clear();
    try {
      (void)run_inversion(run, options, listener);
    } catch (const std::exception& failure) {
      reason = failure.what();
    }
    EXPECT_NE(reason.find("the earlier iterations can't be moved into"), std::string::npos) << reason;
    EXPECT_NE(reason.find("No space left"), std::string::npos) << reason;
    EXPECT_FALSE(fs::exists(run / "earlier_1"));
    expect_whole(run, unbroken);
    fs::remove(disk / "ballast");
    expect_continues(run, unbroken);
  });
  if (!possible) {
    GTEST_SKIP() << "this system lets no process have mounts of its own";
  }
}

TEST_F(InversionKills, A_folder_that_becomes_read_only_is_told_and_costs_no_iteration) {
  const bool possible = run_in_own_mounts([&] {
    const fs::path unbroken = copy("unbroken");
    (void)invert(unbroken, iterations);
    const fs::path run = copy("run");
    InversionListener listener;
    listener.step = [&](const InversionStep& step) {
      if (step.iteration == 2) {
        own_mounts::make_read_only(run);
      }
    };
    InversionOptions options;
    options.threads = 1;
    options.static_shift = 0.2;
    options.iterations = iterations;
    const auto reason_of = [&] {
      try {
        (void)run_inversion(run, options, listener);
      } catch (const std::exception& failure) {
        return std::string(failure.what());
      }
      return std::string();
    };
    const std::string reason = reason_of();
    EXPECT_NE(reason.find("Read-only file system"), std::string::npos) << reason;
    EXPECT_NE(reason.find("iteration 2 is in place"), std::string::npos) << reason;
    expect_whole(run, unbroken);
    // Nor can one begin there.
    options.go_on = true;
    EXPECT_NE(reason_of().find("Read-only file system"), std::string::npos);
  });
  if (!possible) {
    GTEST_SKIP() << "this system lets no process have mounts of its own";
  }
}
