// Files of one name from different folders: each keeps its readings, in one import and over several.
#include <filesystem>
#include <map>

#include "import/report_groups.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/import/import_fixture.h"
#include "tests/import/readers/made_fields.h"

using namespace Module_data_file;

namespace {

using Module_database::open_survey;

class Namesakes : public ImportRun {
 protected:
  Namesakes() { choices.stations_by = StationsBy::sectid; }

  std::string add(const std::string& path, const std::string& sectid) {
    std::filesystem::create_directories(std::filesystem::path(folder.path(path)).parent_path());
    return folder.write(path, made_edi({MadeSection{.sectid = sectid}}));
  }

  /// The station of the raw readings of each file of the survey; a file without exactly the four readings of
  /// one station fails.
  static std::map<std::string, double> files() {
    std::map<std::string, double> stations;
    dao::Recordset rows = open_survey().database.open_recordset("SELECT * FROM FileTable");
    for (; !rows.eof(); rows.move_next()) {
      const std::string readings = "ReadingsDataTable WHERE FileID = " + std::to_string(rows.get_long("ID"));
      const std::vector<double> places = column_of("Station", readings);
      EXPECT_EQ(places.size(), 4U) << rows.get_text("SurveyFile");
      EXPECT_TRUE(
          stations.emplace(rows.get_text("SurveyFile"), places.empty() ? -1.0 : places.front()).second);
    }
    EXPECT_EQ(raw_readings(), static_cast<std::int32_t>(4 * stations.size()));
    return stations;
  }
  using Files = std::map<std::string, double>;
};

}  // namespace

TEST_F(Namesakes, Take_the_shortest_tail_of_their_path_that_tells_them_apart) {
  ASSERT_EQ(import({add("a/north/01.edi", "1"), add("a/south/01.EDI", "2"), add("b/south/01.edi", "3"),
                    add("a/south/02.edi", "4")}),
            0);
  EXPECT_EQ(files(),
            (Files{{"north/01.edi", 1}, {"a/south/01.EDI", 2}, {"b/south/01.edi", 3}, {"02.edi", 4}}));
  EXPECT_FALSE(report.has_remarks());
}

TEST_F(Namesakes, Are_there_once_whatever_is_imported_again) {
  const std::string north = add("north/01.edi", "1");
  const std::string south = add("south/01.edi", "2");
  ASSERT_EQ(import({north}), 0);
  EXPECT_EQ(files(), (Files{{"01.edi", 1}}));
  ASSERT_EQ(import({north, south}), 0);
  EXPECT_EQ(files(), (Files{{"north/01.edi", 1}, {"south/01.edi", 2}}));
  EXPECT_EQ(replaced_line(report.files.at(0)),
            "4 readings of an earlier import replaced, there named '01.edi'");
  EXPECT_NE(report_text(report).find("there named '01.edi'"), std::string::npos);
  EXPECT_EQ(replaced_line(report.files.at(1)), "");
  EXPECT_EQ(report.files_replaced(), 1);
  ASSERT_EQ(import({south}), 0);
  EXPECT_EQ(files(), (Files{{"north/01.edi", 1}, {"01.edi", 2}}));
  ASSERT_EQ(import({south, north}), 0);
  EXPECT_EQ(files(), (Files{{"north/01.edi", 1}, {"south/01.edi", 2}}));
  ASSERT_EQ(import({north}), 0);
  EXPECT_EQ(files(), (Files{{"01.edi", 1}, {"south/01.edi", 2}}));
  // The bare name is the other site's; two files of one name couldn't be told apart any more.
  for (int round = 0; round < 2; ++round) {
    ASSERT_EQ(import({south}), 0);
    EXPECT_EQ(files(), (Files{{"01.edi", 1}, {"south/01.edi", 2}}));
  }
  EXPECT_EQ(report.files.at(0).replaced_name, "south/01.edi");
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType = 1"), 8);
}

TEST_F(Namesakes, With_an_apostrophe_or_apart_by_case_alone) {
  const std::vector<std::string> both{add("O'Neil/01.edi", "1"), add("north/01.edi", "2")};
  const std::vector<std::string> cases{add("case/1.edi", "3"), add("case/1.EDI", "4")};
  for (int round = 0; round < 2; ++round) {
    SCOPED_TRACE(round);
    ASSERT_EQ(import(both), 0);
    ASSERT_EQ(import(cases), 0);
    EXPECT_EQ(files(), (Files{{"O_Neil/01.edi", 1}, {"north/01.edi", 2}, {"1.edi", 3}, {"1.EDI (2)", 4}}));
  }
  for (int round = 0; round < 2; ++round) {
    SCOPED_TRACE(round);
    for (const std::string& file : {both[0], cases[1], cases[0]}) {
      ASSERT_EQ(import({file}), 0);
    }
    EXPECT_EQ(files(), (Files{{"01.edi", 1}, {"north/01.edi", 2}, {"1.edi", 3}, {"1.EDI (2)", 4}}));
  }
  // The other way round, and with a third.
  const std::string third = add("case/1.Edi", "5");
  for (int round = 0; round < 2; ++round) {
    SCOPED_TRACE(round);
    ASSERT_EQ(import({cases[1], cases[0], third}), 0);
    EXPECT_EQ(files(),
              (Files{{"01.edi", 1}, {"north/01.edi", 2}, {"1.edi", 3}, {"1.EDI (2)", 4}, {"1.Edi (3)", 5}}));
  }
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST_F(Namesakes, A_name_longer_than_its_column_is_cut_at_the_left) {
  std::string deep;
  for (int level = 0; level < 6; ++level) {
    deep += std::string(60, static_cast<char>('a' + level)) + "/";
  }
  const std::vector<std::string> both{add("north/" + deep + "01.edi", "1"),
                                      add("south/" + deep + "01.edi", "2")};
  for (int round = 0; round < 2; ++round) {
    ASSERT_EQ(import(both), 0);
    const std::string whole = "north/" + deep + "01.edi";
    EXPECT_EQ(files(),
              (Files{{whole.substr(whole.size() - 255), 1}, {whole.substr(whole.size() - 251) + " (2)", 2}}))
        << "both are cut to the same text";
  }
}

TEST_F(Namesakes, Columns_count_in_the_bare_name) {
  choices.decode[decode_line_number] = {
      .use_file_name = true, .start_column = 2, .width = 4, .specified = ""};
  ASSERT_EQ(import({add("north/L300E.edi", "1"), add("south/L300E.edi", "2")}), 0);
  EXPECT_EQ(files(), (Files{{"north/L300E.edi", 1}, {"south/L300E.edi", 2}}));
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE LineNumber = '300E' AND FileID > 0"), 8);
}

TEST_F(Namesakes, A_file_given_twice_is_read_once) {
  const std::string file = add("01.edi", "1");
  ASSERT_EQ(import({file, folder.path("x/../01.edi")}), 0);
  EXPECT_EQ(files(), (Files{{"01.edi", 1}}));
  EXPECT_EQ(report.files.at(0).readings, 4);
  EXPECT_EQ(report.files.at(1).readings, 0);
  EXPECT_NE(report.files.at(1).failure.find("in the list twice"), std::string::npos);
}

// Repeats of a file that was imported under several events share its first row.
TEST_F(Namesakes, The_events_of_a_file_stay_together) {
  choices.decode[decode_sample_rate].specified = "4096";
  const std::string text = made_fixed_columns({{16.0, 0.25, {1e-4, 2e-4}, {}}, {1024.0, 0.5, {}, {}}});
  std::filesystem::create_directories(folder.path("north"));
  std::filesystem::create_directories(folder.path("south"));
  const std::string north = folder.write("north/01.res", text);
  const std::string south = folder.write("south/01.res", replaced(text, "  1250", "  1300"));
  for (const char* const event : {"1", "2"}) {
    choices.decode[decode_event].specified = event;
    ASSERT_EQ(import({north}), 0);
  }
  EXPECT_EQ(raw_readings(), 8);
  ASSERT_EQ(import({north, south}), 0);
  EXPECT_EQ(rows_in("FileTable WHERE SurveyFile = 'north/01.res'"), 2);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE Station = 1250 AND FileID > 0"), 8);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE Station = 1300 AND FileID > 0"), 4);
}
