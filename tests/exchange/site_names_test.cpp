#include "exchange/site_names.h"

#include <gtest/gtest.h>

using namespace Module_exchange;

TEST(Site_names, Take_only_what_every_system_has_in_file_names) {
  struct Case {
    const char* name;
    const char* id;
  };
  const Case cases[] = {
      {"ET001", "ET001"}, {"100.5", "100_5"},      {"  A-1 ", "A_1"},
      {"../up", "___up"}, {"a/b\\c:d", "a_b_c_d"}, {"Gr\xC3\xBCn", "Gr_n"},  // one character of two bytes
      {"", "_"},          {"nul", "nul_"},         {"COM1", "COM1_"},
      {"COM12", "COM12"}, {"CONSOLE", "CONSOLE"}};
  for (const Case& c : cases) {
    EXPECT_EQ(file_id(c.name), c.id) << c.name;
  }
  EXPECT_EQ(site_or_station("ET001", "200E", 100.0), "ET001");
  EXPECT_EQ(site_or_station("", "200E", 100.5), "200E_100.5");
}

TEST(Site_names, Equal_ones_are_numbered_whatever_the_case_of_their_letters) {
  const std::vector<std::string> names{"A.1", "a_1", "B", "A_1_2", "A 1"};
  EXPECT_EQ(unique_ids(names), (std::vector<std::string>{"A_1", "a_1_2", "B", "A_1_2_2", "A_1_3"}));
}
