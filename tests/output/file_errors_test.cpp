#include "output/file_errors.h"

#include "database/reading_facts.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/survey_fixture.h"

using namespace Module_output;
using Module_database::StoredReading;

namespace {

/// Stores a merged curve of two points. Only the second one has a deviation and an error, or no_data.
void store_curve(const Module_database::ReadingKey& key, float phase_deviation, float file_error) {
  StoredReading merged = made::reading({{1.0F, 100.0F, 45.0F}, {10.0F, 100.0F, 45.0F}});
  for (const std::size_t point : {0U, 1U}) {
    merged.curve.value(Module_database::field_resistivity_deviation, point) = no_data;
    merged.curve.value(Module_database::field_phase_deviation, point) = 0.0F;
  }
  merged.curve.value(Module_database::field_phase_deviation, 1) = phase_deviation;
  merged.curve.error_at(Module_database::field_phase, 1) = file_error;
  Module_database::write_facts(
      made::store(key, 0, merged, Module_database::reduction_merged, Module_database::derived_file),
      merged.curve, {});
}

}  // namespace

TEST_F(SurveyTest, Only_lines_without_repeats_are_hinted_at_and_once) {
  const Module_database::LineSelection none;
  EXPECT_EQ(file_errors_hint(none), "") << "no survey";
  new_survey();
  const auto key = [](const char* line, double station) {
    return Module_database::ReadingKey{line, station, 0, 0.0F, "ExHy", 50.0F};
  };
  const auto line = [](const char* name) { return Module_database::LineSelection{name, 0, "ExHy", 50.0F}; };
  store_curve(key("100N", 1), 0.0F, no_data);
  store_curve(key("100N", 2), 0.0F, 3.0F);
  store_curve(key("200N", 1), 0.0F, 3.0F);
  store_curve(key("200N", 2), 0.5F, no_data);
  store_curve(key("300N", 1), 0.0F, no_data);
  store_curve(key("400N", 1), 0.0F, 0.0F);
  EXPECT_TRUE(only_files_have_errors(line("100N")));
  EXPECT_FALSE(only_files_have_errors(line("200N"))) << "one station has repeats";
  EXPECT_FALSE(only_files_have_errors(line("300N"))) << "no errors";
  EXPECT_FALSE(only_files_have_errors(line("400N"))) << "an error of 0 is none";
  EXPECT_FALSE(only_files_have_errors({"100N", 1, "ExHy", 50.0F})) << "no readings";

  EXPECT_EQ(file_errors_hint(line("200N")), "");
  EXPECT_EQ(file_errors_hint(line("100N")), "The files give errors of their values");
  EXPECT_EQ(file_errors_hint(line("100N")), "");
  store_curve(key("300N", 2), 0.0F, 0.1F);
  EXPECT_NE(file_errors_hint(line("300N")), "") << "another line, whose files came later";
}
