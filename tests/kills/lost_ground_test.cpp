// The ground goes from under a survey: its disk is full, its folder can't be written, is moved or removed, or
// another process opens it at the same moment. Each is reported, and what was stored before is there
// afterwards.
#include <chrono>
#include <csignal>
#include <fstream>
#include <set>

#include "core/number_text.h"
#include "core/scope_guard.h"
#include "database/frequency_store.h"
#include "database/stations.h"
#include "display/selection.h"
#include "import/import_run.h"
#include "import/sample_choices.h"
#include "platform/files/private_folder.h"
#include "platform/files/safe_files.h"
#include "reduction/averages.h"
#include "reduction/data_sets/data_sets.h"
#include "reduction/edits/masks.h"
#include "samples/sample_survey.h"
#include "tests/kills/killed_process.h"
#include "tests/reduction/made_line.h"
#include "tests/support/child_process.h"
#include "tests/support/survey_fixture.h"

namespace fs = std::filesystem;
using namespace Module_database;

namespace {

constexpr const char* no_mounts = "this system lets no process have mounts of its own";
constexpr std::uintmax_t whole_disk = 24U << 20U;

const std::string opening_message = "An error occurred while opening the database: ";

void add_stations(int first, int end) {
  for (int station = first; station < end; ++station) {
    (void)find_station(StationSearch::create, "200E", station);
  }
}

std::set<std::string> names_in(const fs::path& folder) {
  std::set<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

/// Fills a disk but for so many bytes.
void leave_free(const fs::path& disk, std::uintmax_t bytes) {
  const fs::path ballast = disk / "ballast";
  fs::remove(ballast);
  std::ofstream stream(ballast, std::ios::binary);
  const std::uintmax_t size = fs::space(disk).available - std::min(bytes, fs::space(disk).available);
  const std::string page(4096, '\0');
  for (std::uintmax_t written = 0; written + page.size() <= size; written += page.size()) {
    stream.write(page.data(), static_cast<std::streamsize>(page.size()));
  }
}

void free_disk(const fs::path& disk) { fs::remove(disk / "ballast"); }

class LostGround : public SurveyTest {
 protected:
  /// A small empty disk, for the calling process.
  fs::path small_disk() const {
    fs::path disk = folder.folder() / "disk";
    fs::create_directory(disk);
    own_mounts::put_disk(disk, whole_disk);
    return disk;
  }

  void make_survey_with_stations(const std::string& name, int stations) {
    new_survey(name);
    add_stations(0, stations);
    ASSERT_EQ(close_database(), 0);
  }

  void expect_full_disk_named(const fs::path& disk, std::uintmax_t survey_size) {
    const std::vector<std::string> messages = interface.take_messages();
    ASSERT_EQ(messages.size(), 1U);
    const std::string needed = format_number(2e-6 * static_cast<double>(survey_size), "0.0");
    EXPECT_TRUE(messages[0].starts_with(opening_message + "there is no room left on the disk of " +
                                        disk.string() + ". Opening survey.mdb needs up to " + needed + " MB"))
        << messages[0];
  }

  /// Opens the survey that is to be sound and gives the number of its stations.
  std::int32_t stations_after_opening(const fs::path& survey) {
    session().database_file = survey.string();
    EXPECT_EQ(open_database(), 0);
    EXPECT_EQ(interface.take_messages(), std::vector<std::string>{});
    const std::int32_t stations = rows_in("StationsTable");
    EXPECT_EQ(close_database(), 0);
    expect_sound_database(survey.string());
    return stations;
  }
};

}  // namespace

TEST_F(LostGround, A_full_disk_lets_no_survey_go_at_opening) {
  for (const bool compact : {false, true}) {
    SCOPED_TRACE(compact);
    const bool possible = run_in_own_mounts([&] {
      const fs::path disk = small_disk();
      make_survey_with_stations("disk/survey.mdb", 500);
      const std::string survey = session().database_file;
      const std::string before = file_contents(survey);
      const std::string backup = folder.write("disk/survey.bak", "the state of an earlier session");
      const int needed = compact ? 4 : 8;  // quarters of the survey's size: the backup, and a compacted copy
      int refused = 0;
      for (int quarters = 0; quarters <= 10; ++quarters) {
        SCOPED_TRACE(quarters);
        if (!compact) {
          fs::last_write_time(survey, fs::last_write_time(survey) - std::chrono::seconds(1));
        }
        leave_free(disk, before.size() / 4 * static_cast<std::uintmax_t>(quarters));
        if (open_database() == 0) {
          EXPECT_GE(quarters, needed);
          EXPECT_EQ(close_database(), 0);
          break;
        }
        ++refused;
        expect_full_disk_named(disk, before.size());
        EXPECT_TRUE(file_contents(survey) == before);
        EXPECT_EQ(file_contents(backup), "the state of an earlier session");
        EXPECT_EQ(names_in(disk), (std::set<std::string>{"ballast", "survey.bak", "survey.mdb"}));
      }
      EXPECT_GE(refused, needed);
      free_disk(disk);
      EXPECT_EQ(stations_after_opening(survey), 500);
    });
    if (!possible) {
      GTEST_SKIP() << no_mounts;
    }
  }
}

TEST_F(LostGround, A_full_disk_for_private_copies_is_named) {
  make_survey_with_stations("survey.mdb", 500);
  const std::set<std::string> names = names_in(folder.folder());
  const bool possible = run_in_own_mounts([&] {
    const fs::path disk = small_disk();
    leave_free(disk, 50000);
    setenv("TMPDIR", disk.c_str(), 1);
    EXPECT_EQ(open_database(OpenFor::reading), -1);
    expect_full_disk_named(disk, fs::file_size(folder.path("survey.mdb")));
    EXPECT_EQ(names_in(disk), std::set<std::string>{"ballast"});
    fs::remove(disk / "ballast");
    EXPECT_EQ(open_database(OpenFor::reading), 0);
    EXPECT_EQ(close_database(), 0);
  });
  if (!possible) {
    GTEST_SKIP() << no_mounts;
  }
}

TEST_F(LostGround, What_was_stored_before_the_disk_was_full_stays) {
  const bool possible = run_in_own_mounts([&] {
    const fs::path disk = small_disk();
    const std::string survey = new_survey("disk/survey.mdb");
    leave_free(disk, 300000);
    int stored = 0;
    std::string failure;
    for (; stored < 2000 && failure.empty(); ++stored) {
      try {
        add_stations(stored, stored + 1);
      } catch (const dao::Error& error) {
        failure = error.what();
        --stored;
      }
    }
    EXPECT_EQ(failure, "database or disk is full");
    EXPECT_GT(stored, 10);
    EXPECT_EQ(close_database(), 0);
    free_disk(disk);
    const std::int32_t found = stations_after_opening(survey);
    EXPECT_TRUE(found == stored || found == stored + 1)
        << found << " of " << stored;  // the last may lack its place
  });
  if (!possible) {
    GTEST_SKIP() << no_mounts;
  }
}

TEST_F(LostGround, An_edit_for_which_there_is_no_room_changes_nothing_and_can_be_done_again) {
  using namespace Module_averaged_data;
  const bool possible = run_in_own_mounts([&] {
    const fs::path disk = small_disk();
    const std::string survey = new_survey("disk/survey.mdb");
    made::store_line(3);
    ASSERT_EQ(load_selected_repeats(), 0);
    leave_free(disk, 0);
    const auto mask = [](std::size_t slot) { return toggle_repeat_point(slot, 0, Component::resistivity); };
    std::string before = made::whole_readings_table();
    std::size_t slot = 1;
    int done = 0;
    Edit edit = Edit::changed;
    for (; done < 2000 && edit == Edit::changed; ++done) {  // the log takes some before it has to grow
      before = made::whole_readings_table();
      slot = 1 + static_cast<std::size_t>(done) % made::line_repeats;
      edit = mask(slot);
    }
    ASSERT_EQ(edit, Edit::failed);
    const std::vector<std::string> messages = interface.take_messages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_NE(messages[0].find("database or disk is full"), std::string::npos) << messages[0];
    EXPECT_TRUE(made::whole_readings_table() == before);
    const std::int32_t shown = data_sets().repeats.slots.at(slot).reading.curve.counts_at(1, 0);
    free_disk(disk);
    EXPECT_EQ(mask(slot), Edit::changed);
    EXPECT_EQ(data_sets().repeats.slots.at(slot).reading.curve.counts_at(1, 0), 1 - shown);
    EXPECT_TRUE(made::whole_readings_table() != before);
    const std::string after = made::whole_readings_table();
    reopen();
    EXPECT_TRUE(made::whole_readings_table() == after);
    EXPECT_EQ(interface.take_messages(), std::vector<std::string>{});
    EXPECT_EQ(close_database(), 0);
    expect_sound_database(survey);
  });
  if (!possible) {
    GTEST_SKIP() << no_mounts;
  }
}

TEST_F(LostGround, An_import_that_fills_the_disk_keeps_whole_files) {
  using namespace Module_data_file;
  std::vector<std::string> files;
  for (const Module_samples::SampleFile& file : Module_samples::make_sample_survey()) {
    files.push_back(folder.write("field/" + file.name, file.text));
  }
  const bool possible = run_in_own_mounts([&] {
    const fs::path disk = small_disk();
    const std::string survey = new_survey("disk/survey.mdb");
    leave_free(disk, 1000000);
    ImportReport report;
    EXPECT_EQ(run_import(sample_choices(), files, ImportMode::import, report), -1);
    const std::vector<std::string> messages = interface.take_messages();
    ASSERT_FALSE(messages.empty());
    EXPECT_NE(messages.back().find("full"), std::string::npos) << messages.back();
    EXPECT_EQ(close_database(), 0);
    free_disk(disk);

    session().database_file = survey;
    ASSERT_EQ(open_database(), 0);
    const std::int32_t stored = rows_in("FileTable");
    EXPECT_GT(stored, 10);
    EXPECT_LT(stored, static_cast<std::int32_t>(files.size()));
    const dao::Recordset readings =
        open_survey().database.open_recordset("SELECT * FROM ReadingsDataTable WHERE FileID>0");
    EXPECT_EQ(readings.record_count(), 4 * stored);
    EXPECT_EQ(run_import(sample_choices(), files, ImportMode::import, report), 0);  // now that there is room
    EXPECT_EQ(rows_in("FileTable"), static_cast<std::int32_t>(files.size()));
    EXPECT_EQ(close_database(), 0);
    EXPECT_EQ(interface.take_messages(), std::vector<std::string>{});
    expect_sound_database(survey);
  });
  if (!possible) {
    GTEST_SKIP() << no_mounts;
  }
}

TEST_F(LostGround, A_written_file_that_the_full_disk_cuts_leaves_the_earlier_one) {
  const bool possible = run_in_own_mounts([&] {
    const fs::path disk = small_disk();
    const fs::path written = disk / "200E.avg";
    safe_files::write_into_place(written, "as it was");
    leave_free(disk, 5000);
    const std::string large = folder.write("large", std::string(100000, 'x'));
    const std::function<void()> writings[] = {
        [&] { safe_files::write_into_place(written, std::string(100000, 'x')); },
        [&] { safe_files::copy_into_place(large, written); }};
    for (const auto& writing : writings) {
      try {
        writing();
        ADD_FAILURE() << "more was written than there is room";
      } catch (const std::runtime_error& error) {
        EXPECT_EQ(error.what(), written.string() + ": No space left on device");
      }
    }
    EXPECT_EQ(file_contents(written), "as it was");
    EXPECT_EQ(names_in(disk), (std::set<std::string>{"200E.avg", "ballast"}));
  });
  if (!possible) {
    GTEST_SKIP() << no_mounts;
  }
}

TEST_F(LostGround, A_file_that_can_not_take_its_place_leaves_nothing_beside_it) {
  const std::string source = folder.write("source", "a letter home");
  (void)folder.write("taken/by_a_folder", "");
  const fs::path taken = folder.folder() / "taken";
  const std::set<std::string> names = names_in(folder.folder());
  const std::function<void()> writings[] = {
      [&] { safe_files::write_into_place(taken, "letters"); },
      [&] { safe_files::copy_into_place(source, taken); },
      [&] {
        safe_files::write_together({{folder.path("first"), "letters"}, {taken, "letters"}});
      }};
  for (const auto& writing : writings) {
    EXPECT_THROW(writing(), std::runtime_error);
    EXPECT_EQ(names_in(folder.folder()), names);
  }
}

TEST_F(LostGround, A_survey_that_can_not_be_written_is_shown_from_a_private_copy) {
  using namespace Module_averaged_data;
  const std::string survey = new_survey("survey.mdb");
  ASSERT_EQ(close_database(), 0);
  const pid_t killed = start_child([&] {  // leaves its latest rows in the log
    EXPECT_EQ(open_database(), 0);
    made::store_line(3);
    raise(SIGKILL);
  });
  EXPECT_EQ(wait_for_child(killed), -1);
  ASSERT_TRUE(fs::exists(survey + "-wal"));
  fs::remove(folder.path("survey.bak"));
  const std::string refusal =
      "The survey is open read-only, because its file or folder can't be written; \"Save Database As\" makes "
      "a "
      "copy that can be changed.";
  const bool possible = run_in_own_mounts([&] {
    own_mounts::make_read_only(folder.folder());
    const std::string before = file_contents(survey) + file_contents(survey + "-wal");
    const std::set<std::string> names = names_in(folder.folder());
    ASSERT_EQ(open_database(), 0);
    EXPECT_TRUE(survey_is_read_only());
    EXPECT_EQ(session().database_file, survey);
    const fs::path private_folder = fs::path(working_file()).parent_path();
    EXPECT_EQ(fs::status(private_folder).permissions(), fs::perms::owner_all);
    EXPECT_EQ(rows_in("StationsTable"), 3);
    const std::string readings = made::whole_readings_table();

    Module_display_data::SelectionLists lists;
    ASSERT_EQ(Module_display_data::fill_selection_lists(lists), 0);
    ASSERT_FALSE(Module_display_data::display_station(1, {}).failed);
    EXPECT_EQ(toggle_repeat_point(1, 0, Component::resistivity), Edit::failed);
    EXPECT_EQ(interface.take_messages(), std::vector<std::string>{refusal});
    EXPECT_EQ(recalculate_merged(), -1);
    EXPECT_EQ(interface.take_messages(), std::vector<std::string>{refusal});
    Module_data_file::ImportReport report;
    EXPECT_EQ(run_import(Module_data_file::sample_choices(), {folder.path("x.edi")},
                         Module_data_file::ImportMode::import, report),
              -1);
    EXPECT_EQ(interface.take_messages(), std::vector<std::string>{refusal});
    EXPECT_EQ(save_frequency_selection(0, session().frequencies), -1);
    EXPECT_EQ(interface.take_messages(), std::vector<std::string>{refusal});
    EXPECT_TRUE(made::whole_readings_table() == readings);

    EXPECT_EQ(close_database(), 0);
    EXPECT_FALSE(fs::exists(private_folder));
    EXPECT_TRUE(file_contents(survey) + file_contents(survey + "-wal") == before);
    EXPECT_EQ(names_in(folder.folder()), names);
  });
  if (!possible) {
    GTEST_SKIP() << no_mounts;
  }
  EXPECT_EQ(stations_after_opening(survey), 3);
  EXPECT_FALSE(survey_is_read_only());
}

TEST_F(LostGround, A_survey_without_permission_to_write_file_or_folder_is_read_only) {
  constexpr uid_t nobody = 65534;
  make_survey_with_stations("survey.mdb", 3);
  const std::string survey = session().database_file;
  fs::remove(folder.folder() / "survey.bak");
  const auto all_but_writing =
      fs::perms::all & ~(fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write);
  const std::pair<fs::perms, fs::perms> cases[] = {{all_but_writing, fs::perms::all},
                                                   {fs::perms::all, all_but_writing}};
  for (const auto& [of_file, of_folder] : cases) {
    fs::permissions(survey, of_file);
    fs::permissions(folder.folder(), of_folder);
    EXPECT_EQ(wait_for_child(start_child([&] {
                if (geteuid() == 0) {
                  ASSERT_EQ(setuid(nobody), 0);  // root may write everywhere
                }
                ASSERT_EQ(open_database(), 0);
                EXPECT_TRUE(survey_is_read_only());
                EXPECT_EQ(rows_in("StationsTable"), 3);
                EXPECT_EQ(close_database(), 0);
                EXPECT_EQ(names_in(folder.folder()), std::set<std::string>{"survey.mdb"});
              })),
              0);
  }
  fs::permissions(folder.folder(), fs::perms::owner_all);
  EXPECT_EQ(interface.take_messages(), std::vector<std::string>{});
}

TEST_F(LostGround, A_hand_copy_of_an_open_survey_holds_an_import_and_a_recalculation) {
  std::vector<std::string> files;
  for (const Module_samples::SampleFile& file : Module_samples::make_sample_survey()) {
    if (files.size() < 4) {
      files.push_back(folder.write("field/" + file.name, file.text));
    }
  }
  const std::string survey = new_survey();
  const auto readings_of_hand_copy = [&] {
    const std::string copy = folder.path("copy.mdb");
    fs::copy_file(survey, copy, fs::copy_options::overwrite_existing);
    dao::Database database = dao::Database::open(copy, dao::Access::read_only);
    return database.open_recordset("SELECT ID FROM ReadingsDataTable").record_count();
  };
  Module_data_file::ImportReport report;
  EXPECT_EQ(
      run_import(Module_data_file::sample_choices(), files, Module_data_file::ImportMode::import, report), 0);
  const std::int32_t imported = rows_in("ReadingsDataTable");
  EXPECT_GT(imported, 16);
  EXPECT_EQ(readings_of_hand_copy(), imported);
  open_survey().database.execute("DELETE FROM ReadingsDataTable WHERE FileID = 1");
  EXPECT_EQ(readings_of_hand_copy(), imported) << "an edit waits until the user rests";
  EXPECT_EQ(Module_averaged_data::recalculate_merged(), 0);
  EXPECT_LT(rows_in("ReadingsDataTable"), imported);
  EXPECT_EQ(readings_of_hand_copy(), rows_in("ReadingsDataTable"));
}

TEST_F(LostGround, A_folder_moved_away_takes_no_more_and_has_all_that_was_stored) {
  const fs::path place = folder.folder() / "place";
  const fs::path away = folder.folder() / "away";
  fs::create_directory(place);
  new_survey("place/survey.mdb");
  add_stations(0, 50);
  fs::rename(place, away);
  for (int attempt = 0; attempt < 2; ++attempt) {
    try {
      add_stations(50, 51);
      ADD_FAILURE() << "a station was stored where no one looks for it";
    } catch (const dao::Error& error) {
      EXPECT_NE(std::string(error.what()).find("no longer at its place"), std::string::npos) << error.what();
      EXPECT_NE(std::string(error.what()).find((place / "survey.mdb").string()), std::string::npos)
          << error.what();
    }
  }
  fs::rename(away, place);
  add_stations(50, 60);  // the folder is back

  fs::rename(place, away);
  fs::create_directory(place);
  const std::string foreign = folder.write("place/survey.mdb-wal", "the log of another survey");
  EXPECT_EQ(close_database(), 0);
  EXPECT_EQ(interface.take_messages(), std::vector<std::string>{});
  EXPECT_EQ(file_contents(foreign), "the log of another survey");
  fs::copy_file(away / "survey.mdb", folder.folder() / "alone.mdb");
  EXPECT_EQ(stations_after_opening(folder.folder() / "alone.mdb"), 60);
  EXPECT_EQ(stations_after_opening(away / "survey.mdb"), 60);
}

TEST_F(LostGround, A_removed_folder_is_told_at_the_next_change) {
  const fs::path place = folder.folder() / "place";
  fs::create_directory(place);
  new_survey("place/survey.mdb");
  add_stations(0, 5);
  fs::remove_all(place);
  EXPECT_THROW(add_stations(5, 6), dao::Error);
  EXPECT_EQ(close_database(), 0);
  EXPECT_EQ(open_database(), -1);
  const std::vector<std::string> messages = interface.take_messages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_TRUE(messages[0].starts_with(opening_message)) << messages[0];
}

// Without taking turns, an opening that is under way would rename its copy of the earlier state over a survey
// in which another process has begun to work.
TEST_F(LostGround, Processes_that_open_at_one_moment_take_turns_and_lose_nothing) {
  make_survey_with_stations("survey.mdb", 300);
  const std::string survey = session().database_file;
  constexpr int rounds = 40;
  constexpr int processes = 4;
  int stored = 300;
  int refused = 0;
  for (int round = 0; round < rounds; ++round) {
    std::vector<pid_t> children;
    children.reserve(processes);
    for (int process = 0; process < processes; ++process) {
      children.push_back(start_child([&] {
        if (open_database() != 0) {
          const std::vector<std::string> messages = interface.take_messages();
          _exit(messages.size() == 1 && messages[0].find("database is locked") != std::string::npos ? 2 : 3);
        }
        add_stations(1000 + round * processes + process, 1001 + round * processes + process);
        EXPECT_EQ(close_database(), 0);
      }));
    }
    for (const pid_t child : children) {
      const int status = wait_for_child(child);
      EXPECT_TRUE(status == 0 || status == 2) << status;
      stored += status == 0 ? 1 : 0;
      refused += status == 2 ? 1 : 0;
    }
  }
  EXPECT_EQ(stations_after_opening(survey), stored);
  EXPECT_GE(stored, 300 + rounds / 2);
  EXPECT_GT(refused, 0);
  EXPECT_EQ(names_in(folder.folder()), (std::set<std::string>{"survey.bak", "survey.mdb"}));
}

TEST_F(LostGround, A_private_copy_that_a_kill_has_left_goes_with_the_next) {
  make_survey_with_stations("survey.mdb", 3);
  fs::create_directory(folder.folder() / "temporary");
  setenv("TMPDIR", folder.path("temporary").c_str(), 1);
  const ScopeGuard as_before([] { unsetenv("TMPDIR"); });
  EXPECT_EQ(wait_for_child(start_child([&] {
              EXPECT_EQ(open_database(OpenFor::reading), 0);
              raise(SIGKILL);
            })),
            -1);
  const fs::path left = fs::directory_iterator(folder.folder() / "temporary")->path();
  ASSERT_TRUE(fs::exists(left / "survey.mdb"));
  ASSERT_EQ(open_database(OpenFor::reading), 0);
  EXPECT_FALSE(fs::exists(left));
  {
    const PrivateFolder another;
    EXPECT_TRUE(fs::exists(working_file())) << "one that is in use stays";
  }
  EXPECT_EQ(close_database(), 0);
  EXPECT_TRUE(fs::is_empty(folder.folder() / "temporary"));
}
