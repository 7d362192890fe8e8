// Data files written and read back.
#include "formats/occam/data_file.h"

#include "tests/formats/occam/made_run.h"

namespace Module_occam {
namespace {

class DataFileTest : public made::OccamTest {};

TEST_F(DataFileTest, Long_periods_keep_their_digits) {
  const std::vector<float> frequencies{1.2345e-5F, 0.00012207F, 0.00123F, 0.01F, 0.3333333F, 8192.0F};
  const std::string text =
      data_file_text({"long", {100.0F}, frequencies, {{1, 1, DataType::te_phase, 45, 2}}, {}});
  EXPECT_NE(
      text.find("FREQUENCIES       6\r\n 0.000012345\r\n  0.00012207\r\n     0.00123\r\n      0.0100\r\n"
                "      0.3333\r\n   8192.0000\r\nNO.DATABLOCKS"),
      std::string::npos)
      << text;
  ObservedData data;
  ASSERT_EQ(read_occam_data_rows(folder.write("occamdat", text), data), 0);
  ASSERT_EQ(data.frequencies.size(), frequencies.size());
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    EXPECT_NEAR(data.frequencies[i] / static_cast<double>(frequencies[i]), 1.0, 1e-4) << i;
  }
}

}  // namespace
}  // namespace Module_occam
