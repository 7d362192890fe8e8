#include "database/reading.h"

#include <cstring>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "tests/support/survey_fixture.h"

using namespace Module_database;

namespace {

Curve made_curve(std::size_t n) {
  Curve curve;
  curve.assign(n);
  for (std::size_t i = 0; i < n; ++i) {
    curve.frequencies[i] = 0.1F * static_cast<float>(i + 1);
    for (int field = 1; field <= field_count; ++field) {
      curve.value(field, i) = static_cast<float>(100 * i) + static_cast<float>(field);
    }
    curve.counts_at(field_resistivity, i) = 1;
    curve.counts_at(field_phase, i) = i % 2 == 0 ? 1 : 0;
  }
  return curve;
}

}  // namespace

TEST_F(SurveyTest, A_reading_comes_back_from_its_bytes) {
  new_survey();
  dao::Recordset& readings = open_survey().readings;
  for (const std::size_t n : {0U, 1U, 52U, 5000U}) {
    SCOPED_TRACE(n);
    Curve curve = made_curve(n);
    if (n > 0) {
      curve.value(field_resistivity, 0) = no_data;
      curve.value(field_phase, 0) = -0.0F;
    }
    readings.add_new();
    readings.set_long("FileID", 5);
    readings.set_single("ResOffset", 0.0F);
    readings.set_single("PhaseOffset", -3.3F);
    readings.set_bit("UsePhase", true);
    write_curve(readings, curve);
    readings.update();
    readings.find_first("NumFrequencies = " + std::to_string(n));
    ASSERT_FALSE(readings.no_match());

    const dao::Bytes data = readings.get_binary("DataBinary");
    EXPECT_EQ(readings.get_binary("FreqBinary").size(), 4 * n);
    EXPECT_EQ(data.size(), 80 * n);
    EXPECT_EQ(readings.get_binary("MaskBinary").size(), 8 * n);
    if (n > 1) {  // field 2 of the second frequency stands behind 21 floats: 102
      float value = 0.0F;
      std::memcpy(&value, data.data() + std::size_t{21} * 4, 4);
      EXPECT_EQ(value, 102.0F);
    }
    const StoredReading reading = read_reading(readings);
    EXPECT_EQ(reading.curve.frequencies, curve.frequencies);
    EXPECT_EQ(reading.curve.data, curve.data);
    EXPECT_EQ(reading.curve.mask, curve.mask);
    EXPECT_EQ(reading.ResOffset, 1.0F);  // 0 is read as 1
    EXPECT_EQ(reading.PhaseOffset, -3.3F);
    EXPECT_FALSE(reading.UseReading);
    EXPECT_TRUE(reading.UsePhase);
    EXPECT_EQ(reading.FileID, 5);
  }
}

TEST(Curve_points, Take_their_values_masks_and_errors_along) {
  Curve source = made_curve(3);
  source.counts_at(field_phase, 2) = 7;
  Curve curve;
  curve.append(source, 2);
  EXPECT_TRUE(curve.errors.empty());
  source.error_at(field_resistivity, 0) = 1.5F;
  source.error_at(field_phase, 0) = 0.25F;
  curve.append(source, 0);
  EXPECT_EQ(curve.frequencies, (std::vector<float>{source.frequencies[2], source.frequencies[0]}));
  EXPECT_EQ(curve.value(field_phase, 0), source.value(field_phase, 2));
  EXPECT_EQ(curve.value(field_phase, 1), source.value(field_phase, 0));
  EXPECT_EQ(curve.counts_at(field_phase, 0), 7);
  EXPECT_EQ(curve.errors, (std::vector<float>{no_data, no_data, 1.5F, 0.25F}));
}

TEST_F(SurveyTest, Numbers_in_criteria_find_their_rows) {
  new_survey();
  dao::Recordset& readings = open_survey().readings;
  const float values[] = {0.1F, 33.3F, 24000.0F / 7.0F, 1e-5F, -12.5F, 16777217.0F, 4096.0F};
  std::int32_t number = 0;
  for (const float value : values) {
    readings.add_new();
    readings.set_long("FileID", ++number);
    readings.set_single("SampleRate", value);
    readings.set_double("Station", 1250.4 + number);
    readings.update();
  }
  number = 0;
  for (const float value : values) {
    ++number;
    readings.find_first("SampleRate = " + criterion_text(value) +
                        " AND Station = " + criterion_text(1250.4 + number));
    ASSERT_FALSE(readings.no_match()) << criterion_text(value);
    EXPECT_EQ(readings.get_long("FileID"), number);
    EXPECT_EQ(readings.get_single("SampleRate"), value);
  }
}
