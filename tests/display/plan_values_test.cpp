#include "display/plan_values.h"

#include <cmath>

#include "core/absent_value.h"
#include "reduction/edits/masks.h"
#include "tests/display/made_survey.h"

using namespace Module_display_data;
using Module_averaged_data::Component;
using Module_averaged_data::data_sets;

namespace {

class PlanValuesTest : public MadeSurveyTest {
 protected:
  static std::size_t last_frequency() { return session().frequencies.count() - 1; }
  PlanValues values;
};

TEST_F(PlanValuesTest, Are_those_of_the_merged_curves_that_count) {
  open_line(3);
  const std::string type = session().current_data_type;
  EXPECT_FALSE(values.are_of(type));
  ASSERT_EQ(values.read(type), 0);
  EXPECT_TRUE(values.are_of(type));
  EXPECT_FALSE(values.are_of("QP"));
  auto& profile = data_sets().profile;
  const std::vector<double> resistivities = values.at(Component::resistivity, last_frequency());
  const std::vector<double> phases = values.at(Component::phase, last_frequency());
  ASSERT_EQ(resistivities.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(resistivities[i], double{profile.columns[i].resistivity.back()} *
                                    static_cast<double>(profile.columns[i].ResOffset));
    EXPECT_EQ(phases[i], double{profile.columns[i].phase.back()});
  }

  // An edit of the line on show is taken over without reading anything again.
  profile.columns[0].mask.back() = {0, 1};
  profile.columns[1].UsePhase = false;
  profile.columns[1].ResOffset = 3.0F;
  profile.columns[2].ResOffset = 2.0F;
  profile.columns[2].resistivity.front() = -5.0F;  // no colour of a logarithmic scale
  values.take_line(profile);
  EXPECT_TRUE(is_absent(values.at(Component::resistivity, 0)[2]));
  EXPECT_FALSE(is_absent(values.at(Component::phase, 0)[2]));
  const std::vector<double> edited = values.at(Component::resistivity, last_frequency());
  EXPECT_TRUE(is_absent(edited[0]));
  EXPECT_EQ(edited[1], 3.0 * double{profile.columns[1].resistivity.back()});
  EXPECT_EQ(edited[2], 2.0 * double{profile.columns[2].resistivity.back()});
  const std::vector<double> edited_phases = values.at(Component::phase, last_frequency());
  EXPECT_EQ(edited_phases[0], phases[0]);
  EXPECT_TRUE(is_absent(edited_phases[1]));

  profile.key.data_type = "QP";
  profile.columns[1].ResOffset = 5.0F;
  values.take_line(profile);
  EXPECT_EQ(values.at(Component::resistivity, last_frequency()), edited) << "curves of another kind";
  profile.key.data_type = type;
  profile.key.line = "999E";
  values.take_line(profile);
  EXPECT_EQ(values.at(Component::resistivity, last_frequency()), edited)
      << "a line that the plan doesn't have";
}

TEST_F(PlanValuesTest, Each_line_has_its_own) {
  made::ReadingKey key = made::key(0.0F, 200.0);
  key.line = "300E";
  (void)Module_database::find_station(Module_database::StationSearch::create, key.line, 100.0);
  made::store(key, 0, made::reading({{1.0F, 700.0F, 30.0F}}), 2, -1);
  open_line(2);
  const std::string type = session().current_data_type;
  ASSERT_EQ(values.read(type), 0);
  EXPECT_EQ(values.at(Component::resistivity, 0), (std::vector<double>{113.5, 123.5, no_data, 700.0}));
  auto& profile = data_sets().profile;
  ASSERT_EQ(profile.key.line, "200E");
  profile.columns[1].UsePhase = false;
  values.take_line(profile);
  EXPECT_EQ(values.at(Component::phase, 0), (std::vector<double>{42.5, no_data, no_data, 30.0}));
}

TEST_F(PlanValuesTest, Other_frequencies_or_dipoles_make_them_stale) {
  open_line(2);
  const std::string type = session().current_data_type;
  ASSERT_EQ(values.read(type), 0);
  session().current_dipole += 1.0F;
  EXPECT_FALSE(values.are_of(type));
  ASSERT_EQ(values.read(type), 0);
  EXPECT_TRUE(is_absent(values.at(Component::resistivity, 0).at(0))) << "no curve has this dipole";
  EXPECT_TRUE(values.at(Component::phase, 1000).size() == 2 &&
              is_absent(values.at(Component::phase, 1000)[1]));
}

TEST(PlanRangeTest, Takes_the_values_in_between_round_ends) {
  const PlanRange resistivity = plan_range(Component::resistivity, {no_data, 3.0, 250.0});
  EXPECT_DOUBLE_EQ(resistivity.lower, 0.0);
  EXPECT_DOUBLE_EQ(resistivity.upper, 2.5);
  const PlanRange one = plan_range(Component::phase, {40.0});
  EXPECT_DOUBLE_EQ(one.lower, 40.0);
  EXPECT_DOUBLE_EQ(one.upper, 50.0) << "a scale has two ends";
  EXPECT_DOUBLE_EQ(plan_range(Component::phase, {-135.5, 12.0}).lower, -140.0);
  EXPECT_DOUBLE_EQ(plan_range(Component::resistivity, {no_data}).upper, 3.0);
}

}  // namespace
