// Curves that stay although everything they were computed from has been switched off.
#include "reduction/unsupported_curves.h"

#include <algorithm>

#include "core/undo_stack.h"
#include "reduction/data_sets/data_sets.h"
#include "reduction/edits/masks.h"
#include "reduction/edits/undo.h"
#include "tests/reduction/made_line.h"
#include "tests/support/survey_fixture.h"

using namespace Module_averaged_data;

namespace {

class UnsupportedCurves : public SurveyTest {
 public:
  UnsupportedCurves() {
    new_survey();
    Module_Brenlox::clear_undo();
    reset_data_sets();
    made::store_line(2);
    load(64.0);
  }
  ~UnsupportedCurves() override { Module_Brenlox::clear_undo(); }

 protected:
  static void load(double scan_rate) {
    session().current_scan_rate = scan_rate;
    ASSERT_EQ(load_selected_profile(), 0);
    ASSERT_EQ(load_selected_station({}), 0);
    ASSERT_EQ(load_selected_repeats(), 0);
  }
  static void switch_repeats_off() {
    for (std::size_t slot = 1; slot <= made::line_repeats; ++slot) {
      ASSERT_EQ(set_repeat_use(slot, UseFlag::reading, false), Edit::changed);
    }
  }
  /// What an edit leaves in the data sets is what the survey says of the line and of the station.
  static void expect(const std::vector<UnsupportedCurve>& expected) {
    EXPECT_EQ(data_sets().unsupported, expected);
    const Module_database::LineSelection line{"200E", 0, "ExHy", 50.0F};
    EXPECT_EQ(unsupported_curves(line), expected);
    EXPECT_EQ(unsupported_curves(line, 100.0), expected);
    EXPECT_TRUE(unsupported_curves(line, 200.0).empty());
    EXPECT_EQ(unsupported_curves({"200E", 0, "", 50.0F}), expected);
    EXPECT_TRUE(unsupported_curves({"200E", 0, "EyHx", 50.0F}).empty());
  }
};

}  // namespace

TEST_F(UnsupportedCurves, Follow_each_switch_and_its_undo) {
  const Module_database::LineSelection line{"200E", 0, "ExHy", 50.0F};
  expect({});
  const StoredReading earlier = data_sets().station.slots[1].reading;
  switch_repeats_off();
  EXPECT_TRUE(Module_database::read_reading(made::row(earlier.ID)).curve.count() > 0)
      << "the average remains";
  expect({{100.0, "ExHy", 64.0F, true}});
  EXPECT_TRUE(is_unsupported(100.0, 64.0F));
  EXPECT_FALSE(is_unsupported(100.0, 256.0F) || is_unsupported(200.0, 64.0F) || is_unsupported(100.0, 0.0F));
  EXPECT_EQ(unsupported_hint(line),
            "No reading is in use, and the earlier curve remains: station 100, ExHy, 64 Hz");

  ASSERT_EQ(set_repeat_use(0, UseFlag::reading, false), Edit::changed);
  expect({{100.0, "ExHy", 64.0F, false}});
  EXPECT_EQ(unsupported_hint(line), "") << "the average isn't used either";
  load(256.0);
  expect({{100.0, "ExHy", 64.0F, false}});
  ASSERT_EQ(set_repeat_use(0, UseFlag::reading, false), Edit::changed);
  expect({{100.0, "ExHy", 0.0F, true}, {100.0, "ExHy", 64.0F, false}});
  EXPECT_EQ(unsupported_hint(line, 100.0),
            "No reading is in use, and the earlier curve remains: station 100, ExHy, all scan rates");
  ASSERT_EQ(set_merged_use(UseFlag::reading, false), Edit::changed);
  EXPECT_EQ(unsupported_hint(line), "") << "no output takes the merged curve";

  while (Module_Brenlox::undo_count() > 0) {
    ASSERT_EQ(undo_last_change().edit, Edit::changed);
  }
  session().current_station_index = 1;
  session().current_station = 100.0;
  session().current_line = "200E";
  expect({});
}

TEST_F(UnsupportedCurves, Are_named_up_to_three_and_an_average_of_a_file_is_none) {
  made::ReadingKey key = made::key(1024.0F);
  made::store(key, 1, made::repeat_of(100.0, 1, true), 1);  // averaged before it was imported
  load(1024.0);
  expect({});
  const std::vector<UnsupportedCurve> many(5, {100.0, "ExHy", 64.0F, true});
  const std::string text = unsupported_text(many);
  EXPECT_EQ(std::ranges::count(text, ';'), 3);
  EXPECT_TRUE(text.ends_with("; and 2 more"));
}
