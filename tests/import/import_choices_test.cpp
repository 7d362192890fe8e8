// What is chosen before an import: the files, the meaning of their names, and where they are looked for.
#include <memory>

#include <gtest/gtest.h>

#include "core/session_state.h"
#include "import/decode_table.h"
#include "import/import_entries.h"
#include "import/import_files.h"
#include "import/quiet_interface.h"
#include "platform/settings_store/settings_store.h"
#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

using namespace Module_data_file;

TEST(Quiet_interface, Lets_progress_through_and_no_message) {
  RecordingInterface interface;
  {
    const QuietInterface quiet;
    user_interface().show_message("a fault");
    EXPECT_FALSE(user_interface().ask_yes_no("Go on?"));
    user_interface().show_progress("a.edi", 0);
    user_interface().show_progress("a.edi", 40);
    user_interface().show_progress("", -1);  // of one file of many: the work goes on
  }
  EXPECT_EQ(interface->progress_texts, (std::vector<std::string>{"a.edi: 0 %", "a.edi: 40 %"}));
  EXPECT_TRUE(interface.take_messages().empty() && interface->questions.empty());
  user_interface().show_message("later");
  EXPECT_EQ(interface.take_messages(), std::vector<std::string>{"later"});
}

TEST(Decode_table, Takes_whole_columns_and_refuses_what_is_none) {
  DecodeRow row;
  struct Case {
    const char* typed;
    bool taken;
    std::int32_t column;
  };
  for (const Case& c : {Case{"3", true, 3},
                        {" 12 ", true, 12},
                        {"2.5", true, 3},
                        {"0", true, 0},
                        {"-1", false, 0},
                        {"", false, 0},
                        {"two", false, 0},
                        {"1e9", false, 0},
                        {"nan", false, 0}}) {
    SCOPED_TRACE(c.typed);
    row.start_column = row.width = 7;
    for (const DecodeColumn column : {column_start, column_width}) {
      EXPECT_EQ(set_decode_cell(row, column, c.typed), c.taken);
    }
    EXPECT_EQ(row.start_column, c.taken ? c.column : 7);
    EXPECT_EQ(row.width, row.start_column);
  }
  EXPECT_TRUE(set_decode_cell(row, column_specify, " 200W "));
  EXPECT_EQ(decode_cell_text(row, column_specify), "200W");
}

TEST(Import_entries, Of_the_last_import_come_back_as_they_were) {
  install_settings_store(std::make_unique<MemorySettingsStore>());
  EXPECT_FALSE(last_import_entries());
  ImportChoices kept;
  kept.decode[decode_line_number] = {true, 2, 4, ""};
  kept.decode[decode_event] = {false, 1, 3, "5"};
  kept.decode[decode_sample_rate] = {false, 0, 0, "a\tb"};
  kept.line_direction = LineDirection::local_north;
  kept.stations_by = StationsBy::distance;
  kept.start_station = "100";
  kept.station_step = "50";
  keep_import_entries(kept);
  const auto entries = last_import_entries();
  ASSERT_TRUE(entries);
  ImportChoices again;
  take_entries(*entries, again);
  EXPECT_EQ(again.decode[decode_line_number], kept.decode[decode_line_number]);
  EXPECT_EQ(again.decode[decode_event], kept.decode[decode_event]);
  EXPECT_EQ(again.decode[decode_sample_rate].specified, "a b") << "tabs part the fields";
  EXPECT_EQ(again.line_direction, LineDirection::local_north);
  EXPECT_EQ(again.stations_by, StationsBy::distance);
  EXPECT_EQ(again.start_station, "100");
  EXPECT_EQ(again.station_step, "50");
  install_settings_store(std::make_unique<MemorySettingsStore>());
}

TEST(Import_files, A_folder_gives_its_files_of_the_extension_as_people_count) {
  const TemporaryFolder folder;
  for (const char* const name : {"s10.edi", "s2.EDI", "s1.edi", "s1.edit", "sedi", "below/s3.edi"}) {
    (void)folder.write(name, "");
  }
  const std::string path = folder.folder().string();
  const std::vector<std::string> edi{"s1.edi", "s2.EDI", "s10.edi"};
  for (const char* const typed : {"edi", ".edi", "*.edi", " EDI "}) {
    EXPECT_EQ(files_in_folder(path, typed), edi) << typed;
  }
  EXPECT_EQ(files_in_folder(path, "").size(), 5U);
  EXPECT_TRUE(files_in_folder(folder.path("gone"), "edi").empty());
}

TEST(Import_files, The_list_holds_each_file_once_in_the_order_of_adding) {
  ImportFileList list;
  list.add({"/a/2", "/a/1"});
  list.add({"/a/1", "/b/1"});
  EXPECT_EQ(list.paths(), (std::vector<std::string>{"/a/2", "/a/1", "/b/1"}));
  list.remove({0, 2, 9});
  EXPECT_EQ(list.paths(), std::vector<std::string>{"/a/1"});
  list.add({"/a/2"});  // removed ones can come back
  EXPECT_EQ(list.paths().size(), 2U);
}

TEST(Import_files, Start_where_the_last_import_was_or_else_at_the_survey) {
  const auto earlier = install_settings_store(std::make_unique<MemorySettingsStore>());
  const TemporaryFolder folder;
  reset_session_state();
  session().database_file = "/surveys/one.mdb";
  EXPECT_EQ(import_start_folder(), "/surveys/");
  EXPECT_EQ(import_extension(), "edi");
  keep_import_folder(folder.folder().string());
  keep_import_extension("");
  EXPECT_EQ(import_start_folder(), folder.folder().string());
  EXPECT_EQ(import_extension(), "");
  keep_import_folder(folder.path("gone"));
  EXPECT_EQ(import_start_folder(), "/surveys/");
  EXPECT_EQ(settings_store().value("Marrowgate", "Brenlox", "ImportDirectory", ""), folder.path("gone"));
}
