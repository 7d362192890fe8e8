#include "output/output_choices.h"

#include <filesystem>

#include "tests/reduction/made_readings.h"
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

TEST_F(SurveyTest, A_chosen_line_is_written_only_over_a_file_that_may_go) {
  new_survey();
  add_file_row("200E", 100.0, 50.0F);
  (void)made::store(made::key(), 0, made::reading({}));
  session().current_data_type = "ExHy";
  OutputLists lists;
  ASSERT_EQ(read_output_lists(lists), 0);
  const OutputChoices choices{0, 0, 0, folder.folder().string()};

  EXPECT_EQ(write_chosen_zonge(lists, choices, {}), 0);  // cancelled
  EXPECT_TRUE(interface.take_messages().empty());
  ASSERT_EQ(interface->file_dialogs.size(), 1U);
  EXPECT_EQ(interface->file_dialogs[0].suggested_name, "200E_0.avg");
  EXPECT_EQ(interface->file_dialogs[0].title, "Enter Name Output Data File");

  const std::string path = folder.write("line.avg", "earlier");
  interface->path_answers = {path};
  EXPECT_EQ(write_chosen_zonge(lists, choices, {}), 0);  // No to overwriting
  EXPECT_EQ(interface->questions, Texts{"The specified file already exists, overwrite?"});
  EXPECT_EQ(file_contents(path), "earlier");

  interface->path_answers = {path};
  interface->yes_no_answers = {true};
  EXPECT_EQ(write_chosen_zonge(lists, choices, {}), 0);
  EXPECT_EQ(interface.take_messages(), Texts{"Data output completed"});
  EXPECT_NE(file_contents(path), "earlier");
  EXPECT_TRUE(std::filesystem::exists(folder.path("line.mde")));
}
