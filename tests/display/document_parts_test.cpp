#include "display/document_parts.h"

#include <gtest/gtest.h>

using namespace Module_display_data;

namespace {

void expect_parts(const std::vector<PagePart>& parts, const std::vector<PagePart>& expected) {
  ASSERT_EQ(parts.size(), expected.size());
  for (std::size_t i = 0; i < parts.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_DOUBLE_EQ(parts[i].x, expected[i].x);
    EXPECT_DOUBLE_EQ(parts[i].y, expected[i].y);
    EXPECT_DOUBLE_EQ(parts[i].width, expected[i].width);
    EXPECT_DOUBLE_EQ(parts[i].height, expected[i].height);
  }
}

}  // namespace

TEST(Document_parts, Fill_the_page_without_covering_each_other) {
  expect_parts(station_page_parts(0), {{0, 0, 1, 1}});
  expect_parts(station_page_parts(1), {{0, 0, 0.5, 1}, {0.5, 0, 0.5, 1}});
  expect_parts(station_page_parts(3),
               {{0, 0, 0.25, 1}, {0.25, 0, 0.25, 1}, {0.5, 0, 0.25, 1}, {0.75, 0, 0.25, 1}});
  expect_parts(station_page_parts(5), {{0, 0, 0.25, 1},
                                       {0.25, 0, 0.25, 0.5},
                                       {0.5, 0, 0.25, 0.5},
                                       {0.75, 0, 0.25, 0.5},
                                       {0.25, 0.5, 0.25, 0.5},
                                       {0.5, 0.5, 0.25, 0.5}});
  EXPECT_DOUBLE_EQ(station_page_parts(7).back().y, 2.0 / 3.0);
  expect_parts(parts_beside(2), {{0, 0, 0.5, 1}, {0.5, 0, 0.5, 1}});
}
