#include "exchange/export_entries.h"

#include "core/session_state.h"
#include "tests/support/survey_fixture.h"

using namespace Module_exchange;

namespace {

class ExportEntriesTest : public SurveyTest {
 protected:
  ExportEntriesTest() {
    new_survey();
    session().current_line = "200E";
    session().current_reference_type = 1;
    session().current_dipole = 50.0F;
    entries.folder = "out";
  }

  ExportLists lists{
      {"200E", "400E"}, {0, 1}, {25.0F, 50.0F}, {{"200E", 1, 50.0F}, {"400E", 0, 25.0F}, {"400E", 1, 50.0F}}};
  ExportEntries entries;
};

TEST_F(ExportEntriesTest, Follow_what_is_imported_and_removed) {
  begin_export({}, entries);  // before anything is imported
  EXPECT_TRUE(entries.lines.empty());
  begin_export(lists, entries);
  EXPECT_EQ(entries.lines, std::vector<std::string>{"200E"});
  EXPECT_EQ(entries.reference_type, 1);  // that of the main window, though there is a 0 as well
  EXPECT_EQ(entries.dipole, 50.0F);
  EXPECT_EQ(choices_of(lists, entries, {}).lines.size(), 1U);

  entries.lines = {"400E"};
  entries.reference_type = 0;
  entries.dipole = 25.0F;
  begin_export(lists, entries);  // what is chosen stays while the survey has it
  EXPECT_EQ(entries.lines, std::vector<std::string>{"400E"});
  EXPECT_EQ(entries.reference_type, 0);
  EXPECT_EQ(entries.dipole, 25.0F);

  begin_export({{"200E"}, {1}, {100.0F}, {{"200E", 1, 100.0F}}}, entries);
  EXPECT_EQ(entries.lines, std::vector<std::string>{"200E"});
  EXPECT_EQ(entries.reference_type, 1);
  EXPECT_EQ(entries.dipole, 100.0F);
}

TEST_F(ExportEntriesTest, Rotate_what_has_axes_and_nothing_else) {
  begin_export(lists, entries);
  entries.rotate = true;
  entries.rotation = "30";
  struct Case {
    ExportFormat format;
    std::int32_t reduction;
    bool rotates;
  };
  using Module_database::reduction_merged;
  for (const Case& c : {Case{ExportFormat::edi, reduction_merged, true},
                        {ExportFormat::emtf_xml, reduction_merged, true},
                        {ExportFormat::csv, reduction_merged, true},
                        {ExportFormat::csv, Module_database::reduction_raw, false},
                        {ExportFormat::geojson, reduction_merged, false},
                        {ExportFormat::kml, reduction_merged, false}}) {
    SCOPED_TRACE(static_cast<int>(c.format));
    entries.format = c.format;
    entries.reduction = c.reduction;
    EXPECT_EQ(choices_of(lists, entries, {}).rotation, c.rotates ? std::optional(30.0) : std::nullopt);
    entries.rotation = "400";
    EXPECT_EQ(fault_of_rotation(entries).empty(), !c.rotates) << "what isn't asked can't be wrong";
    entries.rotation = "30";
  }
}

TEST_F(ExportEntriesTest, Tell_where_a_folder_is_that_isnt_a_whole_path) {
  EXPECT_EQ(whole_folder(entries), folder.path("out"));
  EXPECT_EQ(hint_of_folder(entries), "Will be made: " + folder.path("out"));
  std::filesystem::create_directory(folder.path("out"));
  EXPECT_EQ(hint_of_folder(entries), folder.path("out"));
  entries.folder = " " + folder.path("out");
  EXPECT_EQ(hint_of_folder(entries), "");
  entries.folder = folder.path("new");
  EXPECT_EQ(hint_of_folder(entries), "Will be made");
  entries.folder = " ";
  EXPECT_EQ(whole_folder(entries) + hint_of_folder(entries), "");
}

}  // namespace
