#include "display/mask_commands.h"

#include "core/undo_stack.h"
#include "tests/display/made_survey.h"

using namespace Module_averaged_data;
using namespace Module_display_data;

namespace {

class MaskCommands : public MadeSurveyTest {
 protected:
  static int counting_points(std::size_t slot) {
    const Module_database::Curve& curve = data_sets().repeats.slots[slot].reading.curve;
    int points = 0;
    for (std::size_t i = 0; i < curve.count(); ++i) {
      points += curve.counts_at(Module_database::field_resistivity, i);
    }
    return points;
  }
};

}  // namespace

TEST_F(MaskCommands, Take_their_numbers_from_texts) {
  open_line(1);
  for (const char* text : {"", " ", "x", "0", "-2"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(clear_typed_frequencies(FrequencyCommand::mask_up_to, text, OutlierField::both), Edit::nothing);
    EXPECT_EQ(clip_typed_outliers(ClipEnds::top, text, OutlierField::both), Edit::nothing);
    EXPECT_EQ(enter_static_factor(text), Edit::nothing);
    EXPECT_FALSE(is_command_frequency(text) || is_outlier_count(text) || is_static_factor(text));
  }
  EXPECT_TRUE(is_command_frequency("0.01") && is_outlier_count("1") && is_static_factor("0.01"));
  EXPECT_FALSE(is_outlier_count("0.99") || is_static_factor("1e99"));
  EXPECT_EQ(clip_typed_outliers(ClipEnds::top, "0.9", OutlierField::both), Edit::nothing);
  EXPECT_EQ(enter_static_factor("1e99"), Edit::nothing);
  EXPECT_TRUE(interface.take_messages().empty());
  EXPECT_EQ(clip_typed_outliers(ClipEnds::top, "1e99", OutlierField::both), Edit::nothing);
  EXPECT_EQ(interface.take_messages().size(), 1U) << "there are not as many repeats";
  EXPECT_EQ(Module_Brenlox::undo_count(), 0U);

  EXPECT_EQ(clear_typed_frequencies(FrequencyCommand::mask_up_to, " 1.99995 ", OutlierField::resistivity),
            Edit::changed);
  EXPECT_EQ(counting_points(1), 3);
  EXPECT_EQ(clear_typed_frequencies(FrequencyCommand::reset_all, "", OutlierField::both), Edit::changed);
  EXPECT_EQ(counting_points(1), 5);
  EXPECT_EQ(clip_typed_outliers(ClipEnds::top, "1.7", OutlierField::resistivity), Edit::changed);
  EXPECT_EQ(counting_points(made::line_repeats), 0) << "the last repeat is the highest everywhere";
  EXPECT_EQ(counting_points(made::line_repeats - 1), 5);
  EXPECT_EQ(enter_static_factor("2.5"), Edit::changed);
  EXPECT_EQ(data_sets().profile.columns[0].ResOffset, 2.5F);
  EXPECT_FALSE(session().updating_controls);
}

TEST_F(MaskCommands, Do_nothing_while_the_controls_are_being_set) {
  open_line(1);
  session().updating_controls = true;
  EXPECT_EQ(clear_typed_frequencies(FrequencyCommand::mask_up_to, "4", OutlierField::both), Edit::nothing);
  EXPECT_EQ(clip_typed_outliers(ClipEnds::top, "1", OutlierField::both), Edit::nothing);
  EXPECT_EQ(enter_static_factor("2"), Edit::nothing);
  EXPECT_TRUE(session().updating_controls);
}
