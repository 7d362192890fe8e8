#include "occam/setup/site_names.h"

#include <gtest/gtest.h>

namespace Module_occam {
namespace {

TEST(SiteNames, Are_those_of_the_field_files_where_these_can_be_used) {
  struct Case {
    const char* what;
    std::vector<std::string> given;  // at stations 100, 200, ...
    std::vector<std::string> names;
  };
  const Case cases[] = {
      {"names", {"ET001", "ET006"}, {"ET001", "ET006"}},
      {"no name", {"ET001", "", " "}, {"ET001", "station_200.0", "station_300.0"}},
      {"blanks", {" site 7\tB "}, {"site_7_B"}},
      {"other letters", {"Ört 1"}, {"Ört_1"}},
      {"the longest, and a longer one",
       {"abcdefghijklmnopqrst", "abcdefghijklmnopqrstu"},
       {"abcdefghijklmnopqrst", "station_200.0"}},
      {"two of one name", {"ET", "MT", "et"}, {"ET_100", "MT", "et_300"}},
      {"a number that another has", {"ET", "ET_100", "ET"}, {"station_100.0", "station_200.0", "ET_300"}},
      {"as a site without a name", {"station_200.0", ""}, {"station_200.0_100", "station_200.0"}}};
  for (const Case& c : cases) {
    std::vector<InversionSite> sites;
    for (const std::string& name : c.given) {
      const double station = 100.0 * static_cast<double>(sites.size() + 1);
      sites.push_back({station, name});
    }
    EXPECT_EQ(names_in_data_file(sites), c.names) << c.what;
  }
}

}  // namespace
}  // namespace Module_occam
