// Data files written and read back.
#include "formats/occam/data_file.h"

#include <cstring>

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

// Letters that look like digits make another count of a number.
TEST_F(DataFileTest, A_count_that_is_half_a_number_is_refused_and_named) {
  const std::string text =
      data_file_text({"made", {100.0F, 200.0F}, {1.0F}, {{1, 1, DataType::te_phase, 45, 2}}, {}});
  for (const auto& [count, wrong] : {std::pair("SITES             2", "SITES             2O"),
                                     std::pair("FREQUENCIES       1", "FREQUENCIES       1l")}) {
    ASSERT_NE(text.find(count), std::string::npos) << text;
    ObservedData data;
    EXPECT_EQ(read_occam_data_rows(folder.write("occamdat", std::string(text).replace(
                                                                text.find(count), std::strlen(count), wrong)),
                                   data),
              -1);
    const std::vector<std::string> messages = interface.take_messages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_NE(messages[0].find("is no whole number"), std::string::npos) << messages[0];
    EXPECT_NE(messages[0].find("occamdat: "), std::string::npos) << "the file at fault: " << messages[0];
  }
}

}  // namespace
}  // namespace Module_occam
