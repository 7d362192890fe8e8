// What a plan tells of the stations of a line.
#include "exchange/export_plan.h"

#include <algorithm>

#include "tests/exchange/made_export.h"

using Module_exchange::ExportPlan;

namespace {

using Strings = std::vector<std::string>;

class ExportPlanTest : public ExportTest {
 protected:
  /// The remarks of each row.
  std::vector<Strings> planned() {
    ExportPlan plan;
    EXPECT_EQ(make_export_plan(choices, plan), 0);
    std::vector<Strings> remarks;
    for (const Module_exchange::ExportRow& row : plan.rows) {
      remarks.push_back(row.remarks);
    }
    return remarks;
  }
};

std::size_t count_of(const Strings& remarks, const std::string& remark) {
  return static_cast<std::size_t>(std::ranges::count(remarks, remark));
}

}  // namespace

// A line of scalar readings lacks the same everywhere.
TEST_F(ExportPlanTest, What_all_stations_lack_is_told_once_and_else_of_each) {
  made::store_line(3);
  auto remarks = planned();
  ASSERT_EQ(remarks.size(), 3U);
  EXPECT_EQ(count_of(remarks[0], "All stations of line 200E: no value of ExHx, EyHx, EyHy counts"), 1U);
  EXPECT_EQ(count_of(remarks[0], "All stations of line 200E: there is no latitude and longitude"), 1U);
  EXPECT_EQ(remarks[1], Strings{});

  made::store_tensor(400.0);
  made::place_site(400.0, -20.45614, 139.12344, "ET004");
  remarks = planned();
  ASSERT_EQ(remarks.size(), 4U);
  EXPECT_EQ(count_of(remarks[1], "Station 200: no value of ExHx, EyHx, EyHy counts"), 1U);
  EXPECT_EQ(count_of(remarks[1], "Station 200: there is no latitude and longitude"), 1U);
  EXPECT_EQ(remarks[3], Strings{});
}

TEST_F(ExportPlanTest, Halves_that_a_format_has_no_room_for_are_told_with_the_station) {
  made::store_tensor(400.0);
  made::place_site(400.0, -20.45614, 139.12344, "ET004");
  Module_database::open_survey().database.execute(
      "UPDATE ReadingsDataTable SET UsePhase = 0 WHERE DataType = 'ExHy'");
  choices.format = Module_exchange::ExportFormat::emtf_xml;
  const auto remarks = planned();
  ASSERT_EQ(remarks.size(), 1U);
  EXPECT_EQ(count_of(remarks[0],
                     "Station 400 (ET004): at 3 frequencies resistivity or phase alone has a value, and the "
                     "file, which holds impedances, has none"),
            1U);
}
