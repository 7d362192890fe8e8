// The table of chi by station as it is read, copied and saved.
#include "rhoplus/line_chi.h"

#include <gtest/gtest.h>

namespace {

using namespace Module_rhoplus;

StationInversion fitted(float target, float achieved) {
  StationInversion inversion;
  inversion.run.status = numerics::rhoplus::rhoplus_ran;
  inversion.run.used_values = 42;
  inversion.run.target_chi = target;
  inversion.run.achieved_chi = achieved;
  return inversion;
}

TEST(Line_chi, Says_how_far_each_station_is_from_one_dimension) {
  StationInversion limited = fitted(6.0F, 3.0F);
  limited.run.limit_met = true;
  StationInversion unsupported = fitted(6.0F, 3.0F);
  unsupported.unsupported = "No reading is in use";
  EXPECT_EQ(chi_of(unsupported, 1, 100.0).remark, "Rests on readings that are switched off");
  const std::vector<StationChi> stations{chi_of(fitted(6.48F, 12.96F), 1, 100.0), chi_of(limited, 2, 250.0),
                                         chi_of({}, 3, 400.0), chi_of(fitted(6.0F, 6.0F), 4, 500.0)};
  EXPECT_EQ(chi_table_text(stations),
            "Station\tSite\tValues\tTarget chi\tAchieved chi\tAchieved/target\tRemarks\n"
            "100\t\t42\t6.48\t12.96\t2.00\t\n"
            "250\t\t42\t6.00\t3.00\t0.50\tThe limit of iterations was met\n"
            "400\t\t0\t-\t-\t-\tNo data to invert\n"
            "500\t\t42\t6.00\t6.00\t1.00\t\n");
  EXPECT_EQ(chi_summary(stations), "3 stations inverted; chi above its target at 1; nothing to invert at 1");
  EXPECT_EQ(chi_summary({stations[0]}), "1 station inverted; chi above its target at 1");
  EXPECT_EQ(chi_summary({stations[1], stations[3]}), "2 stations inverted; chi above its target at 0");
}

}  // namespace
