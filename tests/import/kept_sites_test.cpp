// What an import keeps beside the rows: sites of stations, errors and axes of readings.
#include <algorithm>
#include <optional>

#include <gtest/gtest.h>

#include "core/absent_value.h"
#include "database/reading_facts.h"
#include "database/sites.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/import/import_fixture.h"
#include "tests/import/readers/made_fields.h"

using namespace Module_data_file;
using Module_database::find_site;

namespace {

const std::string curves = ">RHOXY //3\n1 2 3\n>PHSXY //3\n45 45 30\n";

class KeptSites : public ImportRun {
 protected:
  KeptSites() { choices.stations_by = Module_data_file::StationsBy::sectid_digits; }

  static std::string edi(const std::string& sectid, const std::string& head = "",
                         const std::string& place = "") {
    MadeSection section;
    section.sectid = sectid;
    const std::string text = replaced(made_edi({section}), "  UNITS=M\n", "  UNITS=M\n" + head);
    return replaced(text, ">=DEFINEMEAS\n", ">=DEFINEMEAS\n" + place);
  }

  std::string write(const std::string& name, const std::string& text) const {
    return folder.write(name, text);
  }

  static double elevation_of_station(double station) {
    dao::Recordset& stations = Module_database::open_survey().stations;
    stations.find_first("Station = " + std::to_string(station));
    return stations.no_match() ? -1.0 : stations.get_double("Elevation");
  }

  static std::vector<Module_database::StoredReading> readings(const std::string& criteria) {
    std::vector<Module_database::StoredReading> all;
    dao::Recordset rows = Module_database::open_survey().database.open_recordset(
        "SELECT * FROM ReadingsDataTable WHERE FileID > 0 AND " + criteria);
    for (; !rows.eof(); rows.move_next()) {
      all.push_back(Module_database::read_reading(rows));
      Module_database::read_facts(all.back());
    }
    return all;
  }
};

}  // namespace

TEST_F(KeptSites, Have_name_and_place_as_their_file_has_them) {
  const std::string head = "  Datum = WGS84\n  LAT=1:0:0\n  LONG=2:0:0\n  ELEV=99\n";
  ASSERT_EQ(import({write("a.edi", edi("\"Et 006_b\"", head,
                                       "  REFLAT=-22:30:00\n  REFLONG=139.25\n  REFELEV=158\n"))}),
            0);
  const auto site = find_site("200E", 6.0);
  ASSERT_TRUE(site);
  EXPECT_EQ(site->name, "Et 006_b");
  EXPECT_EQ(site->latitude, -22.5);
  EXPECT_EQ(site->longitude, 139.25);
  EXPECT_EQ(site->elevation, 158.0);
  EXPECT_EQ(site->datum, "WGS84");
  EXPECT_EQ(site->SurveyFile, "a.edi");
}

TEST_F(KeptSites, Are_named_by_SECTID_else_DATAID_and_never_by_the_file) {
  struct Case {
    const char* sectid;
    const char* dataid;
    const char* name;
  };
  const Case cases[] = {{"pb44", "MADE", "pb44"},
                        {"pb44 MAXSECT=1", "MADE", "pb44"},
                        {"\"pb 44\"", "MADE", "pb 44"},
                        {"\"\"", "Made 44", "Made 44"},
                        {"",
                         "Gr\xFC"
                         "n 44",
                         "Gr\xC3\xBCn 44"},
                        {"", "", ""}};
  choices.stations_by = Module_data_file::StationsBy::count;
  choices.start_station = "44";
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ASSERT_EQ(import({write("a.edi", replaced(edi(c.sectid), "MADE", c.dataid))}), 0);
    ASSERT_EQ(rows_in("SitesTable"), 1);
    EXPECT_EQ(Module_database::listed_sites().front().name, c.name);
  }
}

TEST_F(KeptSites, The_first_name_of_a_station_stays_and_others_are_told) {
  ASSERT_EQ(import({write("a.edi", edi("ET006")), write("b.edi", edi("et6"))}), 0);
  EXPECT_EQ(find_site("200E", 6.0)->name, "ET006");
  EXPECT_TRUE(told(1, "site et6: station 6 of line 200E is named ET006 already"));
  EXPECT_FALSE(told(0, "already"));

  // Imported again, the file is taken as it is now; at another station it leaves no name behind.
  ASSERT_EQ(import({write("a.edi", edi("Site 6"))}), 0);
  EXPECT_EQ(find_site("200E", 6.0)->name, "Site 6");
  ASSERT_EQ(import({write("a.edi", edi("Site 7"))}), 0);
  EXPECT_EQ(find_site("200E", 7.0)->name, "Site 7");
  EXPECT_FALSE(find_site("200E", 6.0));
  ASSERT_EQ(import({write("c.edi", edi("C6"))}), 0);
  EXPECT_EQ(find_site("200E", 6.0)->name, "C6");
  EXPECT_TRUE(report.files.at(0).ignored.empty());
}

TEST_F(KeptSites, Tell_a_repeat_from_another_site_in_a_later_import) {
  ASSERT_EQ(import({write("monday.edi", edi("ET006"))}), 0);
  ASSERT_EQ(import({write("tuesday.edi", edi("et006"))}), 0);
  EXPECT_TRUE(report.shared_stations.empty());
  ASSERT_EQ(import({write("wednesday.edi", edi("XY006"))}), 0);
  EXPECT_EQ(report.shared_stations.size(), 1U);
}

TEST_F(KeptSites, Of_a_file_that_is_taken_back_stay_as_they_were) {
  ASSERT_EQ(import({write("a.edi", edi("ET006"))}), 0);
  MadeSection nothing;
  ASSERT_EQ(import({write("a.edi", replaced(edi("ET007"), ">END\n", ">RHOYX //3\n1 2"))}), 0);
  EXPECT_EQ(report.files.at(0).readings, 0);
  EXPECT_EQ(rows_in("SitesTable"), 1);
  EXPECT_EQ(find_site("200E", 6.0)->name, "ET006");
}

TEST_F(KeptSites, Of_many_stations_have_no_place_by_one_file) {
  std::vector<MadeSection> sections(2);
  sections[0].sectid = "A1";
  sections[1].sectid = "A2";
  const std::string place = ">=DEFINEMEAS\n  REFLAT=-22.5\n  REFLONG=139.25\n  REFELEV=158\n";
  ASSERT_EQ(import({write("a.edi", replaced(made_edi(sections), ">=DEFINEMEAS\n", place))}), 0);
  for (const double station : {1.0, 2.0}) {
    const auto site = find_site("200E", station);
    ASSERT_TRUE(site);
    EXPECT_EQ(site->name, station == 1.0 ? "A1" : "A2");
    EXPECT_FALSE(site->latitude);
    EXPECT_EQ(site->elevation, 33.0) << "of the sensor";
  }
  sections[1].sectid = "A1";  // two recordings of one station
  ASSERT_EQ(import({write("b.edi", replaced(made_edi(sections), ">=DEFINEMEAS\n", place))}), 0);
  EXPECT_EQ(find_site("200E", 1.0)->latitude, -22.5);
}

TEST_F(KeptSites, The_elevation_of_the_head_is_taken_where_the_sensor_has_none) {
  struct Case {
    const char* sensor;
    const char* head;
    const char* reference;
    double elevation;
  };
  const Case cases[] = {{" Z=33", "ELEV=200", "REFELEV=158", 33.0},
                        {" Z=0", "ELEV=200", "REFELEV=158", 158.0},
                        {"", "ELEV=200", "", 200.0},
                        {"", "ELEVATION=200.5", "REFELEV=0", 200.5},
                        {"", "ELEV=1.0E+32", "", 0.0},
                        {"", "ELEV=high", "", 0.0}};
  int number = 0;
  for (const Case& c : cases) {
    SCOPED_TRACE(++number);
    const std::string name = std::to_string(number);
    const std::string text =
        edi("S" + name, "  " + std::string(c.head) + "\n", "  " + std::string(c.reference) + "\n");
    ASSERT_EQ(import({write(name + ".edi", replaced(text, " Z=33", c.sensor))}), 0);
    EXPECT_EQ(elevation_of_station(number), c.elevation);
  }
  EXPECT_TRUE(told(0, "ELEV='high' is not an elevation"));
}

TEST_F(KeptSites, Zeros_of_a_head_are_no_place) {
  const std::string zeros =
      edi("S1", "  LAT=0:00:00\n  LONG=0\n", "  REFLAT=0\n  REFLONG=0:0:0\n  REFELEV=0.0\n");
  ASSERT_EQ(import({write("a.edi", replaced(zeros, " Z=33", " Z=0"))}), 0);
  EXPECT_FALSE(find_site("200E", 1.0)->elevation);
  EXPECT_FALSE(find_site("200E", 1.0)->latitude);
  ASSERT_EQ(import({write("b.edi", edi("S2", "  LAT=-30\n  LONG=139\n", "  REFLAT=0\n  REFLONG=0:0:0\n"))}),
            0);
  EXPECT_EQ(find_site("200E", 2.0)->latitude, -30.0);
  ASSERT_EQ(import({write("c.edi", edi("S3", "  LAT=0:00:00\n  LONG=0\n", "  REFLAT=0\n  REFLONG=6\n"))}), 0);
  EXPECT_EQ(find_site("200E", 3.0)->longitude, 6.0) << "a place on the equator";
  ASSERT_EQ(import({write("d.edi", edi("S4", "  LAT=north\n  LONG=6\n"))}), 0);
  EXPECT_FALSE(find_site("200E", 4.0)->longitude);
  EXPECT_TRUE(told(0, "LAT='north' is not a latitude"));
}

TEST_F(KeptSites, Readings_have_their_axes) {
  MadeSection section;
  section.blocks = curves + ">PHSYX //3\n-135 -135 -135\n";
  section.sectid = "S1";
  choices.turn_ey = TurnEy::where_needed;
  ASSERT_EQ(import({write("a.edi", made_edi({section}))}), 0);
  section.sectid = "S2";
  section.blocks = curves;
  ASSERT_EQ(import({write("b.edi", replaced(made_edi({section}), "  HX=1.001\n", ""))}), 0);
  for (const auto& reading : readings("Station = 1")) {
    EXPECT_EQ(reading.axes, (Module_database::ReadingAxes{Module_database::ey_turned, 12.5F}));
  }
  for (const auto& reading : readings("Station = 2")) {
    EXPECT_EQ(reading.axes, (Module_database::ReadingAxes{Module_database::ey_as_measured, no_data}));
  }
  EXPECT_EQ(
      rows_in("ReadingFactsTable WHERE ReadingID IN (SELECT ID FROM ReadingsDataTable WHERE FileID > 0)"), 8);

  choices.turn_ey = TurnEy::never;
  ASSERT_EQ(import({folder.path("a.edi")}), 0);
  EXPECT_EQ(readings("Station = 1").at(0).axes.EyTurned, Module_database::ey_as_measured);
  EXPECT_EQ(
      rows_in("ReadingFactsTable WHERE ReadingID IN (SELECT ID FROM ReadingsDataTable WHERE FileID > 0)"), 8)
      << "in place of the earlier ones";
}

TEST_F(KeptSites, Readings_have_their_errors_in_the_order_of_their_frequencies) {
  MadeSection section;
  section.blocks = curves + ">PHSXY.ERR //3\n10 20 30\n";  // of 100, 10, 1 Hz
  ASSERT_EQ(import({write("a.edi", made_edi({section}))}), 0);
  const auto curve = readings("DataType = 'ExHy'").at(0).curve;
  ASSERT_EQ(curve.frequencies, (std::vector<float>{1, 10, 100}));
  EXPECT_EQ(curve.error(2, 0), 30.0F);
  EXPECT_EQ(curve.error(2, 2), 10.0F);
  EXPECT_EQ(curve.error(1, 0), no_data);
  EXPECT_TRUE(readings("DataType = 'EyHx'").at(0).curve.errors.empty());

  section.blocks = curves;
  ASSERT_EQ(import({write("a.edi", made_edi({section}))}), 0);
  EXPECT_TRUE(readings("DataType = 'ExHy'").at(0).curve.errors.empty()) << "of a file without errors";
}
