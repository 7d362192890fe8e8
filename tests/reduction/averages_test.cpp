#include "reduction/averages.h"

#include <cmath>

#include "core/absent_value.h"
#include "tests/reduction/made_line.h"
#include "tests/support/foreign_change.h"
#include "tests/support/survey_fixture.h"

using namespace Module_averaged_data;
using made::Point;
using Module_database::open_survey;

namespace {

const std::string averaging_failed = "An error occurred while calculating the average data: ";

class Averages : public SurveyTest {
 protected:
  Averages() { new_survey(); }

  static StoredReading average_of(const ReadingKey& key) {
    StoredReading average;
    EXPECT_EQ(average_repeats(key, made::frequencies(key.reference_type), average), 0);
    return average;
  }
  static StoredReading merge_of(const ReadingKey& key) {
    StoredReading merged;
    EXPECT_EQ(merge_scan_rates(key, made::frequencies(key.reference_type), merged), 0);
    return merged;
  }
  static StoredReading stored(std::int32_t ID) { return Module_database::read_reading(made::row(ID)); }

  /// What a user sets on a derived reading; its first point is masked.
  static void set_edits(std::int32_t ID) {
    dao::Recordset row = made::row(ID);
    Module_database::Curve curve = Module_database::read_reading(row).curve;
    curve.counts_at(1, 0) = 0;
    row.edit();
    row.set_binary("MaskBinary", Module_database::bytes_of(curve.mask));
    row.set_bit("UsePhase", false);
    row.set_single("ResOffset", 0.4F);
    row.set_single("PhaseOffset", -3.0F);
    row.update();
  }
  static void damage(std::int32_t ID) {
    dao::Recordset row = made::row(ID);
    row.edit();
    row.set_long("NumFrequencies", 99);
    row.update();
  }
  void expect_one_message(const std::string& beginning) {
    const std::vector<std::string> messages = interface.take_messages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].rfind(beginning, 0), 0U) << messages[0];
    EXPECT_GT(messages[0].size(), beginning.size());
  }

  static inline const std::vector<Point> low_points{{1.0F, 10.0F, 40.0F}, {8.0F, 20.0F, 50.0F}};
};

}  // namespace

TEST_F(Averages, Average_is_stored_whole) {
  const ReadingKey key = made::key();
  made::store(key, 2, made::reading({{1.0F, 30.0F, 60.0F}, {2.0F, 5.0F, 5.0F}}));
  made::store(key, 1, made::reading(low_points));
  session().data_changed = false;
  const StoredReading average = average_of(key);
  ASSERT_GT(average.ID, 0);
  EXPECT_TRUE(session().data_changed);
  EXPECT_EQ(average.curve.frequencies, (std::vector<float>{1.0F, 2.0F, 8.0F}));
  EXPECT_EQ(average.curve.value(1, 0), 20.0F);

  const StoredReading again = stored(average.ID);
  EXPECT_EQ(again.curve.frequencies, average.curve.frequencies);
  EXPECT_EQ(again.curve.data, average.curve.data);
  EXPECT_EQ(again.curve.mask, average.curve.mask);
  const dao::Recordset row = made::row(average.ID);
  const dao::Recordset raw = made::row(1);
  EXPECT_EQ(row.get_long("FileID"), -1);
  EXPECT_EQ(row.get_long("StationID"), raw.get_long("StationID"));
  EXPECT_EQ(row.get_long("LocationID"), raw.get_long("LocationID"));
  EXPECT_EQ(row.get_text("LineNumber"), "200E");
  EXPECT_EQ(row.get_double("Station"), 100.0);
  EXPECT_EQ(row.get_long("EventNumber"), 0);
  EXPECT_EQ(row.get_long("ReductionType"), 1);
  EXPECT_EQ(row.get_text("DataType"), "ExHy");
  EXPECT_EQ(row.get_single("DipoleLength"), 50.0F);
  EXPECT_EQ(row.get_single("SampleRate"), 256.0F);
  EXPECT_EQ(row.get_single("MergeFrequency"), -1.0F);
  EXPECT_EQ(row.get_long("NumFields"), 20);
  EXPECT_TRUE(row.get_bit("UseReading") && row.get_bit("UseResistivity") && row.get_bit("UsePhase"));
  EXPECT_EQ(row.get_single("ResOffset"), 1.0F);
  EXPECT_EQ(row.get_single("PhaseOffset"), 0.0F);
}

TEST_F(Averages, Edits_of_an_average_survive_until_its_number_of_frequencies_changes) {
  const ReadingKey key = made::key();
  made::store(key, 1, made::reading(low_points));
  const std::int32_t ID = average_of(key).ID;
  set_edits(ID);
  made::store(key, 2, made::reading({{1.0F, 30.0F, 60.0F}}));
  for (const StoredReading& kept : {average_of(key), stored(ID)}) {
    EXPECT_EQ(kept.ID, ID);
    EXPECT_EQ(kept.curve.value(1, 0), 20.0F);
    EXPECT_EQ(kept.curve.mask, (std::vector<std::int32_t>{0, 1, 1, 1}));
    EXPECT_FALSE(kept.UsePhase);
    EXPECT_EQ(kept.ResOffset, 0.4F);
    EXPECT_EQ(kept.PhaseOffset, -3.0F);
  }
  made::store(key, 3, made::reading({{2.0F, 7.0F, 7.0F}}));
  EXPECT_EQ(average_of(key).curve.count(), 3U);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID<0"), 1);
  StoredReading found;
  ASSERT_EQ(get_reduced_reading(1, AllowRaw::no, key, made::frequencies(), found), 0);
  EXPECT_EQ(found.curve.mask, (std::vector<std::int32_t>{1, 1, 1, 1, 1, 1}));
  EXPECT_TRUE(found.UsePhase);
  EXPECT_EQ(found.ResOffset, 1.0F);
  EXPECT_EQ(found.PhaseOffset, 0.0F);
}

TEST_F(Averages, Nothing_is_stored_without_a_used_repeat) {
  const ReadingKey key = made::key();
  EXPECT_EQ(average_of(key).ID, 0);
  const std::int32_t raw = made::store(key, 1, made::reading(low_points));
  const std::int32_t ID = average_of(key).ID;
  dao::Recordset row = made::row(raw);
  row.edit();
  row.set_bit("UseReading", false);
  row.update();
  EXPECT_EQ(average_of(key).ID, 0);
  EXPECT_EQ(stored(ID).curve.count(), 2U);

  const ReadingKey other = made::key(8.0F);
  made::store(other, 0, made::reading({}));  // the first event is without frequencies
  made::store(other, 1, made::reading(low_points));
  EXPECT_EQ(average_of(other).ID, 0);
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST_F(Averages, Keys_find_their_rows_whatever_their_decimals) {
  session().current_reference_type = 0;
  ReadingKey keys[6];
  std::fill(std::begin(keys), std::end(keys), made::key());
  keys[1].scan_rate = 0.1F;
  keys[2].scan_rate = 24000.0F / 7.0F;
  keys[3].dipole = 33.3F;
  keys[3].station = 1250.4;
  keys[4].station = -12.5;
  keys[5].reference_type = 2;
  for (std::size_t i = 0; i < std::size(keys); ++i) {
    made::store(keys[i], 1, made::reading({{8.0F, static_cast<float>(i) + 1.0F, 45.0F}}));
  }
  for (int round = 0; round < 2; ++round) {
    for (std::size_t i = 0; i < std::size(keys); ++i) {
      SCOPED_TRACE(i);
      EXPECT_EQ(average_of(keys[i]).curve.value(1, 0), static_cast<float>(i) + 1.0F);
    }
    EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID<0"), 6);
  }
}

TEST_F(Averages, A_point_whose_frequency_is_not_in_the_list_is_left_out) {
  made::store(made::key(8.0F), 1, made::reading({{1.0F, 1.0F, 1.0F}, {8.0F, 1.0F, 1.0F}}));
  // As long as the list and within a thousandth: the list stays as it is.
  made::store(made::key(), 1, made::reading({{1.0005F, 10.0F, 40.0F}, {8.0F, 20.0F, 50.0F}}));
  EXPECT_EQ(average_of(made::key()).curve.frequencies, std::vector<float>{8.0F});
}

TEST_F(Averages, Damaged_repeats_are_reported_and_the_earlier_average_stays) {
  const ReadingKey key = made::key();
  const std::int32_t raw = made::store(key, 1, made::reading(low_points));
  const std::int32_t ID = average_of(key).ID;
  damage(raw);
  StoredReading average;
  EXPECT_EQ(average_repeats(key, made::frequencies(key.reference_type), average), -1);
  EXPECT_EQ(average.ID, 0);
  expect_one_message(averaging_failed);
  EXPECT_EQ(stored(ID).curve.count(), 2U);

  ReadingKey quoted = key;  // a name that nothing is stored of is no failure, whatever signs it has
  quoted.data_type = "Ex'Hy";
  EXPECT_EQ(average_repeats(quoted, made::frequencies(), average), 0);
  EXPECT_EQ(average.ID, 0);
}

TEST_F(Averages, Merged_curve_is_stored_whole_and_its_edits_survive) {
  const ReadingKey low = made::key(8.0F);
  const ReadingKey high = made::key(1024.0F);
  made::store(low, 1, made::reading(low_points));
  made::store(high, 1, made::reading({{8.0F, 40.0F, 60.0F}, {64.0F, 70.0F, 30.0F}}));
  const std::int32_t low_average = average_of(low).ID;
  average_of(high);
  dao::Recordset row = made::row(low_average);
  row.edit();
  row.set_single("ResOffset", 0.0F);  // reads as 1
  row.update();

  const StoredReading merged = merge_of(high);
  EXPECT_EQ(merged.curve.frequencies, (std::vector<float>{1.0F, 8.0F, 64.0F}));
  EXPECT_EQ(merged.curve.value(1, 0), 10.0F);
  EXPECT_EQ(merged.curve.value(1, 1), 30.0F);
  EXPECT_EQ(merged.curve.value(2, 1), 55.0F);
  EXPECT_EQ(merged.curve.value(5, 1), 40.0F);
  const dao::Recordset stored_row = made::row(merged.ID);
  EXPECT_EQ(stored_row.get_long("FileID"), -1);
  EXPECT_EQ(stored_row.get_long("EventNumber"), 0);
  EXPECT_EQ(stored_row.get_long("ReductionType"), 2);
  EXPECT_EQ(stored_row.get_single("SampleRate"), 0.0F);
  EXPECT_EQ(stored_row.get_single("MergeFrequency"), 0.0F);
  EXPECT_EQ(stored(merged.ID).curve.data, merged.curve.data);

  set_edits(merged.ID);
  for (const StoredReading& kept : {merge_of(low), stored(merged.ID)}) {
    EXPECT_EQ(kept.curve.mask, (std::vector<std::int32_t>{0, 1, 1, 1, 1, 1}));
    EXPECT_EQ(kept.ResOffset, 0.4F);
    EXPECT_FALSE(kept.UsePhase);
  }
  made::store(low, 2, made::reading({{0.5F, 1.0F, 1.0F}}));
  average_of(low);
  const StoredReading grown = merge_of(low);
  EXPECT_EQ(grown.ID, merged.ID);
  EXPECT_EQ(grown.curve.mask, std::vector<std::int32_t>(8, 1));
  EXPECT_EQ(grown.ResOffset, 0.4F);
  EXPECT_EQ(grown.PhaseOffset, -3.0F);
  dao::Recordset damaged = made::row(merged.ID);
  damaged.edit();
  damaged.set_single("ResOffset", 0.0F);
  damaged.update();
  EXPECT_EQ(merge_of(low).ResOffset, 1.0F) << "no curve is multiplied by 0";
  EXPECT_FALSE(grown.UsePhase);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType=2"), 1);
}

TEST_F(Averages, Scan_rates_that_are_switched_off_are_not_merged) {
  const ReadingKey low = made::key(8.0F);
  made::store(low, 1, made::reading(low_points));
  const std::int32_t average = average_of(low).ID;
  const std::int32_t merged = merge_of(low).ID;
  for (const auto& fields :
       {std::vector<const char*>{"UseReading"}, std::vector<const char*>{"UseResistivity", "UsePhase"}}) {
    dao::Recordset row = made::row(average);
    row.edit();
    for (const char* field : {"UseReading", "UseResistivity", "UsePhase"}) {
      row.set_bit(field, std::find(fields.begin(), fields.end(), field) == fields.end());
    }
    row.update();
    EXPECT_EQ(merge_of(low).ID, 0);
    EXPECT_EQ(stored(merged).curve.count(), 2U);
  }
}

TEST_F(Averages, Files_of_averaged_data_stand_in_and_are_merged) {
  const ReadingKey key = made::key();
  const std::int32_t imported = made::store(key, 0, made::reading(low_points), 1);
  StoredReading found;
  EXPECT_EQ(get_reduced_reading(1, AllowRaw::no, key, made::frequencies(), found), 0);
  EXPECT_EQ(found.ID, 0);
  EXPECT_EQ(get_reduced_reading(1, AllowRaw::yes, key, made::frequencies(), found), 0);
  EXPECT_EQ(found.ID, imported);
  EXPECT_EQ(found.FileID, 7);
  EXPECT_EQ(merge_of(key).curve.value(1, 1), 20.0F);
}

TEST_F(Averages, Reduced_readings_are_made_where_they_are_missing) {
  made::store(made::key(8.0F), 1, made::reading(low_points));
  average_of(made::key(8.0F));
  StoredReading merged;
  ASSERT_EQ(get_reduced_reading(2, AllowRaw::no, made::key(0.0F), made::frequencies(), merged), 0);
  EXPECT_GT(merged.ID, 0);
  EXPECT_EQ(merged.curve.value(1, 1), 20.0F);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 3);
  StoredReading again;
  ASSERT_EQ(get_reduced_reading(2, AllowRaw::no, made::key(0.0F), made::frequencies(), again), 0);
  EXPECT_EQ(again.ID, merged.ID);
  EXPECT_EQ(again.curve.data, merged.curve.data);

  EXPECT_EQ(get_reduced_reading(2, AllowRaw::yes, made::key(0.0F, 999.0), made::frequencies(), again), 0);
  EXPECT_EQ(again.ID, 0);
  EXPECT_EQ(rows_in("ReadingsDataTable"), 3);

  damage(merged.ID);
  EXPECT_EQ(get_reduced_reading(2, AllowRaw::no, made::key(0.0F), made::frequencies(), again), -1);
  expect_one_message("An error occurred while calculating the merged data: ");
}

TEST_F(Averages, Recalculation_rebuilds_every_average_and_merged_curve) {
  for (int station = 0; station < 4; ++station) {
    for (const float scan_rate : {8.0F, 1024.0F}) {
      ReadingKey key = made::key(scan_rate, 100.0 * station);
      key.reference_type = station == 3 ? 1 : 0;
      made::store(key, 1, made::reading(low_points));
      made::store(key, 2, made::reading({{1.0F, 30.0F, 60.0F}}));
    }
  }
  session().current_reference_type = 1;
  ASSERT_EQ(Module_database::load_selected_frequencies(), 0);
  made::store(made::key(8.0F, 0.0), 3, made::reading({{0.25F, 30.0F, 60.0F}}));
  ASSERT_EQ(recalculate_merged(), 0);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType=1"), 8);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType=2"), 4);
  EXPECT_EQ(session().frequencies.count(), 2U) << "the list of the selected reference type";
  EXPECT_EQ(interface->progress.front(), 0);
  EXPECT_EQ(interface->progress.back(), -1);
  EXPECT_FALSE(interface->busy);
  ASSERT_EQ(recalculate_merged(), 0);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID<0"), 12);
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST_F(Averages, A_stopped_recalculation_says_how_many_stations_keep_their_earlier_curves) {
  for (int station = 0; station < 4; ++station) {
    made::store(made::key(8.0F, 100.0 * station), 1, made::reading(low_points));
  }
  int asked = 0;
  interface->stop = [&asked] { return ++asked > 2; };
  EXPECT_EQ(recalculate_merged(), 0);
  EXPECT_EQ(interface.take_messages(),
            std::vector<std::string>{"The recalculation was stopped. 2 stations keep "
                                     "their earlier curves."});
  interface->stop = [] { return false; };
  reopen();
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType=1"), 2);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType=2"), 2) << "no station is left half way";
}

TEST_F(Averages, Recalculation_names_one_group_that_fails) {
  damage(made::store(made::key(8.0F, 100.0), 1, made::reading(low_points)));
  EXPECT_EQ(recalculate_merged(), -1);
  EXPECT_EQ(interface.take_messages(),
            std::vector<std::string>{
                std::string(averaging_failed) +
                "1 group of readings was skipped and keeps its earlier curve\nline 200E, "
                "station 100, ExHy, 8 Hz: reading 1 is damaged: FreqBinary has 8 bytes in place of 396"});
}

TEST_F(Averages, Recalculation_goes_past_groups_that_fail_and_names_three) {
  std::vector<std::int32_t> raw;
  raw.reserve(7);
  for (int station = 0; station < 7; ++station) {
    raw.push_back(made::store(made::key(8.0F, 100.0 * station), 1, made::reading(low_points)));
  }
  for (const std::size_t bad : {0U, 2U, 3U, 5U}) {
    damage(raw[bad]);
  }
  EXPECT_EQ(recalculate_merged(), -1);
  const std::vector<std::string> messages = interface.take_messages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(
      messages[0].rfind(averaging_failed + "4 groups of readings were skipped and keep their earlier "
                                           "curves\nline 200E, station 0, ExHy, 8 Hz: reading 1 is damaged",
                        0),
      0U)
      << messages[0];
  EXPECT_NE(messages[0].find("\nline 200E, station 300, ExHy, 8 Hz: reading 4 is damaged"),
            std::string::npos);
  EXPECT_EQ(messages[0].find("station 500"), std::string::npos);
  EXPECT_TRUE(messages[0].ends_with("\nand 1 more"));
  reopen();
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType=1"), 3);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType=2"), 3);
}

TEST_F(Averages, Recalculation_goes_past_rows_whose_key_is_damaged) {
  for (const double station : {100.0, 200.0}) {
    (void)made::store(made::key(8.0F, station), 1, made::reading(low_points));
  }
  for (const char* const damage : {"SampleRate = 'z'", "DipoleLength = 'z'", "Station = 'z'"}) {
    SCOPED_TRACE(damage);
    ASSERT_EQ(Module_database::close_database(), 0);
    ASSERT_TRUE(change_file(
        session().database_file,
        "UPDATE ReadingsDataTable SET SampleRate = 8, DipoleLength = 50, Station = 100 WHERE ID = 1;"
        "UPDATE ReadingsDataTable SET " +
            std::string(damage) + " WHERE ID = 1;"));
    ASSERT_EQ(Module_database::open_database(), 0);
    EXPECT_EQ(recalculate_merged(), -1);
    const std::vector<std::string> messages = interface.take_messages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_NE(messages[0].find("row 1 of ReadingsDataTable is damaged"), std::string::npos) << messages[0];
    EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType = 2"), 1);
  }
}

TEST_F(Averages, A_merged_curve_is_found_whatever_scan_rate_is_asked_with_it) {
  const ReadingKey key = made::key(8.0F);
  (void)made::store(key, 1, made::reading(low_points));
  StoredReading merged;
  ASSERT_EQ(get_reduced_reading(Module_database::reduction_merged, AllowRaw::yes, key,
                                made::frequencies(key.reference_type), merged),
            0);
  EXPECT_NE(merged.ID, 0);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType = 2 AND SampleRate = 0"), 1);
}

TEST_F(Averages, A_mask_of_absence_ends_when_its_value_comes) {
  const ReadingKey key = made::key();
  // Neither values nor, at 8 Hz, a used phase, as in files that hold impedances or phases of the third
  // quadrant.
  StoredReading first =
      made::reading({{1.0F, no_data, no_data}, {8.0F, 20.0F, -130.0F}, {64.0F, 5.0F, 5.0F}});
  first.curve.mask = {0, 0, 1, 0, 1, 1};
  const std::int32_t raw = made::store(key, 1, first);
  const std::int32_t average = average_of(key).ID;
  const std::int32_t merged = merge_of(key).ID;
  for (const std::int32_t derived : {average, merged}) {
    EXPECT_EQ(stored(derived).curve.mask, (std::vector<std::int32_t>{0, 0, 1, 0, 1, 1}));
    dao::Recordset row = made::row(derived);
    row.edit();
    row.set_binary("MaskBinary", Module_database::bytes_of(std::vector<std::int32_t>{0, 0, 1, 0, 0, 1}));
    row.update();  // the user masks the resistivity at 64 Hz
  }
  const auto replace = [&](const std::vector<Point>& points, const std::vector<std::int32_t>& mask) {
    StoredReading reading = made::reading(points);
    reading.curve.mask = mask;
    dao::Recordset row = made::row(raw);
    row.edit();
    Module_database::write_curve(row, reading.curve);
    row.update();
    (void)average_of(key);
    (void)merge_of(key);
  };
  replace({{1.0F, 30.0F, 40.0F}, {8.0F, 20.0F, 50.0F}, {64.0F, 5.0F, 5.0F}}, {1, 1, 1, 1, 1, 1});
  for (const std::int32_t derived : {average, merged}) {
    EXPECT_EQ(stored(derived).curve.mask, (std::vector<std::int32_t>{1, 1, 1, 1, 0, 1}));
  }
  const std::string once = made::whole_readings_table();
  EXPECT_EQ(recalculate_merged(), 0);
  EXPECT_EQ(made::whole_readings_table(), once);

  // A value that goes leaves its mask of 1, and one that comes back is not masked.
  replace({{1.0F, no_data, 40.0F}, {8.0F, 20.0F, 50.0F}, {64.0F, 5.0F, 5.0F}}, {0, 1, 1, 1, 1, 1});
  EXPECT_EQ(stored(average).curve.mask, (std::vector<std::int32_t>{1, 1, 1, 1, 0, 1}));
  EXPECT_EQ(stored(average).curve.value(1, 0), no_data);
}

TEST_F(Averages, Frequencies_of_0_and_below_are_stored_with_a_reading_and_take_no_part) {
  const ReadingKey key = made::key();
  const std::vector<Point> points{
      {-4.0F, 1.0F, 1.0F}, {0.0F, 2.0F, 2.0F}, {1.0F, 10.0F, 40.0F}, {8.0F, 20.0F, 50.0F}};
  const std::int32_t raw = made::store(key, 1, made::reading(points));
  EXPECT_EQ(stored(raw).curve.frequencies.front(), -4.0F);
  EXPECT_EQ(made::frequencies().list, (std::vector<float>{1.0F, 8.0F}));
  const std::vector<float> positive{1.0F, 8.0F};
  EXPECT_EQ(average_of(key).curve.frequencies, positive);
  EXPECT_EQ(merge_of(key).curve.frequencies, positive);

  // An average from a file, and what an earlier version has computed, with the edits of the user.
  ReadingKey other = made::key(64.0F, 200.0);
  made::store(other, 1, made::reading(points), 1);
  EXPECT_EQ(merge_of(other).curve.frequencies, positive);
  other.station = 300.0;
  made::store(other, 1, made::reading(points));
  StoredReading derived = made::reading(points);
  derived.curve.mask[5] = 0;
  derived.ResOffset = 3.0F;
  const std::int32_t old_average = made::store(other, 0, derived, 1, -1);
  other.scan_rate = 0.0F;
  const std::int32_t old_merged = made::store(other, 0, derived, 2, -1);
  StoredReading found;
  ASSERT_EQ(get_reduced_reading(2, AllowRaw::no, other, made::frequencies(), found), 0);
  EXPECT_EQ(found.ID, old_merged);
  EXPECT_EQ(found.curve.frequencies, positive);
  EXPECT_EQ(found.ResOffset, 3.0F);
  EXPECT_EQ(found.curve.mask, (std::vector<std::int32_t>{1, 0, 1, 1}));
  EXPECT_EQ(stored(old_average).curve.frequencies, positive);
  EXPECT_EQ(stored(old_average).curve.mask, (std::vector<std::int32_t>{1, 0, 1, 1}));
}

TEST_F(Averages, Facts_of_the_readings_go_on_to_averages_and_merged_curves) {
  const auto repeat = [](float error, const Module_database::ReadingAxes& axes) {
    StoredReading made = made::with_errors(made::reading(low_points), error, error / 10.0F);
    made.axes = axes;
    return made;
  };
  using Module_database::ey_not_known;
  using Module_database::ey_turned;
  const ReadingKey low = made::key(8.0F);
  const ReadingKey high = made::key(1024.0F);
  made::store(low, 1, repeat(3.0F, {ey_turned, 359.75F}));
  const std::int32_t second = made::store(low, 2, repeat(4.0F, {ey_turned, 0.25F}));
  made::store(high, 0, repeat(2.5F, {ey_turned, 0.5F}), 1);  // a file of averages keeps what it brings
  const std::int32_t average = average_of(low).ID;
  const StoredReading merged = merge_of(low);
  ASSERT_EQ(merged.curve.errors.size(), 4U);
  EXPECT_FLOAT_EQ(merged.curve.error(1, 0), std::sqrt(2.0F * 2.5F * 2.5F) / 2.0F);
  EXPECT_FLOAT_EQ(merged.curve.error(2, 1), std::sqrt(2.0F) / 8.0F);
  EXPECT_EQ(merged.axes, (Module_database::ReadingAxes{ey_turned, 0.25F}));
  const auto found = [&](std::int32_t reduction) {
    StoredReading reading;
    EXPECT_EQ(get_reduced_reading(reduction, AllowRaw::yes, low, made::frequencies(), reading), 0);
    return reading;
  };
  EXPECT_EQ(found(1).ID, average);
  EXPECT_EQ(found(1).axes, (Module_database::ReadingAxes{ey_turned, 0.0F}));
  EXPECT_EQ(found(2).curve.errors, merged.curve.errors);

  // Azimuths that differ, an axis and errors that one repeat lacks, follow at a recalculation.
  const Module_database::Curve none = made::reading(low_points).curve;
  Module_database::write_facts(second, none, {ey_not_known, 1.0F});
  ASSERT_EQ(recalculate_merged(), 0);
  for (const std::int32_t reduction : {1, 2}) {
    EXPECT_TRUE(found(reduction).curve.errors.empty() || found(reduction).curve.error(1, 0) == no_data);
    EXPECT_EQ(found(reduction).axes, Module_database::ReadingAxes());
  }
  Module_database::write_facts(second, none, {ey_turned, 0.25F});
  ASSERT_EQ(recalculate_merged(), 0);
  EXPECT_EQ(found(2).axes, merged.axes);
}
