// The choice of frequencies: rows, typed ranges, undo, and whether it differs from what is stored.
#include "app/tools/frequency_choice.h"

#include <gtest/gtest.h>

using Module_Brenlox::FrequencyChoice;

namespace {

std::string uses(const FrequencyChoice& choice) {
  std::string text;
  for (const std::int32_t use : choice.frequencies().enabled) {
    text += use == 1 ? '1' : '0';
  }
  return text;
}

FrequencyChoice five() { return FrequencyChoice({{0.333333F, 1.0F, 10.0F, 50.0F, 100.0F}, {1, 1, 1, 0, 1}}); }

}  // namespace

TEST(Frequency_choice, Of_a_typed_range_takes_both_ends_and_names_a_wrong_text) {
  struct Case {
    const char* from;
    const char* to;
    const char* left;  // in use after the range was left out
  };
  for (const Case& c :
       {Case{"1", "50", "10001"}, Case{"50", "1", "10001"}, Case{"", "1", "00101"}, Case{"10", " ", "11000"},
        Case{"0.3333", "0.3333", "01101"}, Case{"2", "9", "11101"}, Case{"", "", "00000"}}) {
    FrequencyChoice choice = five();
    EXPECT_FALSE(choice.set_range(c.from, c.to, false)) << c.from << " " << c.to;
    EXPECT_EQ(uses(choice), c.left) << c.from << " " << c.to;
    EXPECT_FALSE(choice.set_range(c.from, c.to, true));
  }
  FrequencyChoice choice = five();
  const auto at_to = choice.set_range("1", "5o", false);
  ASSERT_TRUE(at_to);
  EXPECT_FALSE(at_to->at_from);
  EXPECT_EQ(at_to->text, "To: '5o' is not a frequency above 0 Hz");
  const auto at_from = choice.set_range("-1", "50", false);
  ASSERT_TRUE(at_from);
  EXPECT_TRUE(at_from->at_from);
  EXPECT_EQ(at_from->text, "From: '-1' is not a frequency above 0 Hz");
  EXPECT_FALSE(choice.differs() || choice.can_undo());
}

TEST(Frequency_choice, Goes_back_step_by_step_and_knows_what_is_stored) {
  FrequencyChoice choice = five();
  choice.set_rows(4, 2, false);
  choice.set_rows(4, 2, false);  // changes nothing: no step
  choice.set_rows(0, 0, false);
  EXPECT_EQ(uses(choice), "01000");
  choice.undo();
  EXPECT_EQ(uses(choice), "11000");
  choice.saved();
  EXPECT_FALSE(choice.differs());
  choice.redo();
  EXPECT_EQ(uses(choice), "01000");
  choice.set_stored();
  EXPECT_EQ(uses(choice), "11000");
  choice.undo();
  EXPECT_EQ(uses(choice), "01000") << "cancelling is a step, too";
  choice.undo();
  choice.undo();
  EXPECT_EQ(uses(choice), "11101");
  EXPECT_TRUE(choice.differs() && !choice.can_undo());
  choice.set_rows(1, 1, false);
  EXPECT_FALSE(choice.can_redo());
}
