#include "survey_edits/rename.h"

#include "core/undo_stack.h"
#include "tests/survey_edits/edited_survey.h"

using namespace Module_survey_edits;

namespace {

struct Place {
  double x, y, map_x, map_y;
  bool operator==(const Place&) const = default;
};

Place place_of(const std::string& table, const std::string& line, double station) {
  const dao::Recordset row = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM " + table + " WHERE SurveyLine = '" + line +
      "' AND Station = " + std::to_string(station));
  return row.eof() ? Place{}
                   : Place{row.get_double("LocalX"), row.get_double("LocalY"), row.get_double("MapX"),
                           row.get_double("MapY")};
}

}  // namespace

TEST_F(EditedSurvey, New_names_are_brought_into_form_and_those_that_exist_are_refused) {
  new_survey();
  import_all(lines());
  struct Case {
    const char* line;
    const char* typed;
    const char* name;
    const char* fault;
  };
  for (const Case& each :
       {Case{"200e", "250", "250E", ""}, Case{"200E", "-250", "250W", ""}, Case{"300N", "-20", "20S", ""},
        Case{"300N", " 20e ", "20E", ""}, Case{"200E", "300n", "", "The survey has a line 300N already"},
        Case{"200E", "200e", "", "This is the line's name already"},
        Case{"200E", "north", "", "The supplied Line number suffix is not valid"},
        Case{"200E", "999999999", "999999999E", ""},
        Case{"200E", "-1e9", "", "The line number must not be above 999999999"},
        Case{"200E", "1000000000N", "", "The line number must not be above 999999999"},
        Case{"200E", "", "", "The supplied Line number suffix is not valid"}}) {
    SCOPED_TRACE(each.typed);
    const NewLine name = new_line_name(each.line, each.typed);
    EXPECT_EQ(name.fault, each.fault);
    if (name.fault.empty()) {
      EXPECT_EQ(name.line, each.name);
    }
  }
  EXPECT_EQ(new_station_number("200E", 100, "-12.5").station, -12.5);
  EXPECT_EQ(new_station_number("200e", 100, "300").fault, "Line 200e has a station 300 already");
  EXPECT_EQ(new_station_number("200E", 100, "100").fault, "This is the station's number already");
  for (const char* const text : {"", "x", "1e999", "12 13"}) {
    EXPECT_EQ(new_station_number("200E", 100, text).fault, "The station number is not valid") << text;
  }
  for (const char* const text : {"1e9", "-1000000000", "1e300"}) {
    EXPECT_EQ(new_station_number("200E", 100, text).fault,
              "The station number must be from -999999999 to 999999999")
        << text;
  }
  EXPECT_EQ(new_station_number("200E", 100, "-999999999").fault, "");
}

TEST_F(EditedSurvey, A_renamed_line_is_as_if_it_had_been_imported_so) {
  struct Case {
    const char* from;
    const char* to;
  };
  // To the other side, to the other axis, and onto places that another line has.
  for (const Case& each : {Case{"200e", "250W"}, Case{"200E", "40N"}, Case{"300N", "100N"}}) {
    SCOPED_TRACE(each.to);
    new_survey(std::string("renamed") + each.to + ".mdb");
    import_all(lines());
    Module_Brenlox::push_undo_static(1, 1.0F);
    Module_database::open_survey().database.execute(  // as names of files may spell it
        "UPDATE FileTable SET LineNumber = '200e' WHERE LineNumber = '200E' AND EventNumber = 2");
    ASSERT_EQ(rename_line(each.from, each.to), 0);
    EXPECT_EQ(Module_Brenlox::undo_count(), 0U);
    std::vector<std::string> renamed = meaning();
    new_survey(std::string("imported") + each.to + ".mdb");
    std::vector<MadeFile> files = lines();
    for (MadeFile& file : files) {
      file.line = upper_case(file.line) == upper_case(each.from) ? each.to : file.line;
    }
    import_all(files);
    // Which station gave a shared place its name depends on the order.
    const auto is_place = [](const std::string& row) { return row.find("LocationLookupTable|") == 0; };
    std::vector<std::string> imported = meaning();
    for (std::vector<std::string>* const rows : {&renamed, &imported}) {
      std::erase_if(*rows, is_place);
      for (std::string& row : *rows) {
        row = row.substr(0, row.find(" in "));
      }
    }
    EXPECT_EQ(difference(renamed, imported), "");
    EXPECT_EQ(rows_in("ReadingsDataTable WHERE LocationID NOT IN (SELECT ID FROM LocationLookupTable)"), 0);
  }
}

TEST_F(EditedSurvey, Places_on_the_map_that_a_file_gave_stay_and_shared_locations_part) {
  new_survey();
  import_all(lines());
  dao::Database& database = Module_database::open_survey().database;
  for (const char* const table : {"StationsTable", "LocationLookupTable"}) {
    database.execute("UPDATE " + std::string(table) +
                     " SET MapX = 200, MapY = 300 WHERE LocalX = 200 AND LocalY = 300");
  }
  database.execute(
      "UPDATE StationsTable SET MapX = 5000, MapY = 6000 WHERE SurveyLine = '200E' AND Station = 100");
  ASSERT_EQ(rename_line("200E", "250E"), 0);
  EXPECT_EQ(place_of("StationsTable", "250E", 100), (Place{250, 100, 5000, 6000}));
  EXPECT_EQ(place_of("LocationLookupTable", "250E", 100), (Place{250, 100, 5000, 6000}));
  EXPECT_EQ(place_of("StationsTable", "250E", 300), (Place{250, 300, 250, 300}));
  EXPECT_EQ(place_of("LocationLookupTable", "300N", 200), (Place{200, 300, 200, 300}));  // took it over
  EXPECT_EQ(rows_in("LocationLookupTable"), 4);

  ASSERT_EQ(rename_station("300N", 200, 250), 0);  // they meet again
  EXPECT_EQ(rows_in("LocationLookupTable"), 3);
  const dao::Recordset places = database.open_recordset(
      "SELECT DISTINCT LocationID FROM ReadingsDataTable WHERE LineNumber = '300N' AND "
      "Station = 250");
  EXPECT_EQ(places.get_long("LocationID"),
            Module_database::find_station(Module_database::StationSearch::look_up, "250E", 300).LocationID);
  for (const char* const table : {"SitesTable WHERE SurveyLine = '300N' AND Station = 250",
                                  "FileTable WHERE LineNumber = '300N' AND Station = 250"}) {
    EXPECT_EQ(rows_in(table), 1) << table;
  }
  EXPECT_EQ(rows_in("StationsTable WHERE Station = 200"), 0);

  Module_database::open_survey().private_folder = std::make_unique<PrivateFolder>();
  const std::vector<std::string> before = everything();
  EXPECT_EQ(rename_line("250E", "260E"), -1);
  EXPECT_EQ(rename_station("250E", 100, 110), -1);
  EXPECT_EQ(interface.take_messages().size(), 2U);
  Module_database::open_survey().private_folder.reset();
  EXPECT_EQ(difference(everything(), before), "");
}
