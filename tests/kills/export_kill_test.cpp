// A process that exports a line over an earlier export is killed at each of its file operations: each file is
// the earlier one or the new one, whole, the survey is as it was, and the next export writes all and leaves
// nothing else.
#include <map>

#include "tests/exchange/made_export.h"
#include "tests/kills/killed_process.h"

using namespace Module_exchange;
namespace fs = std::filesystem;

namespace {

class ExportKills : public ExportTest {
 protected:
  using Files = std::map<std::string, std::string>;  // contents by name

  static Files files_in(const fs::path& folder) {
    Files files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
      files[entry.path().filename().string()] = file_contents(entry.path().string());
    }
    return files;
  }

  /// Closes the survey and leaves it so.
  void make_line() {
    for (const double station : {100.0, 200.0, 300.0}) {
      made::store_tensor(station);
      made::place_site(station, -20.4 - station / 1e4, 139.1);
    }
    survey_ = session().database_file;
    ASSERT_EQ(Module_database::close_database(), 0);
  }

  KilledProcess export_until(std::int64_t operation, const ExportChoices& what) const {
    return run_until_operation(operation, [&](const TellProgress& tell) {
      RecordingInterface asked;
      asked->yes_no_answers = {true};
      ExportResult done;
      if (open_here() && export_files(what, {}, done) == 0) {
        tell(static_cast<int>(done.files.size()));
      }
    });
  }

  /// Operations of the opening, which each export begins with.
  std::int64_t operations_before_export() const {
    return run_until_operation(0, [&](const TellProgress&) { (void)open_here(); }).operations;
  }

  /// As a survey that needs compaction, so that each opening does the same.
  bool open_here() const {
    session().database_file = survey_;
    fs::last_write_time(survey_, fs::last_write_time(survey_) - std::chrono::seconds(1));
    return Module_database::open_database() == 0;
  }

  std::string rows_of_survey() const {
    EXPECT_TRUE(open_here());
    std::string rows = made::whole_readings_table();
    EXPECT_EQ(Module_database::close_database(), 0);
    return rows;
  }

  std::string survey_;
};

}  // namespace

TEST_F(ExportKills, Leave_each_file_as_it_was_or_as_it_is_to_be) {
  make_line();
  const std::string rows = rows_of_survey();
  const std::int64_t opening = operations_before_export();
  for (const ExportFormat format : {ExportFormat::edi, ExportFormat::emtf_xml, ExportFormat::csv,
                                    ExportFormat::geojson, ExportFormat::kml}) {
    const std::string name(export_format_names.at(static_cast<std::size_t>(format)));
    SCOPED_TRACE(name);
    const bool is_map = format == ExportFormat::geojson || format == ExportFormat::kml;
    ExportChoices earlier = choices;
    earlier.format = format;
    earlier.folder = folder.path(name + "/earlier");
    ExportChoices later = earlier;
    later.folder = folder.path(name + "/later");
    later.rotation = is_map ? std::optional<double>() : 30.0;
    later.plot_link = is_map ? "plots/{station}.pdf" : "";
    ASSERT_GT(export_until(0, earlier).progress, 0);
    const KilledProcess whole = export_until(0, later);
    ASSERT_GT(whole.operations, opening + 2);
    const Files old_files = files_in(earlier.folder);
    const Files new_files = files_in(later.folder);
    ASSERT_EQ(old_files.size(), new_files.size());

    int mixed = 0;
    for (std::int64_t operation = opening + 1; operation <= whole.operations; ++operation) {
      SCOPED_TRACE(operation);
      ExportChoices over = later;
      over.folder = folder.path(name + "/over");
      fs::remove_all(over.folder);
      fs::copy(earlier.folder, over.folder);
      EXPECT_TRUE(export_until(operation, over).killed);
      const Files found = files_in(over.folder);
      std::size_t renewed = 0;
      for (const auto& [file, contents] : new_files) {
        ASSERT_TRUE(found.contains(file)) << file;
        EXPECT_TRUE(found.at(file) == contents || found.at(file) == old_files.at(file)) << file;
        renewed += found.at(file) == contents ? 1 : 0;
      }
      mixed += renewed > 0 && renewed < new_files.size() ? 1 : 0;
      EXPECT_EQ(export_until(0, over).progress, static_cast<int>(new_files.size()));
      EXPECT_TRUE(files_in(over.folder) == new_files);
      expect_sound_database(survey_);
    }
    EXPECT_TRUE(mixed > 0 || new_files.size() == 1);
  }
  EXPECT_TRUE(rows_of_survey() == rows);
}
