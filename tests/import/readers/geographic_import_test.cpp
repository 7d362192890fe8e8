// Latitude and longitude of field files as map places of their stations.
#include <filesystem>

#include <gtest/gtest.h>

#include "database/stations.h"
#include "formats/edi/edi_reference_place.h"
#include "import/import_run.h"
#include "projections/survey_projection.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/projections/definitions.h"
#include "tests/support/survey_fixture.h"

using namespace Module_data_file;
using formats::FileReport;
using formats::edi::read_edi_reference_place;

namespace {

// Flinders Peak in MGA94 zone 55, a worked example of the GDA94 Technical Manual.
constexpr double easting = 273741.297;
constexpr double northing = 5796489.777;
const std::string reference = "  REFLAT=-37:57:03.7203\n  REFLONG=144:25:29.5244\n";

std::string edi_with(const std::string& head, const std::string& measurements,
                     const std::vector<MadeSection>& sections = {MadeSection{}}) {
  return replaced(replaced(made_edi(sections), "  UNITS=M\n", "  UNITS=M\n" + head), ">=DEFINEMEAS\n",
                  ">=DEFINEMEAS\n" + measurements);
}

class GeographicImport : public SurveyTest {
 protected:
  GeographicImport() {
    new_survey();
    choices.ReferenceType = 1;
    choices.ReductionType = 0;
    choices.decode[decode_line_number].specified = "200";
    choices.decode[decode_event].specified = "0";
    choices.decode[decode_sample_rate].specified = "16";
    choices.start_station = "100";
    choices.convert_coordinates = true;
  }

  static void define_mga_55() {
    Module_projections::current_coord_system() = zone_definition("MGA 55", 55);
    ASSERT_EQ(Module_projections::store_survey_projection(), 0);
  }
  int import(const std::string& name, const std::string& contents) {
    return run_import(choices, {folder.write(name, contents)}, ImportMode::import, report);
  }
  static void expect_place(double x, double y, double elevation = 33.0) {
    dao::Recordset rows = Module_database::open_survey().database.open_recordset(
        "SELECT MapX,MapY,Elevation FROM StationsTable ORDER BY ID");
    rows.move_last();
    EXPECT_NEAR(rows.get_double("MapX"), x, 0.001);
    EXPECT_NEAR(rows.get_double("MapY"), y, 0.001);
    EXPECT_EQ(rows.get_double("Elevation"), elevation);
  }
  std::vector<std::string> remarks() const { return remark_lines(report.files.at(0)); }

  ImportChoices choices;
  ImportReport report;
};

}  // namespace

TEST_F(GeographicImport, Puts_a_station_where_its_file_says) {
  define_mga_55();
  struct Case {
    const char* name;
    std::string contents;
  };
  const Case cases[] = {
      {"reference", edi_with("", reference)},
      {"reference before head", edi_with("  LAT=10\n  LONG=20\n", reference)},
      {"head", edi_with("  LAT=37:57:03.7203S\n  LONG = \"144:25:29.5244 E\"\n", "  REFLAT=\n")},
      {"one line", edi_with("LAT=-37:57:03.7203 LONG=+144:25:29.5244 ELEV=12\n", "")},
      {"decimal", edi_with("  lat=-37.9510334167\n  Longitude=144.4248678889\n", "")},
      {"each where it is", edi_with("  LAT=-37:57:03.7203\n  LONG=1\n", "  REFLONG=144:25:29.5244\n")},
      {"other blocks hold none", edi_with("  LAT=-37:57:03.7203\n  LONG=144:25:29.5244\n",
                                          ">INFO\n  REFLAT=1\n  LAT=2\n  REFLONG=3\n  LONG=4\n>!REFLAT=5\n")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    choices.start_station = std::to_string(100 + 100 * (&c - cases));
    ASSERT_EQ(import("a.edi", c.contents), 0);
    EXPECT_EQ(remarks(), std::vector<std::string>{});
    expect_place(easting, northing);
  }
}

TEST_F(GeographicImport, Leaves_the_place_alone_without_the_choice_or_without_a_place) {
  define_mga_55();
  choices.convert_coordinates = false;
  ASSERT_EQ(import("a.edi", edi_with("", reference)), 0);
  expect_place(22.0, 11.0);
  EXPECT_TRUE(remarks().empty());

  choices.convert_coordinates = true;
  struct Case {
    std::string contents;
    std::vector<std::string> remarks;
  };
  const std::string stays = "; the place is taken from the HX channel as it stands";
  const Case cases[] = {
      {made_edi(), {"the head gives no latitude and longitude" + stays}},
      {edi_with("  LAT=-37:61:00\n  LONG=144\n", ""),
       {"the head gives no latitude and longitude" + stays, "line 6: LAT='-37:61:00' is not a latitude"}},
      {edi_with("  LAT=-37\n  LONG=10\n", ""),
       {"latitude -37, longitude 10 can't be converted: the place lies outside of the projection" + stays}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.remarks.back());
    choices.start_station = std::to_string(200 + 100 * (&c - cases));
    ASSERT_EQ(import("a.edi", c.contents), 0);
    EXPECT_EQ(remarks(), c.remarks);
    expect_place(22.0, 11.0);
  }
}

TEST_F(GeographicImport, Falls_back_on_the_head_for_a_reference_that_cant_be_read) {
  define_mga_55();
  ASSERT_EQ(import("a.edi", edi_with("  LAT=-37:57:03.7203\n  LONG=144:25:29.5244\n", "  REFLAT=1.0E32\n")),
            0);
  EXPECT_EQ(remarks(), std::vector<std::string>{"line 9: REFLAT='1.0E32' is not a latitude"});
  expect_place(easting, northing);
}

TEST_F(GeographicImport, Tells_what_a_person_would_wonder_at) {
  choices.convert_coordinates = false;
  ASSERT_EQ(import("a.edi", edi_with("", reference)), 0);
  define_mga_55();
  choices.convert_coordinates = true;
  ASSERT_EQ(import("a.edi", edi_with("", reference)), 0);
  EXPECT_EQ(remarks(), std::vector<std::string>{
                           "the station or its location was known before and keeps its map place 22.00, "
                           "11.00; the file's is 273741.30, 5796489.78"});
  choices.start_station = "1000";
  ASSERT_EQ(import("b.edi", edi_with("", reference, {MadeSection{}, MadeSection{}})), 0);
  EXPECT_EQ(remarks(), std::vector<std::string>{"all 2 sections are put at the file's reference place"});
}

TEST_F(GeographicImport, Needs_a_valid_projection) {
  EXPECT_EQ(import("a.edi", edi_with("", reference)), -1);
  EXPECT_EQ(interface.take_messages(), std::vector<std::string>{"The projection has not been defined"});
  define_mga_55();
  Module_database::open_survey().database.execute("UPDATE [Projection Defintion Table] SET ZoneWidth = 0");
  EXPECT_EQ(import("a.edi", edi_with("", reference)), -1);
  EXPECT_EQ(interface.take_messages(), std::vector<std::string>{"The zone width value is invalid"});
  EXPECT_EQ(rows_in("FileTable"), 0);
}

// In degrees, so that the map place is longitude and latitude themselves.
TEST_F(GeographicImport, Puts_real_stations_of_spectra_in_their_place) {
  namespace fs = std::filesystem;
  const fs::path folder_of_spectra = fs::path(BRENLOX_FIELD_DATA) / "edi" / "spectra";
  if (!fs::is_directory(folder_of_spectra)) {
    GTEST_SKIP() << "no field data";
  }
  Module_projections::current_coord_system() = {};
  Module_projections::current_coord_system().name = "Degrees";
  ASSERT_EQ(Module_projections::store_survey_projection(), 0);
  const std::string file = fs::directory_iterator(folder_of_spectra)->path().string();
  ASSERT_EQ(run_import(choices, {file}, ImportMode::import, report), 0);
  ASSERT_GT(report.files.at(0).readings, 0);
  FileReport ignored;
  const auto place = read_edi_reference_place(file, ignored).value();
  const Module_database::StationRows rows =
      Module_database::find_station(Module_database::StationSearch::look_up, "200E", 100.0);
  EXPECT_EQ(rows.MapX, place.longitude);
  EXPECT_EQ(rows.MapY, place.latitude);
}
