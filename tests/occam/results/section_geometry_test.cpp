#include "occam/results/section_geometry.h"

#include <cmath>

#include "occam/results/run_view.h"
#include "tests/occam/results/made_results.h"

namespace Module_occam {
namespace {

TEST(Section_choices, Refuse_what_has_no_range_or_depth) {
  const TypedChoices good{"0", "3", "100", false};
  ASSERT_TRUE(read_choices(good));
  for (const TypedChoices& bad :
       {TypedChoices{"3", "3", "2000", false}, TypedChoices{"3", "1", "2000", false},
        TypedChoices{"", "3", "2000", false}, TypedChoices{"0", "3x", "2000", false},
        TypedChoices{"0", "3", "99.9", false}, TypedChoices{"0", "1e999", "2000", false},
        TypedChoices{"0", "3", "deep", false}}) {
    EXPECT_FALSE(read_choices(bad)) << bad.min_res << ' ' << bad.max_res << ' ' << bad.max_depth;
  }
}

TEST(Suggested_range, Half_decades_hold_the_model) {
  struct Case {
    std::vector<double> parameters;
    double lower;
    double upper;
  };
  const Case cases[] = {{{1.2, 2.6, 2.1}, 1.0, 3.0},
                        {{-0.2, 2.5}, -0.5, 2.5},
                        {{2.0, 2.1}, 2.0, 2.5},
                        {{2.0, 2.0}, 1.0, 3.0},         // a half space has the colour in the middle
                        {{1.2, 1e300, 1.3}, 1.0, 1.5},  // what has run away isn't followed
                        {{}, 0.0, 3.0}};
  for (const Case& c : cases) {
    const ResistivityRange range = suggested_range(c.parameters);
    EXPECT_EQ(range.lower, c.lower);
    EXPECT_EQ(range.upper, c.upper);
  }
}

class SectionTest : public made::OccamTest {
 protected:
  void SetUp() override {
    RunResults results;
    ASSERT_EQ(open_results(made::write_results(folder), results), 0);
    view.emplace(results);
  }
  // 1000 pixels show the 100 m between the padding blocks, 500 for the depth.
  SectionGeometry section(double max_depth, bool log_depth) {
    return view->section({.min_res = 1.0, .max_res = 3.0, .max_depth = max_depth, .log_depth = log_depth},
                         {1100.0, 580.0});
  }
  std::optional<RunView> view;
};

TEST_F(SectionTest, Places_blocks_by_their_node_lines) {
  const SectionGeometry all = section(1e6, false);
  ASSERT_EQ(all.rectangles.size(), 5U);  // three of the first layer, two of the second
  EXPECT_EQ(all.right_distance, 200.0);
  EXPECT_EQ(all.bottom_depth, 540.0);
  const SectionRectangle& first = all.rectangles[0];
  EXPECT_NEAR(first.left, 50.0, 1e-9);
  EXPECT_NEAR(first.right, 150.0, 1e-9);
  EXPECT_NEAR(first.top, 40.0, 1e-9);
  EXPECT_NEAR(first.bottom, 40.0 + 500.0 * 20.0 / 540.0, 1e-9);
  EXPECT_EQ(first.colour, 2);  // exactly at the lower end
  const SectionRectangle& deep = all.rectangles[3];
  EXPECT_NEAR(deep.left, 50.0, 1e-9);
  EXPECT_NEAR(deep.right, 350.0, 1e-9);
  EXPECT_NEAR(deep.bottom, 540.0, 1e-9);
  EXPECT_EQ(deep.colour, 255);
  EXPECT_EQ(all.lowest, 1.0);
  EXPECT_EQ(all.highest, 3.0);
  EXPECT_EQ(all.at(200.0, 300.0), &deep);
  EXPECT_EQ(all.at(20.0, 300.0), nullptr);
  EXPECT_NEAR(all.mapping.distance_at(150.0), 110.0, 1e-9);
  EXPECT_NEAR(all.mapping.depth_at(540.0), 540.0, 1e-9);
}

TEST_F(SectionTest, Ends_at_the_last_node_line_within_the_depth) {
  const SectionGeometry shallow = section(100.0, false);
  EXPECT_EQ(shallow.bottom_depth, 40.0);
  EXPECT_EQ(shallow.rectangles.size(), 5U);
  EXPECT_GT(shallow.rectangles[3].bottom, 540.0);  // reaches below the picture
  EXPECT_EQ(shallow.end_depth, 100.0) << "a drawing goes on to the depth asked for";
  EXPECT_GE(shallow.mapping.depth_at(shallow.rectangles[3].bottom), 100.0);
  EXPECT_EQ(section(1e6, true).end_depth, 540.0);
}

TEST_F(SectionTest, Counts_decades_in_blocks_of_the_first_layer) {
  const SectionGeometry decades = section(1e6, true);
  EXPECT_NEAR(decades.rectangles[0].top, 40.0, 1e-9);
  // 20 m is one block below the ground, two below the origin: log10 2 = 0.30103 of 1.4 * 500 / log10 540
  EXPECT_NEAR(decades.rectangles[0].bottom, 40.0 + 0.30103 * 1.4 * 500.0 / 2.73239, 0.01);
  EXPECT_NEAR(decades.mapping.depth_at(decades.mapping.to_y(123.0)), 123.0, 1e-9);
}

TEST_F(SectionTest, Tells_resistivities_with_their_antilog) {
  EXPECT_EQ(resistivity_text(2.0), "2.00 / 100.00");
  EXPECT_EQ(resistivity_text(-10.0), "-10.00 / 0.00");
  EXPECT_EQ(resistivity_text(10.0), "10.00 / 10000000000.00");
  EXPECT_EQ(resistivity_text(10.01), "10.01 / ***");
}

TEST_F(SectionTest, Too_few_parameters_are_reported_once_and_leave_the_picture_blank) {
  static_cast<void>(folder.write(
      "iter_3", made::replaced(made::iteration_text(3, " 2.0 1.0\n"), "PARMS:        9", "PARMS:        2")));
  EXPECT_TRUE(section(2000.0, false).rectangles.empty());
  EXPECT_TRUE(section(2000.0, false).rectangles.empty());
  EXPECT_EQ(
      interface.take_messages(),
      made::Messages{"iter_3 has 2 parameters, the model has 9 free blocks; they are not of the same run"});
}

}  // namespace
}  // namespace Module_occam
