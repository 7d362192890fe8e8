#include "import/readers/edi_errors.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/absent_value.h"
#include "core/line_reader.h"
#include "formats/edi/edi_parser.h"
#include "import/readers/edi_curves.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/support/temporary_folder.h"

using namespace Module_data_file;
using namespace formats::edi;

namespace {

// Resistivity and phase of XY beside Z = 1000 (1 + i)/sqrt(2); of three frequencies.
const std::string curves = ">RHOXY //3\n200 100 400\n>PHSXY //3\n45 50 55\n";
const std::string impedance = ">ZXYR //3\n707.10678 707.10678 707.10678\n>ZXYI //3\n707.10678 707.10678 0\n";

// Errors of resistivity and phase, in turn, as an import stores them.
std::vector<float> errors_of(const std::string& blocks, bool from_impedance = false) {
  const TemporaryFolder folder;
  MadeSection made;
  made.frequencies = "1000 100 10";
  made.blocks = blocks;
  formats::FileReport report;
  LineReader reader(folder.write("made.edi", made_edi({made})));
  EdiMtParser parser(reader, report);
  EdiSection section;
  EXPECT_TRUE(parser.next_section(section));
  const ResistivityErrorKind kind = resistivity_error_kind(section);
  if (from_impedance) {
    compute_from_impedance(section, element_xy);
  }
  Module_database::Curve curve;
  fill_curve(section, element_xy, curve);
  fill_errors(section, element_xy, kind, curve);
  return curve.errors;
}

}  // namespace

// 0.1 rad is 5.7295780 degrees; as an error of the phase it goes with 0.2 of the resistivity, or
// 0.2 / ln 10 = 0.0868589 of its decimal logarithm.
TEST(Edi_errors, Come_to_ohm_m_and_degrees_whatever_the_file_has) {
  struct Case {
    const char* name;
    std::string blocks;
    std::vector<float> errors;
  };
  const std::string phase_errors = ">PHSXY.ERR //3\n5.7295780 11.459156 2.8647890\n";
  const std::string log_errors = ">RHOXY.ERR //3\n0.0868589 0.1737178 0.0434294\n";
  const std::vector<float> expected{40.0F, 5.7295780F, 40.0F, 11.459156F, 40.0F, 2.8647890F};
  const Case cases[] = {
      // Standard errors of 100, 200 and 35.36 of the parts; of |Z| they are 0.1, 0.2 and 0.05.
      {"variance", curves + impedance + ">ZXY.VAR //3\n20000 80000 2500\n", expected},
      {"variance wins, also where it comes first",
       curves + impedance + ">ZXY.VAR //3\n20000 80000 2500\n>RHOXY.ERR //3\n1 1 1\n>PHSXY.ERR //3\n1 1 1\n",
       expected},
      {"logarithms", curves + log_errors + phase_errors, expected},
      {"ohm-m", curves + ">RHOXY.ERR //3\n40 40 40\n" + phase_errors, expected},
      {"a variance without impedance", curves + ">ZXY.VAR //3\n5 5 5\n" + log_errors + phase_errors,
       expected},
      {"a variance of nothing but blanks in the data",
       curves + impedance + ">ZXY.VAR //3\n1e32 0 -1\n" + log_errors + phase_errors, expected},
      {"by the other elements, in the median",
       curves + ">RHOXY.ERR //3\n40 40 40\n>PHSXY.ERR //3\n5.7295780 11.459156 2.8647890\n" +
           ">RHOXX //3\n1 1 1\n>RHOXX.ERR //3\n1 1 1\n>PHSXX.ERR //3\n1e9 1 1\n",
       expected}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::vector<float> errors = errors_of(c.blocks);
    ASSERT_EQ(errors.size(), 6U);
    for (std::size_t k = 0; k < 6; ++k) {
      EXPECT_NEAR(errors[k], c.errors[k], 2e-5 * c.errors[k]) << k;
    }
  }
}

// Of |Z| 0.1 along and 0.05 across: 10^6 (0.1^2 + 0.05^2) = 12500. The spread of repeats gives such errors.
TEST(Edi_errors, That_make_the_variance_together_say_more_than_it) {
  const std::string blocks =
      ">RHOXY.ERR //3\n.0868589 .0868589 .0868589\n>PHSXY.ERR //3\n2.864789 2.864789 1e32\n";
  const std::string second_absent = ">ZXYR //3\n707.10678 1e32 707.10678\n>ZXYI //3\n707.10678 1e32 0\n";
  const auto with_variance = [&](const std::string& variance) {
    return errors_of(curves + second_absent + ">ZXY.VAR //3\n" + variance + " 1e32 12500\n" + blocks);
  };
  const std::vector<float> errors = with_variance("12500");
  ASSERT_EQ(errors.size(), 6U);
  EXPECT_NEAR(errors[0], 40.0, 1e-4);
  EXPECT_NEAR(errors[1], 2.864789, 1e-6);
  EXPECT_NEAR(errors[2], 20.0, 1e-4) << "though there is no impedance";
  EXPECT_NEAR(errors[3], 2.864789, 1e-6);
  EXPECT_NEAR(errors[4], 80.0, 1e-3);
  EXPECT_EQ(errors[5], no_data);
  const std::vector<float> of_variance = with_variance("12502");
  EXPECT_NEAR(of_variance.at(0), 31.6253, 1e-3);
  EXPECT_EQ(of_variance.at(2), no_data);
}

// A relative error of 0.1 alone, taken for both parts of |Z| = 1000 or 707.1: nothing is said of the phases.
TEST(Edi_errors, Of_one_block_that_makes_the_variance_leave_the_other_not_known) {
  const std::string one_block =
      ">RHOXY.ERR //3\n.08685890 .08685890 .08685890\n>PHSXY.ERR //3\n1e32 1e32 1e32\n";
  const std::string blocks = curves + impedance + one_block;
  const std::vector<float> errors = errors_of(blocks + ">ZXY.VAR //3\n20000 20000 10000\n");
  ASSERT_EQ(errors.size(), 6U);
  EXPECT_NEAR(errors[0], 40.0, 1e-4);
  EXPECT_NEAR(errors[4], 80.0, 1e-4);
  EXPECT_EQ(errors[1], no_data);
  EXPECT_EQ(errors[5], no_data);
  EXPECT_NEAR(errors_of(blocks + ">ZXY.VAR //3\n20000 20000 20000\n").at(1), 5.729578, 1e-4)
      << "another variance, which counts";
}

TEST(Edi_errors, Are_absent_where_nothing_is_known) {
  EXPECT_TRUE(errors_of(curves).empty());
  EXPECT_TRUE(errors_of(impedance + ">ZXY.VAR //3\n2 2 2\n").empty()) << "there is no curve";
  EXPECT_EQ(errors_of(curves + impedance + ">ZXY.VAR //3\n-2 1e32 2500\n"),
            (std::vector<float>{no_data, no_data, no_data, no_data, 40.0F, 2.8647890F}));
  EXPECT_EQ(errors_of(curves + ">ZXYR //3\n0 1e32 NaN\n>ZXYI //3\n0 1 1\n>ZXY.VAR //3\n2 2 2\n>PHSXY.ERR "
                               "//3\n3 0 1e32\n"),
            (std::vector<float>{no_data, 3.0F, no_data, no_data, no_data, no_data}));
  EXPECT_EQ(errors_of(">RHOXY //3\n1e32 0 5\n>PHSXY //3\n1e32 45 1e32\n>RHOXY.ERR //3\n.1 .1 NaN\n>PHSXY.ERR "
                      "//3\n1 1 1\n"),
            (std::vector<float>{no_data, no_data, no_data, 1.0F, no_data, no_data}));
}

TEST(Edi_errors, Of_phases_are_at_most_90_degrees) {
  EXPECT_EQ(errors_of(curves + impedance + ">ZXY.VAR //3\n2e7 2e6 1e6\n").at(1), 90.0F);
  EXPECT_EQ(errors_of(curves + ">PHSXY.ERR //3\n1e9 90.5 89.5\n"),
            (std::vector<float>{no_data, 90.0F, no_data, 90.0F, no_data, 89.5F}));
}

TEST(Edi_errors, Without_phase_errors_are_of_the_logarithm_unless_they_are_too_large_for_it) {
  EXPECT_NEAR(errors_of(curves + ">RHOXY.ERR //3\n0.1 0.1 3\n").at(0), 46.0517, 1e-3);  // 200 ln 10 / 10
  EXPECT_EQ(errors_of(curves + ">RHOXY.ERR //3\n0.1 10 20\n"),
            (std::vector<float>{0.1F, no_data, 10.0F, no_data, 20.0F, no_data}));
}

// What is computed from the impedances of one element tells nothing of the blocks of another.
TEST(Edi_errors, Of_computed_curves_come_from_the_variance) {
  const std::vector<float> errors = errors_of(
      impedance + ">ZXY.VAR //3\n5000 5000 1e32\n>RHOYX //3\n1 1 1\n>RHOYX.ERR //3\n.1 .1 .1\n", true);
  ASSERT_EQ(errors.size(), 6U);
  EXPECT_NEAR(errors[0], 20.0, 1e-3);
  EXPECT_NEAR(errors[1], 2.8647890, 1e-5);
  EXPECT_NEAR(errors[2], 200.0, 1e-2);
  EXPECT_EQ(errors[4], no_data);
}
