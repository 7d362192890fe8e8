#include "tensor/shared_remarks.h"

#include <gtest/gtest.h>

using namespace Module_tensor;

TEST(Shared_remarks, Name_the_first_stations_and_count_the_others) {
  const std::vector<std::string> remarks{"Station 100: a",      "Station 200 (ET2): a", "no place",
                                         "Station 100: b",      "Station 300: a",       "no place",
                                         "Station 300: no end", "Station 400: a",       "a",
                                         "Station 500: a",      "Station 500: b"};
  std::vector<std::string> texts;
  std::size_t count = 0;
  for (const SharedRemark& remark : shared_remarks(remarks)) {
    texts.push_back(remark.text);
    count += remark.count;
  }
  EXPECT_EQ(texts,
            (std::vector<std::string>{"5 stations, 100, 200 (ET2), 300, 400 and 500: a", "no place (2 times)",
                                      "2 stations, 100 and 500: b", "Station 300: no end", "a"}));
  EXPECT_EQ(count, remarks.size());
  EXPECT_EQ(shared_remarks({"Station 1: x", "Station 2: x", "Station 3: x"}).at(0).text,
            "3 stations, 1, 2 and 3: x");
  EXPECT_TRUE(shared_remarks({}).empty());
}
