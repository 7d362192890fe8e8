// A process that imports is killed at many moments; whatever the moment, the survey must open again, be
// sound, and hold each file either whole or not at all, and every file whose import had ended.
#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <utility>

#include "database/reading.h"
#include "import/import_run.h"
#include "import/sample_choices.h"
#include "samples/sample_survey.h"
#include "tests/kills/killed_process.h"
#include "tests/support/survey_fixture.h"

using namespace Module_data_file;

namespace {

constexpr int readings_per_file = 4;  // one for each tensor element
constexpr std::size_t file_count = 24;

ImportChoices choices() {
  ImportChoices choices = sample_choices();
  choices.stations_by = StationsBy::count;
  choices.start_station = "100";
  return choices;
}

// Passes on to the parent process how many percent of the files have been read.
class ProgressToParent final : public UserInterface {
 public:
  explicit ProgressToParent(TellProgress tell) : tell_(std::move(tell)) {}
  void show_message(const std::string& /*text*/) override {}
  bool ask_yes_no(const std::string& /*question*/) override { return false; }
  std::string select_file_to_open(const FileDialogRequest& /*request*/) override { return {}; }
  std::string select_file_to_create(const FileDialogRequest& /*request*/) override { return {}; }
  void set_busy_pointer(bool /*busy*/) override {}
  void process_events() override {}
  void show_progress(std::string_view what, int percent) override {
    if (what == "Importing data files") {
      tell_(percent);
    }
  }
  bool stop_requested() override { return false; }

 private:
  TellProgress tell_;
};

void import_all(const std::string& survey, const std::vector<std::string>& files) {
  session().database_file = survey;
  ImportReport report;
  if (Module_database::open_database() == 0) {
    (void)run_import(choices(), files, ImportMode::import, report);
    (void)Module_database::close_database();
  }
}

KilledProcess kill_an_import(const std::string& survey, const std::vector<std::string>& files,
                             std::int64_t operation) {
  return run_until_operation(operation, [&](const TellProgress& tell) {
    install_user_interface(std::make_unique<ProgressToParent>(tell));
    import_all(survey, files);
  });
}

// Readings of each file and the first resistivity of each, from an opened survey.
struct FileContents {
  int readings = 0;
  std::set<float> first_resistivities;
};

std::map<std::string, FileContents> stored_files() {
  std::map<std::int32_t, std::string> names;
  Module_database::OpenSurvey& survey = Module_database::open_survey();
  std::map<std::string, FileContents> files;
  for (survey.files.move_first(); !survey.files.eof(); survey.files.move_next()) {
    names[survey.files.get_long("ID")] = survey.files.get_text("SurveyFile");
    files[survey.files.get_text("SurveyFile")];
  }
  dao::Recordset readings = survey.database.open_recordset("SELECT * FROM ReadingsDataTable WHERE FileID>0");
  for (; !readings.eof(); readings.move_next()) {
    const auto reading = Module_database::read_reading(readings);
    EXPECT_GT(reading.curve.count(), 0U);
    FileContents& file = files[names.at(reading.FileID)];
    ++file.readings;
    file.first_resistivities.insert(reading.curve.value(Module_database::field_resistivity, 0));
  }
  return files;
}

class ImportKills : public SurveyTest {
 protected:
  // The first field files of the made survey with a seed; other seeds give the same names and other values.
  std::vector<std::string> write_files(const std::string& subfolder, std::uint64_t seed) {
    std::vector<Module_samples::SampleFile> made = Module_samples::make_sample_survey(seed);
    made.resize(std::min(made.size(), file_count));
    std::vector<std::string> paths;
    paths.reserve(made.size());
    for (const Module_samples::SampleFile& file : made) {
      paths.push_back(folder.write(subfolder + "/" + file.name, file.text));
    }
    std::sort(paths.begin(), paths.end());
    return paths;
  }

  /// Under a name of its own, as a killed process leaves a log beside its file.
  std::string copy_of(const std::string& survey) {
    std::string copy = folder.path("copy_" + std::to_string(++copies_) + ".mdb");
    std::filesystem::copy_file(survey, copy);
    return copy;
  }

  std::map<std::string, FileContents> contents_after_opening(const std::string& survey) {
    session().database_file = survey;
    EXPECT_EQ(Module_database::open_database(), 0);
    EXPECT_TRUE(interface.take_messages().empty());
    std::map<std::string, FileContents> files = stored_files();
    EXPECT_EQ(Module_database::close_database(), 0);
    return files;
  }

 private:
  int copies_ = 0;
};

std::string name_of(const std::string& path) { return std::filesystem::path(path).filename().string(); }

}  // namespace

TEST_F(ImportKills, Files_whose_import_had_ended_are_whole_and_others_absent) {
  const std::vector<std::string> files = write_files("first", 1);
  const std::string survey = new_survey();
  ASSERT_EQ(Module_database::close_database(), 0);

  std::mt19937 random(7);
  std::uniform_int_distribution<std::int64_t> moments(1,
                                                      kill_an_import(copy_of(survey), files, 0).operations);
  int killed_among_files = 0;
  for (int round = 0; round < 25; ++round) {
    SCOPED_TRACE(round);
    const std::string copy = copy_of(survey);
    const KilledProcess kill = kill_an_import(copy, files, moments(random));
    const auto stored = contents_after_opening(copy);
    expect_sound_database(copy);
    killed_among_files += kill.killed && !stored.empty() && stored.size() < files.size() ? 1 : 0;
    for (const auto& [name, contents] : stored) {
      EXPECT_EQ(contents.readings, readings_per_file) << name;
    }
    // Progress counts the bytes read, so the last file that it counts may still await its commit.
    const auto counted = static_cast<std::size_t>(kill.progress) * files.size() / 100;
    const std::size_t ended = counted > 0 ? counted - 1 : 0;
    for (std::size_t index = 0; index < ended; ++index) {
      EXPECT_TRUE(stored.contains(name_of(files[index]))) << files[index];
    }
  }
  EXPECT_GT(killed_among_files, 0);
}

TEST_F(ImportKills, An_import_of_the_same_files_again_leaves_old_or_new_readings) {
  const std::vector<std::string> old_files = write_files("old", 1);
  const std::vector<std::string> new_files = write_files("new", 2);
  const std::string survey = new_survey();
  ASSERT_EQ(Module_database::close_database(), 0);
  import_all(survey, old_files);
  const auto old_contents = contents_after_opening(survey);
  ASSERT_EQ(old_contents.size(), old_files.size());
  const std::string after = folder.path("after.mdb");
  std::filesystem::copy_file(survey, after);
  import_all(after, new_files);
  const auto new_contents = contents_after_opening(after);
  ASSERT_EQ(new_contents.size(), new_files.size());

  std::mt19937 random(11);
  std::uniform_int_distribution<std::int64_t> moments(
      1, kill_an_import(copy_of(survey), new_files, 0).operations);
  int mixed_rounds = 0;
  for (int round = 0; round < 25; ++round) {
    SCOPED_TRACE(round);
    const std::string copy = copy_of(survey);
    EXPECT_TRUE(kill_an_import(copy, new_files, moments(random)).killed);
    const auto stored = contents_after_opening(copy);
    expect_sound_database(copy);
    std::size_t renewed = 0;
    ASSERT_EQ(stored.size(), old_files.size());
    for (const auto& [name, contents] : stored) {
      EXPECT_EQ(contents.readings, readings_per_file) << name;
      const bool is_old = contents.first_resistivities == old_contents.at(name).first_resistivities;
      const bool is_new = contents.first_resistivities == new_contents.at(name).first_resistivities;
      EXPECT_TRUE(is_old != is_new) << name;
      renewed += is_new ? 1 : 0;
    }
    mixed_rounds += renewed > 0 && renewed < stored.size() ? 1 : 0;
  }
  EXPECT_GT(mixed_rounds, 0);
}
