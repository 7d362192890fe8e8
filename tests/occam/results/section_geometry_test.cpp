#include "occam/results/section_geometry.h"

#include <cmath>

#include "occam/results/image_palette.h"
#include "occam/results/run_view.h"
#include "tests/occam/results/made_results.h"

namespace Module_occam {
namespace {

TEST(Image_palette, Follows_its_tables) {
  struct Case {
    int table, entry;
    graph::Colour colour;
  };
  // Grey levels are the entry; the others run through the corners of the colour cube. Half levels go to the
  // even neighbour: 255 - 42.5 is 212; 0.7 in single precision lies below 0.7, so 79.5 isn't reached at 5.
  const Case cases[] = {{0, 2, {2, 2, 2}},      {0, 255, {255, 255, 255}}, {1, 2, {255, 0, 0}},
                        {1, 86, {255, 252, 0}}, {1, 100, {212, 255, 0}},   {1, 170, {0, 255, 0}},
                        {1, 255, {0, 0, 255}},  {2, 2, {255, 0, 0}},       {2, 68, {255, 251, 0}},
                        {2, 128, {0, 255, 0}},  {2, 188, {0, 255, 255}},   {2, 255, {0, 0, 255}},
                        {3, 2, {77, 77, 77}},   {3, 5, {79, 79, 79}},      {3, 255, {254, 254, 254}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "table " << c.table << ", entry " << c.entry);
    EXPECT_EQ(image_palette(c.table, false)[static_cast<std::size_t>(c.entry)], c.colour);
  }
  const Palette plain = image_palette(2, false);
  const Palette inverted = image_palette(2, true);
  EXPECT_EQ(inverted[0], plain[0]);
  EXPECT_EQ(inverted[1], plain[1]);
  for (const std::size_t i : {2U, 127U, 128U, 129U, 130U, 255U}) {
    EXPECT_EQ(inverted[i], plain[257 - i]) << i;
  }
}

TEST(Image_palette, Holds_values_within_its_entries) {
  EXPECT_EQ(palette_entry(1.0, 1.0, 3.0), 2);
  EXPECT_EQ(palette_entry(3.0, 1.0, 3.0), 255);
  EXPECT_EQ(palette_entry(2.0, 1.0, 3.0), 129);
  EXPECT_EQ(palette_entry(1e300, 1.0, 3.0), 255);
  EXPECT_EQ(palette_entry(-1e300, 1.0, 3.0), 2);
  EXPECT_EQ(palette_entry(std::nan(""), 1.0, 3.0), 2);
  EXPECT_EQ(misfit_entry(0.0), 128);
  EXPECT_EQ(misfit_entry(6.0), 255);
  EXPECT_EQ(misfit_entry(-6.0), 2);
  EXPECT_EQ(misfit_entry(-5.99), 2);
  EXPECT_EQ(misfit_entry(100.0), 255);
}

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
