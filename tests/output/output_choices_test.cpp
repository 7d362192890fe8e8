#include "output/output_choices.h"

#include <filesystem>

#include "output/rhoplus.h"
#include "output/zonge.h"
#include "tests/reduction/made_line.h"
#include "tests/support/survey_fixture.h"

using namespace Module_output;

namespace {

void add_file_row(const std::string& line, double station, float dipole) {
  dao::Recordset& files = Module_database::open_survey().files;
  files.add_new();
  files.set_text("LineNumber", line);
  files.set_double("Station", station);
  files.set_long("ReferenceType", 0);
  files.set_single("DipoleLength", dipole);
  files.update();
}

using Texts = std::vector<std::string>;

}  // namespace

TEST_F(SurveyTest, The_output_panel_asks_for_what_is_missing_in_its_order) {
  new_survey();
  OutputLists lists;
  EXPECT_EQ(read_output_lists(lists), -1);
  EXPECT_EQ(interface.take_messages(), Texts{"There is no data in the database"});

  add_file_row("400E", 100.0, 50.0F);
  add_file_row("200E", 100.0, 33.3F);
  add_file_row("200E", 200.0, 33.3F);
  ASSERT_EQ(read_output_lists(lists), 0);
  EXPECT_EQ(lists.lines, (Texts{"200E", "400E"}));
  EXPECT_EQ(lists.dipoles, (std::vector<float>{33.3F, 50.0F}));

  const std::pair<OutputChoices, const char*> cases[] = {
      {{-1, -1, -1, ""}, "Please select which line to output"},
      {{0, -1, -1, ""}, "Please select which data type to output"},
      {{0, 0, -1, ""}, "Please select which dipole to output"},
      {{-1, 0, 0, ""}, "Please select which line to output"}};
  for (const auto& [choices, message] : cases) {
    EXPECT_EQ(write_chosen_zonge(lists, choices, {}), -1);
    EXPECT_EQ(interface.take_messages(), Texts{message});
  }
  EXPECT_TRUE(interface->file_dialogs.empty());
}

TEST_F(SurveyTest, The_output_panel_offers_a_line_once_and_also_one_whose_files_are_not_known) {
  new_survey();
  dao::Recordset& readings = Module_database::open_survey().readings;
  readings.add_new();
  readings.set_text("LineNumber", "400E");
  readings.set_single("DipoleLength", 25.0F);
  readings.update();
  add_file_row("200E", 100.0, 50.0F);
  add_file_row("200e", 200.0, 50.0F);
  OutputLists lists;
  ASSERT_EQ(read_output_lists(lists), 0);
  EXPECT_EQ(lists.lines, (Texts{"200E", "400E"}));
  EXPECT_EQ(lists.dipoles, (std::vector<float>{25.0F, 50.0F}));
}

TEST_F(SurveyTest, A_chosen_line_is_written_only_over_a_file_that_may_go) {
  new_survey();
  add_file_row("200E", 100.0, 50.0F);
  (void)made::store(made::key(), 0, made::reading({}));
  session().current_data_type = "ExHy";
  OutputLists lists;
  ASSERT_EQ(read_output_lists(lists), 0);
  session().current_data_type = "ExHy";
  const OutputChoices choices{0, 0, 0, folder.folder().string()};

  EXPECT_EQ(write_chosen_zonge(lists, choices, {}), 0);  // cancelled
  EXPECT_TRUE(interface.take_messages().empty());
  ASSERT_EQ(interface->file_dialogs.size(), 1U);
  EXPECT_EQ(interface->file_dialogs[0].suggested_name, "200E_0_ExHy.avg");
  EXPECT_EQ(interface->file_dialogs[0].title, "Enter Name Output Data File");

  const std::string path = folder.write("line.avg", "earlier");
  interface->path_answers = {path};
  EXPECT_EQ(write_chosen_zonge(lists, choices, {}), 0);  // No to overwriting
  EXPECT_EQ(interface->questions, Texts{"The specified file already exists, overwrite? line.avg is in " +
                                        folder.folder().string()});
  EXPECT_EQ(file_contents(path), "earlier");

  interface->path_answers = {path};
  interface->yes_no_answers = {true};
  EXPECT_EQ(write_chosen_zonge(lists, choices, {}), 0);
  EXPECT_EQ(interface.take_messages(),
            Texts{"Data output completed. 0 rows written to " + path + ", with line.mde and line.stn"});
  EXPECT_NE(file_contents(path), "earlier");
  EXPECT_TRUE(std::filesystem::exists(folder.path("line.mde")));
}

TEST_F(SurveyTest, Output_tells_once_of_curves_whose_readings_are_all_switched_off) {
  new_survey();
  made::store_line(3);
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE ReductionType = 0 AND SampleRate = 64 AND Station < 300");
  for (; !rows.eof(); rows.move_next()) {
    rows.edit();
    rows.set_bit("UseReading", false);
    rows.update();
  }
  const Module_database::LineSelection line{"200E", 0, "ExHy", 50.0F};
  const std::string told =
      "No reading is in use, and the earlier curve remains: station 100, ExHy, 64 Hz; station 200, ExHy, 64 "
      "Hz";
  int row_count = 0;
  ASSERT_EQ(output_zonge(line, folder.path("line.avg"), {}, row_count), 0);
  EXPECT_EQ(interface.take_messages(), Texts{told});
  RhoplusCounts counts;
  ASSERT_EQ(output_rhoplus(line, folder.path("rhoplus"), {}, {}, counts, {}), 0);
  EXPECT_EQ(interface.take_messages(), Texts{told});
  EXPECT_EQ(counts.stations, 3);
}

TEST_F(SurveyTest, After_a_stop_the_panel_says_what_is_written) {
  new_survey();
  for (const double station : {100.0, 200.0, 300.0}) {
    add_file_row("200E", station, 50.0F);
    made::store(made::key(0.0F, station), 0, made::reading({{10.0F, 50.0F, 45.0F}}), 2, -1);
  }
  OutputLists lists;
  ASSERT_EQ(read_output_lists(lists), 0);
  session().current_data_type = "ExHy";
  const OutputChoices choices{0, 0, 0, folder.path("chosen")};
  std::vector<int> shown;
  const auto show = [&](int rows) { shown.push_back(rows); };
  int asked = 0;
  interface->stop = [&] { return ++asked == 3; };  // before the third station

  interface->path_answers = {folder.path("line.avg")};
  EXPECT_EQ(write_chosen_zonge(lists, choices, show), 0);
  EXPECT_EQ(interface.take_messages(), Texts{"Stopped; nothing was written"});
  EXPECT_EQ(shown, (std::vector<int>{0, 1, 2, 0}));
  EXPECT_FALSE(std::filesystem::exists(folder.path("line.avg")));

  asked = 0;
  shown.clear();
  EXPECT_EQ(write_chosen_rhoplus(lists, choices, {}, "sub", show), 0);
  EXPECT_EQ(interface.take_messages(), Texts{"Stopped. 2 control files with 2 rows written to " +
                                             folder.path("chosen/sub") + ", with tmd_run.bat"});
  EXPECT_EQ(shown.back(), 2);
  EXPECT_FALSE(std::filesystem::exists(folder.path("chosen/sub/tmd_300.dat")));

  EXPECT_EQ(write_chosen_rhoplus(lists, choices, {}, " " + folder.path("elsewhere") + " ", show), 0);
  EXPECT_EQ(interface.take_messages(),
            Texts{"Data output completed. 3 control files with 3 rows written to " +
                  folder.path("elsewhere") + ", with tmd_run.bat"});
  EXPECT_TRUE(std::filesystem::exists(folder.path("elsewhere/tmd_300.dat")));
  std::filesystem::remove(folder.path("elsewhere/tmd_300.dat"));
  EXPECT_EQ(write_chosen_rhoplus(lists, choices, {}, folder.path("elsewhere"), show), 0);
  EXPECT_TRUE(interface.take_messages().at(0).ends_with(", with tmd_run.bat, in place of 2 earlier files"));
}
