// The check of converted surveys: what it must pass, and each kind of damage it must name.
#include "database/legacy_check.h"

#include <filesystem>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "database/reading.h"
#include "platform/dao/compact.h"
#include "platform/dao/error.h"
#include "tests/support/survey_fixture.h"

using namespace Module_database;
namespace fs = std::filesystem;

namespace {

std::string finding(dao::Database& survey) {
  try {
    check_legacy_survey(survey);
  } catch (const dao::Error& failure) {
    return failure.what();
  }
  return {};
}

// A reading of three frequencies and a frequency list of two, both sound.
void add_sound_rows() {
  Curve curve;
  curve.assign(3);
  curve.frequencies = {1.0F, 2.0F, 4.0F};
  dao::Recordset& readings = open_survey().readings;
  readings.add_new();
  write_curve(readings, curve);
  readings.update();
  readings.move_first();

  dao::Recordset& lists = open_survey().frequency_lists;
  lists.add_new();
  lists.set_long("NumFrequencies", 2);
  lists.set_binary("FreqBinary", bytes_of(std::vector<float>{1.0F, 2.0F}));
  lists.set_binary("MaskBinary", bytes_of(std::vector<std::int32_t>{1, 0}));
  lists.update();
  lists.move_first();
}

}  // namespace

TEST_F(SurveyTest, Check_of_a_converted_survey_names_what_no_writer_stored) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  using Change = std::function<void(dao::Recordset&)>;
  const auto frequencies = [](const std::vector<float>& values) -> Change {
    return [values](dao::Recordset& row) { row.set_binary("FreqBinary", bytes_of(values)); };
  };
  const auto masks = [](const std::vector<std::int32_t>& values) -> Change {
    return [values](dao::Recordset& row) { row.set_binary("MaskBinary", bytes_of(values)); };
  };
  const auto count = [](std::int32_t value) -> Change {
    return [value](dao::Recordset& row) { row.set_long("NumFrequencies", value); };
  };
  struct Case {
    const char* name;
    bool in_reading;
    Change change;
    const char* finding;
  };
  const Case cases[] = {
      {"descending", true, frequencies({1.0F, 4.0F, 2.0F}), "reading 1 is damaged: its frequencies"},
      {"no number", true, frequencies({1.0F, nan, 2.0F}), "reading 1 is damaged: its frequencies"},
      {"short", true, frequencies({1.0F, 2.0F}), "FreqBinary has 8 bytes in place of 12"},
      {"mask 2", true, masks({1, 1, 1, 0, 2, 0}), "reading 1 is damaged: its masks"},
      {"long mask", true, masks({1, 1, 1, 0, 1, 0, 0}), "MaskBinary has 28 bytes in place of 24"},
      {"count 0", true, count(0), "FreqBinary has 12 bytes in place of 0"},
      {"huge count", true, count(std::numeric_limits<std::int32_t>::max()), "FreqBinary has 12 bytes"},
      {"21 fields", true, [](dao::Recordset& row) { row.set_long("NumFields", 21); }, "21 fields"},
      {"no data", true, [](dao::Recordset& row) { row.set_null("DataBinary"); }, "DataBinary has 0 bytes"},
      {"list descending", false, frequencies({2.0F, 1.0F}), "frequency list 1 is damaged: its frequencies"},
      {"list mask -1", false, masks({1, -1}), "frequency list 1 is damaged: its masks"},
      {"list short", false, masks({1}), "MaskBinary has 4 bytes in place of 8"},
  };
  new_survey();
  add_sound_rows();
  EXPECT_EQ(finding(open_survey().database), "");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    dao::Transaction undone_at_the_end(open_survey().database);
    dao::Recordset& row = c.in_reading ? open_survey().readings : open_survey().frequency_lists;
    row.edit();
    c.change(row);
    row.update();
    EXPECT_NE(finding(open_survey().database).find(c.finding), std::string::npos)
        << finding(open_survey().database);
  }
  EXPECT_EQ(finding(open_survey().database), "");
}

TEST_F(SurveyTest, Check_of_a_converted_survey_passes_the_legacy_surveys) {
  const fs::path legacy_folder = fs::path(BRENLOX_FIELD_DATA) / "legacy_jet";
  if (!fs::exists(legacy_folder)) {
    GTEST_SKIP() << "no legacy surveys beside the checkout";
  }
  for (const char* name : {"survey_jet4.mdb", "survey_old_generation.mdb", "six_tables.mdb",
                           "five_tables.mdb", "not_a_survey.mdb"}) {
    SCOPED_TRACE(name);
    dao::compact_database((legacy_folder / name).string(), folder.path(name));
    dao::Database survey = dao::Database::open(folder.path(name), dao::Access::read_only);
    EXPECT_EQ(finding(survey), "");
  }
}
