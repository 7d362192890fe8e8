#include "import/report_groups.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include "import/remark_kinds.h"
#include "import/report_texts.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/import/import_fixture.h"

using namespace Module_data_file;
using formats::FileReport;

namespace {

using Lines = std::vector<std::string>;

class ReportGroups : public ImportRun {
 protected:
  [[nodiscard]] std::vector<ReportGroup> groups(OptionNames names = OptionNames::batch) const {
    return report_groups(report, names);
  }
  [[nodiscard]] Lines titles() const {
    Lines list;
    for (const ReportGroup& group : groups()) {
      list.push_back(group.title());
    }
    return list;
  }
};

/// A file that was read without anything to tell.
FileReport read_file(const std::string& name) {
  FileReport file;
  file.file = name;
  file.sections = 1;
  file.readings = 4;
  return file;
}

/// Every remark and failure of the files by what it says, how often.
std::map<std::string, int> ungrouped(const ImportReport& report) {
  std::map<std::string, int> texts;
  for (const FileReport& file : report.files) {
    for (const auto* const list : {&file.unreadable, &file.ignored}) {
      for (const formats::ReportRemark& remark : *list) {
        ++texts[file.file + remark_line(remark)];
      }
    }
    if (!file.failure.empty()) {
      ++texts[file.file + file.failure];
    }
  }
  return texts;
}

std::map<std::string, int> in_groups(const ImportReport& report) {
  std::map<std::string, int> texts;
  for (const ReportGroup& group : report_groups(report, OptionNames::window)) {
    for (const ReportGroup::File& file : group.files) {
      if (group.remarks > 0) {
        for (const std::string& line : group_lines(report, group, file)) {
          ++texts[report.files[file.index].file + line];
        }
      }
    }
  }
  return texts;
}

std::vector<std::string> field_files(const std::string& folder) {
  std::vector<std::string> files;
  const std::filesystem::path path = std::filesystem::path(BRENLOX_FIELD_DATA) / "edi" / folder;
  if (std::filesystem::is_directory(path)) {
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
      files.push_back(entry.path().string());
    }
  }
  std::ranges::sort(files);
  return files;
}

}  // namespace

TEST(RemarkKinds, Are_the_words_without_what_comes_from_the_file) {
  const std::vector<Lines> kinds = {
      {"block >COH is not used", "block >TROT.EXP is not used"},
      {"'abc' is not a number, taken as absent", "'it's 12, or so' is not a number, taken as 0"},
      {"EX='14.002' has no >HMEAS or >EMEAS", "HZ='a b' has no >HMEAS or >EMEAS"},
      {"1 frequency is not above 0 Hz (-1)", "12 frequencies are not above 0 Hz (absent)"},
      {"block >RHOXX has 3 of 1 value; the rest is absent", "block >Z has 2 of 8 values; the rest is absent"},
      {"latitude 12.5, longitude 200 can't be converted: x", "latitude 1, longitude 2 can't be converted: x"},
      {"the file ends without >END"},
      {"the file doesn't exist"}};
  for (std::size_t a = 0; a < kinds.size(); ++a) {
    for (const std::string& text : kinds[a]) {
      EXPECT_EQ(remark_kind(text), remark_kind(kinds[a].front())) << text;
    }
    for (std::size_t b = 0; b < a; ++b) {
      EXPECT_NE(remark_kind(kinds[a].front()), remark_kind(kinds[b].front()));
    }
  }
  const auto common = [](const Lines& texts) {
    CommonText text;
    for (const std::string& each : texts) {
      text.add(each);
    }
    return text;
  };
  EXPECT_EQ(common(kinds[0]).text(), "block \u2026 is not used");
  EXPECT_EQ(common(kinds[0]).differing("block >TROT.EXP is not used"), ">TROT.EXP");
  EXPECT_EQ(common({kinds[0][0], kinds[0][0]}).text(), kinds[0][0]);
  EXPECT_EQ(common({kinds[0][0], kinds[0][0]}).differing(kinds[0][0]), "");
  EXPECT_EQ(common(kinds[2]).text(), "\u2026 has no >HMEAS or >EMEAS");
  EXPECT_EQ(common(kinds[3]).text(), "\u2026 frequencies are not above 0 Hz (\u2026)");
}

TEST_F(ReportGroups, What_needs_an_action_comes_first_with_the_option) {
  report.files = {read_file("a.edi"), read_file("b.edi"), read_file("c.edi"), read_file("d.edi"),
                  read_file("e.edi")};
  formats::remark_ignored(report.files[0], 3, "block >COH is not used");
  formats::remark_ignored(report.files[1], 4, "block >COH is not used");
  formats::remark_ignored(report.files[1], 5, "block >TROT is not used");
  formats::remark_unreadable(report.files[1], 6, "'x' is not a number, taken as absent");
  for (const std::size_t file : {0U, 1U}) {
    report.files[file].all_yx_phases_negative = true;
  }
  report.files[2].all_yx_phases_negative = true;
  report.files[2].sections_turned = 1;  // nothing is left to be done
  for (const std::size_t file : {2U, 3U}) {
    report.files[file].impedances_only = true;
  }
  report.files[3].curves_computed = true;
  report.files[3].replaced_readings = 4;
  report.files[3].replaced_name = "d.edi";
  report.files[4].readings = 0;
  report.files[4].failure = "the file is of no known kind";
  report.shared_stations = {{"200E", 7.0, {{"A", "a.edi"}, {"B", "b.edi", false, 1}}, {}}};
  remark_on_shared_stations(report.shared_stations, report.files);
  EXPECT_EQ(
      titles(),
      (Lines{"1 file not imported: the file is of no known kind",
             "1 station that different sites come to, as repeats",
             "2 files: all YX phases are negative, and masked", "1 file: impedances only, without curves",
             "1 file: replaced readings of an earlier import", "1 file: 'x' is not a number, taken as absent",
             "2 files: block \u2026 is not used (>COH, >TROT)"}));
  EXPECT_TRUE(report.has_remarks());
  ImportReport some;
  some.files = {read_file("a.edi"), read_file("b.edi"), read_file("c.edi")};
  some.files[0].readings = 0;
  some.files[1].failure = "the file is cut; what stands before that is stored";
  some.files[2].readings = 1;
  EXPECT_NE(counts_text(some, ImportMode::import).find(", 2 files without a reading or with an error"),
            std::string::npos);
  const std::vector<ReportGroup> of_batch = groups();
  const std::vector<ReportGroup> of_window = groups(OptionNames::window);
  EXPECT_NE(of_batch[2].advice.find("--turn-ey"), std::string::npos);
  EXPECT_NE(of_window[2].advice.find("Turn the sign of Ey where needed"), std::string::npos);
  EXPECT_NE(of_batch[3].advice.find("--from-impedance"), std::string::npos);
  EXPECT_EQ(std::ranges::count_if(of_batch, &ReportGroup::needs_action), 4);
  EXPECT_EQ(of_batch[1].places, Lines{report.shared_stations[0].text()});
  EXPECT_EQ(group_lines(report, of_batch[1], of_batch[1].files.at(0)),
            Lines{"B comes to station 7 of line 200E, as does A (a.edi)"});
  EXPECT_EQ(group_lines(report, of_batch[6], of_batch[6].files.at(1)),
            (Lines{"line 4: block >COH is not used", "line 5: block >TROT is not used"}));
  EXPECT_NE(report_text(report).find("2 files: block \u2026 is not used (>COH, >TROT)\n    a.edi\n"),
            std::string::npos);
}

TEST_F(ReportGroups, Nothing_is_lost_of_a_file_with_more_remarks_than_are_kept) {
  report.files = {read_file("a.edi")};
  for (int line = 1; line <= 250; ++line) {
    formats::remark_unreadable(
        report.files[0], line,
        formats::in_quotes("v" + std::to_string(line)) + " is not a number, taken as absent");
  }
  const std::vector<ReportGroup> all = groups();
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].remarks, 100);
  EXPECT_EQ(all[0].title().find("1 file: \u2026 is not a number, taken as absent ('v1', 'v10', "), 0U)
      << all[0].title();
  EXPECT_NE(all[0].title().find(" and 94 more)"), std::string::npos);
  EXPECT_EQ(all[1].remarks, 150);
  EXPECT_EQ(all[1].title(), "1 file: further remarks that were not kept");
  EXPECT_EQ(all[0].remarks + all[1].remarks, remark_count(report.files[0]));
}

TEST_F(ReportGroups, Field_files_are_told_in_a_few_lines_without_loss) {
  choices.stations_by = StationsBy::sectid_digits;
  struct Case {
    const char* folder;
    std::size_t most_groups;
  };
  for (const Case& c : {Case{"tensor_line", 3}, {"tensor_line_b", 3}, {"impedance_only", 2}, {"odd", 14}}) {
    SCOPED_TRACE(c.folder);
    const std::vector<std::string> files = field_files(c.folder);
    if (files.empty()) {
      GTEST_SKIP() << "the field data is not beside the checkout";
    }
    ASSERT_EQ(import(files, ImportMode::scan), 0);
    std::int64_t told = 0;
    for (const FileReport& file : report.files) {
      told += remark_count(file);
    }
    std::int64_t grouped = 0;
    for (const ReportGroup& group : groups()) {
      grouped += group.remarks;
    }
    EXPECT_GT(told, 0);
    EXPECT_EQ(grouped, told);
    EXPECT_EQ(in_groups(report), ungrouped(report));
    EXPECT_LE(groups().size(), c.most_groups) << testing::PrintToString(titles());
  }
}
