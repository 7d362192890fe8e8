// Tables of curves that are written, imported into another survey and written again are the same to the byte.
#include "exchange/export_files.h"
#include "tests/exchange/exported_survey.h"

namespace {

class CsvRoundTrip : public ExportedSurvey {
 protected:
  /// The path of the curves of the open survey's line, once they are written.
  std::string write_curves(const std::string& name, std::int32_t reduction) {
    Module_exchange::ExportChoices exported;
    exported.format = Module_exchange::ExportFormat::csv;
    exported.lines = {choice()};
    exported.reduction = reduction;
    exported.folder = folder.path(name);
    Module_exchange::ExportResult result;
    EXPECT_EQ(export_files(exported, {}, result), 0);
    return folder.path(name + "/200E_curves.csv");
  }

  void import_into_new_survey(const std::string& name, const std::string& file, std::int32_t reduction) {
    using namespace Module_data_file;
    EXPECT_EQ(Module_database::close_database(), 0);
    new_survey(name);
    choices.ReductionType = reduction;
    choices.turn_ey = TurnEy::never;
    choices.decode = {};
    choices.decode[decode_line_number].specified = "1E";
    choices.decode[decode_event].specified = "0";
    choices.decode[decode_sample_rate].specified = "1";
    EXPECT_EQ(import({file}), 0);
    EXPECT_FALSE(report.files.at(0).has_remarks()) << remark_lines(report.files[0]).at(0);
  }
};

}  // namespace

TEST_F(CsvRoundTrip, Raw_and_merged_curves_come_back_as_they_were) {
  ASSERT_EQ(import({section_file(0, 4096, {512.0, 64.0, 8.0, 1.0}), section_file(1, 4096, {512.0, 64.0, 8.0}),
                    section_file(2, 128, {8.0, 1.0, 0.125})}),
            0);
  const std::string raw = write_curves("raw", 0);
  const std::string merged = write_curves("merged", 2);
  const std::string raw_text = file_contents(raw);
  const std::string merged_text = file_contents(merged);
  EXPECT_EQ(std::ranges::count(raw_text, '\n'), 1 + 6 * 10);  // six curves of three recordings
  EXPECT_NE(raw_text.find("ET100"), std::string::npos);
  EXPECT_NE(raw_text.find("HzHy"), std::string::npos);

  import_into_new_survey("of_raw.mdb", raw, 0);
  EXPECT_EQ(report.files[0].readings, 18);
  EXPECT_EQ(file_contents(write_curves("raw_again", 0)), raw_text);
  EXPECT_EQ(file_contents(write_curves("merged_of_raw", 2)), merged_text);

  import_into_new_survey("of_merged.mdb", merged, 2);
  EXPECT_EQ(report.files[0].readings, 6);
  EXPECT_EQ(file_contents(write_curves("merged_again", 2)), merged_text);
}
