#include "database/frequency_store.h"

#include "core/absent_value.h"
#include "database/reading.h"
#include "tests/support/survey_fixture.h"

using namespace Module_database;

namespace {

Frequencies loaded(std::int32_t reference_type) {
  auto frequencies = load_reference_frequencies(reference_type);
  EXPECT_TRUE(frequencies.has_value());
  return std::move(frequencies).value_or(Frequencies{});
}

}  // namespace

TEST_F(SurveyTest, A_frequency_list_is_the_union_of_all_readings_and_keeps_its_flags) {
  new_survey();
  EXPECT_TRUE(loaded(0).empty());

  ASSERT_EQ(add_reading_frequencies(0, 4096.0F, std::vector<float>{1.0F, 10.0F, 100.0F}), 0);
  ASSERT_EQ(save_frequency_selection(0, {{1.0F, 10.0F, 100.0F}, {1, 0, 1}}), 0);

  struct Case {
    const char* name;
    std::vector<float> given;
    std::vector<float> list;
    std::vector<std::int32_t> flags;
  };
  const Case cases[] = {
      {"the same", {1.0F, 10.0F, 100.0F}, {1.0F, 10.0F, 100.0F}, {1, 0, 1}},
      {"as long and within a thousandth", {1.0F, 10.0005F, 100.0F}, {1.0F, 10.0F, 100.0F}, {1, 0, 1}},
      {"one more, below all", {0.5F, 1.0F, 10.0F, 100.0F}, {0.5F, 1.0F, 10.0F, 100.0F}, {1, 1, 0, 1}},
      {"near but of another length", {10.0005F}, {0.5F, 1.0F, 10.0F, 10.0005F, 100.0F}, {1, 1, 0, 1, 1}},
      {"an absent frequency", {no_data, 1.0F}, {0.5F, 1.0F, 10.0F, 10.0005F, 100.0F}, {1, 1, 0, 1, 1}},
      {"frequencies of 0 and below",
       {-2.0F, -0.0F, 0.0F, 1.0F},
       {0.5F, 1.0F, 10.0F, 10.0005F, 100.0F},
       {1, 1, 0, 1, 1}},
      {"above all, not ascending",
       {300.0F, 200.0F},
       {0.5F, 1.0F, 10.0F, 10.0005F, 100.0F, 200.0F, 300.0F},
       {1, 1, 0, 1, 1, 1, 1}},
      {"none", {}, {0.5F, 1.0F, 10.0F, 10.0005F, 100.0F, 200.0F, 300.0F}, {1, 1, 0, 1, 1, 1, 1}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ASSERT_EQ(add_reading_frequencies(0, 256.0F, c.given), 0);
    const Frequencies frequencies = loaded(0);
    EXPECT_EQ(frequencies.list, c.list);
    EXPECT_EQ(frequencies.enabled, c.flags);
  }

  ASSERT_EQ(add_reading_frequencies(2, 4096.0F, std::vector<float>{7.0F}), 0);
  EXPECT_EQ(rows_in("ReadingsFrequencyTable"), 2);
  EXPECT_EQ(loaded(0).count(), 7U);
}

TEST_F(SurveyTest, A_damaged_frequency_list_is_reported_and_the_loaded_one_stays) {
  new_survey();
  ASSERT_EQ(add_reading_frequencies(0, 0.0F, std::vector<float>{1.0F, 2.0F}), 0);
  session().current_reference_type = 0;
  ASSERT_EQ(load_selected_frequencies(), 0);
  dao::Recordset& lists = open_survey().frequency_lists;
  lists.find_first("ReferenceType = 0");
  lists.edit();
  lists.set_long("NumFrequencies", 3);
  lists.update();
  EXPECT_EQ(load_selected_frequencies(), -1);
  EXPECT_EQ(session().frequencies.count(), 2U);
  EXPECT_EQ(add_reading_frequencies(0, 0.0F, std::vector<float>{1.0F}), -1);
  const std::vector<std::string> messages = interface.take_messages();
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_EQ(messages[0].rfind("An error occurred while creating the frequency lists: ", 0), 0U);
  EXPECT_EQ(messages[1].rfind("An error occurred while adding the frequency data: ", 0), 0U);
}

TEST_F(SurveyTest, A_frequency_selection_is_read_changed_and_stored) {
  new_survey();
  EXPECT_TRUE(loaded(1).empty());
  ASSERT_EQ(add_reading_frequencies(1, 0.0F, std::vector<float>{1.0F, 2.0F, 4.0F}), 0);
  Frequencies frequencies = loaded(1);
  EXPECT_EQ(frequencies.list, (std::vector<float>{1.0F, 2.0F, 4.0F}));
  EXPECT_EQ(frequencies.enabled, (std::vector<std::int32_t>{1, 1, 1}));
  frequencies.enabled[1] = 0;
  session().data_changed = false;
  ASSERT_EQ(save_frequency_selection(1, frequencies), 0);
  EXPECT_TRUE(session().data_changed);
  EXPECT_EQ(loaded(1).enabled, (std::vector<std::int32_t>{1, 0, 1}));
  EXPECT_EQ(loaded(1).enabled_position(4.0F), 2);
  EXPECT_EQ(loaded(1).enabled_position(2.0F), -1) << "switched off";
  EXPECT_EQ(loaded(1).enabled_position(3.0F), -1) << "not listed";
  ASSERT_EQ(save_frequency_selection(2, frequencies), 0);  // there is no such list
  ASSERT_EQ(save_frequency_selection(1, {}), 0);
  EXPECT_EQ(rows_in("ReadingsFrequencyTable"), 1);
  EXPECT_EQ(loaded(1).enabled, (std::vector<std::int32_t>{1, 0, 1}));
}

TEST_F(SurveyTest, A_list_of_an_earlier_version_loses_its_frequencies_of_0_and_below) {
  new_survey();
  ASSERT_EQ(add_reading_frequencies(0, 0.0F, std::vector<float>{1.0F, 2.0F}), 0);
  dao::Recordset& lists = open_survey().frequency_lists;
  lists.requery();
  lists.find_first("ReferenceType = 0");
  lists.edit();
  lists.set_long("NumFrequencies", 4);
  lists.set_binary("FreqBinary", bytes_of(std::vector<float>{-3.0F, 0.0F, 1.0F, 2.0F}));
  lists.set_binary("MaskBinary", bytes_of(std::vector<std::int32_t>{1, 1, 0, 1}));
  lists.update();
  EXPECT_EQ(loaded(0).list, (std::vector<float>{1.0F, 2.0F}));
  EXPECT_EQ(loaded(0).enabled, (std::vector<std::int32_t>{0, 1}));
  ASSERT_EQ(add_reading_frequencies(0, 0.0F, std::vector<float>{0.5F}), 0);
  EXPECT_EQ(loaded(0).enabled, (std::vector<std::int32_t>{1, 0, 1}));
}
