#include "database/reading_facts.h"

#include "database/sites.h"
#include "tests/support/survey_fixture.h"

using namespace Module_database;

namespace {

std::int32_t add_reading(std::int32_t FileID, const Curve& curve) {
  dao::Recordset& rows = open_survey().readings;
  rows.add_new();
  rows.set_long("FileID", FileID);
  write_curve(rows, curve);
  rows.update();
  rows.find_first("FileID = " + std::to_string(FileID));
  return rows.get_long("ID");
}

Curve two_points() {
  Curve curve;
  curve.assign(2);
  curve.frequencies = {1.0F, 2.0F};
  return curve;
}

StoredReading reading_of(std::int32_t ID, const Curve& curve) {
  StoredReading reading;
  reading.ID = ID;
  reading.curve = curve;
  reading.curve.errors.clear();
  return reading;
}

}  // namespace

TEST_F(SurveyTest, Facts_of_a_reading_come_back_and_go_with_it) {
  new_survey();
  Curve curve = two_points();
  const std::int32_t first = add_reading(1, curve);
  const std::int32_t second = add_reading(2, curve);
  curve.error_at(field_resistivity, 0) = 3.5F;
  curve.error_at(field_phase, 1) = 0.25F;
  write_facts(first, curve, {ey_turned, 12.0F});
  write_facts(second, two_points(), {ey_as_measured, no_data});

  StoredReading one = reading_of(first, curve);
  read_facts(one);
  EXPECT_EQ(one.curve.errors, (std::vector<float>{3.5F, no_data, no_data, 0.25F}));
  EXPECT_EQ(one.axes, (ReadingAxes{ey_turned, 12.0F}));
  StoredReading other = reading_of(second, curve);
  ReadingFacts("FileID > 0").add_to(other);
  EXPECT_TRUE(other.curve.errors.empty());
  EXPECT_EQ(other.axes, (ReadingAxes{ey_as_measured, no_data}));

  StoredReading longer = reading_of(first, curve);
  longer.curve.append(curve, 1);  // as an earlier version leaves it that writes over a reading
  read_facts(longer);
  EXPECT_TRUE(longer.curve.errors.empty());

  delete_readings("FileID = 1");
  EXPECT_EQ(rows_in("ReadingsDataTable"), 1);
  EXPECT_EQ(rows_in("ReadingFactsTable"), 1);
  write_facts(second, two_points(), {});  // nothing is known any more
  EXPECT_EQ(rows_in("ReadingFactsTable"), 0);
}

TEST_F(SurveyTest, Opening_drops_facts_whose_reading_an_earlier_version_has_deleted) {
  new_survey();
  const std::int32_t ID = add_reading(1, two_points());
  write_facts(ID, two_points(), {ey_turned, 0.0F});
  write_facts(ID + 1, two_points(), {ey_turned, 0.0F});
  ASSERT_EQ(close_database(), 0);
  ASSERT_EQ(open_database(), 0);
  EXPECT_EQ(rows_in("ReadingFactsTable"), 1);
}

TEST_F(SurveyTest, The_first_file_of_a_station_names_its_site) {
  new_survey();
  const Site first{"200E", 100.0, "ET001", -20.5, 139.25, std::nullopt, "WGS84", ey_sign_by_rule, "a.edi"};
  EXPECT_EQ(keep_site(first), std::nullopt);
  open_survey().files.add_new();
  open_survey().files.set_text("SurveyFile", "a.edi");
  open_survey().files.update();
  Site second{"200e", 100.0, "ET001b", -21.0, 140.0, 310.0, "", ey_sign_by_rule, "b.edi"};
  EXPECT_EQ(keep_site(second), "ET001");
  EXPECT_EQ(rows_in("SitesTable"), 1);
  std::optional<Site> kept = find_site("200E", 100.0);
  ASSERT_TRUE(kept);
  EXPECT_EQ(kept->name, "ET001");
  EXPECT_EQ(kept->latitude, -20.5);
  EXPECT_EQ(kept->elevation, 310.0);  // was missing

  Site again = first;
  std::string longest(63, 'x');
  longest += "\xC3\xBC";
  again.name = longest;
  again.name += "yz";  // 66 characters
  again.latitude = -20.75;
  EXPECT_EQ(keep_site(again), std::nullopt);
  kept = listed_sites().at(0);
  EXPECT_EQ(kept->name, longest);
  EXPECT_EQ(kept->latitude, -20.75);
  EXPECT_FALSE(find_site("200E", 101.0));

  open_survey().database.execute("DELETE FROM FileTable");  // the first file is taken out of the survey
  EXPECT_EQ(keep_site(second), std::nullopt);
  EXPECT_EQ(find_site("200E", 100.0)->name, "ET001b");
}

TEST_F(SurveyTest, The_sign_of_Ey_is_set_without_touching_anything_else) {
  new_survey();
  const Site named{"200E", 100.0, "ET001", -20.5, 139.25, 310.0, "WGS84", ey_sign_by_rule, "a.edi"};
  EXPECT_EQ(keep_site(named), std::nullopt);
  set_ey_sign("200e", 100.0, ey_sign_turned);
  set_ey_sign("200E", 200.0, ey_sign_as_measured);  // has no site
  set_ey_sign("200E", 300.0, ey_sign_by_rule);      // nor needs one
  EXPECT_EQ(rows_in("SitesTable"), 2);
  const Site kept = find_site("200E", 100.0).value();
  EXPECT_EQ(kept.EySign, ey_sign_turned);
  EXPECT_EQ(kept.line, "200E");
  EXPECT_EQ(kept.name, "ET001");
  EXPECT_EQ(kept.latitude, -20.5);
  EXPECT_EQ(kept.elevation, 310.0);
  EXPECT_EQ(kept.SurveyFile, "a.edi");
  const Site made = find_site("200E", 200.0).value();
  EXPECT_EQ(made.EySign, ey_sign_as_measured);
  EXPECT_TRUE(made.name.empty());
  EXPECT_FALSE(made.latitude || made.elevation);
  set_ey_sign("200E", 100.0, ey_sign_by_rule);
  EXPECT_EQ(find_site("200E", 100.0)->EySign, ey_sign_by_rule);
}
