#include "import/readers/edi_curves.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/absent_value.h"
#include "core/line_reader.h"
#include "formats/edi/edi_parser.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/support/temporary_folder.h"

using namespace Module_data_file;
using namespace formats::edi;

namespace {

using Values = std::vector<float>;

class EdiCurves : public ::testing::Test {
 protected:
  EdiSection first_section(const MadeSection& made) const {
    formats::FileReport report;
    LineReader reader(folder_.write("made.edi", made_edi({made})));
    EdiMtParser parser(reader, report);
    EdiSection section;
    EXPECT_TRUE(parser.next_section(section));
    return section;
  }

  TemporaryFolder folder_;
};

}  // namespace

TEST_F(EdiCurves, Fills_curves_with_copies_and_masks) {
  MadeSection section;
  section.count = 5;
  section.frequencies = "5 4 3 2 1";
  section.blocks =
      ">RHOYX //5\n1 0 -1 1e32 2\n>PHSYX //5\n45 -135 0 45 NaN\n>ZYXR //5\n1 2 3 4 1e32\n>ZYXI //5\n5 6 7 8 "
      "9\n"
      ">ZYX.VAR //5\n.1 .2 .3 .4 .5\n";
  EdiSection read = first_section(section);
  Module_database::Curve curve;
  fill_curve(read, element_yx, curve);
  ASSERT_EQ(curve.data.size(), 100U);
  EXPECT_EQ(curve.mask, (std::vector<std::int32_t>{1, 1, 0, 0, 0, 0, 0, 1, 1, 0}));
  EXPECT_EQ(Values(curve.data.begin(), curve.data.begin() + 20),
            (Values{1, 45, 0, 0, 1, 45, 0, 0, 1, 5, .1F, .1F, 0, 1, 5, .1F, .1F, 0, 0, 0}));
  EXPECT_EQ(curve.value(9, 4), no_data);
  EXPECT_EQ(curve.value(14, 4), no_data);

  turn_ey(read);
  fill_curve(read, element_yx, curve);
  EXPECT_EQ(read.get(element_yx, quantity_phase).values, (Values{-135, 45, 180, -135, no_data}));
  EXPECT_EQ(read.get(element_yx, quantity_real).values, (Values{-1, -2, -3, -4, no_data}));
  EXPECT_EQ(curve.value(6, 1), 45.0F);
  EXPECT_EQ(curve.counts_at(2, 1), 1);
  EXPECT_EQ(curve.counts_at(2, 0), 0);
}

// Z = 1000 (1 + i)/sqrt(2) at 1000 Hz: |Z|^2/5f = 200 ohm-m at 45 degrees; a variance of 5000 is a standard
// error of 50 of each part, 5 percent of |Z|, which gives 10 percent of the resistivity and 0.05 rad.
TEST_F(EdiCurves, Computes_resistivity_and_phase_from_impedances) {
  MadeSection section;
  section.count = 4;
  section.frequencies = "1000 1000 0 1000";
  section.blocks =
      ">ZXYR //4\n707.10678 -707.10678 1 1e32\n>ZXYI //4\n707.10678 -707.10678 1 1\n>ZXY.VAR //4\n5000 1e32 "
      "1 1\n";
  EdiSection read = first_section(section);
  compute_from_impedance(read, element_xy);
  const Values& resistivity = read.get(element_xy, quantity_resistivity).values;
  const Values& phase = read.get(element_xy, quantity_phase).values;
  const Values& resistivity_error = read.get(element_xy, quantity_resistivity_error).values;
  const Values& phase_error = read.get(element_xy, quantity_phase_error).values;
  EXPECT_NEAR(resistivity[0], 200.0, 1e-4);
  EXPECT_NEAR(phase[0], 45.0, 1e-5);
  EXPECT_NEAR(resistivity_error[0], 20.0, 1e-4);
  EXPECT_NEAR(phase_error[0], 2.8647890, 1e-5);
  EXPECT_NEAR(phase[1], 225.0, 1e-4);  // -135 is below -90
  EXPECT_EQ(resistivity_error[1], no_data);
  EXPECT_EQ(resistivity[2], no_data);
  EXPECT_EQ(resistivity[3], no_data);

  compute_from_impedance(read, element_yx);
  EXPECT_FALSE(read.get(element_yx, quantity_resistivity).present);
}

TEST_F(EdiCurves, Fields_11_and_12_hold_the_later_block) {
  const std::string impedance = ">ZYXR //1\n707.10678\n>ZYXI //1\n707.10678\n";
  const std::string variance = ">ZYX.VAR //1\n5000\n";
  const std::string error = ">RHOYX.ERR //1\n7\n";
  struct Case {
    const char* name;
    std::string blocks;
    bool compute;
    float first;
    float second;
  };
  const Case cases[] = {{"error", impedance + error, true, 7.0F, 0.0F},
                        {"variance", impedance + variance, false, 5000.0F, 5000.0F},
                        {"variance, error", impedance + variance + error, false, 7.0F, 5000.0F},
                        {"error, variance", impedance + error + variance, false, 5000.0F, 5000.0F},
                        {"variance, error; computed", impedance + variance + error, true, 7.0F, 2.864789F},
                        {"error, variance; computed", impedance + error + variance, true, 20.0F, 2.864789F}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    MadeSection section;
    section.count = 1;
    section.frequencies = "1000";
    section.blocks = c.blocks;
    EdiSection read = first_section(section);
    if (c.compute) {
      compute_from_impedance(read, element_yx);
    }
    Module_database::Curve curve;
    fill_curve(read, element_yx, curve);
    EXPECT_NEAR(curve.value(11, 0), c.first, 1e-4);
    EXPECT_NEAR(curve.value(12, 0), c.second, 1e-5);
  }
}
