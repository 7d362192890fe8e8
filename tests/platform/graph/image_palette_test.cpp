#include "platform/graph/image_palette.h"

#include <cmath>

#include "gtest/gtest.h"

namespace graph {
namespace {

TEST(Image_palette, Follows_its_tables) {
  struct Case {
    int table, entry;
    Colour colour;
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

}  // namespace
}  // namespace graph
