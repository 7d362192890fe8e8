#include "core/frequency_text.h"

#include <limits>

#include <gtest/gtest.h>

TEST(Frequency_text, Has_the_decimals_that_the_precision_takes) {
  struct Case {
    float frequency;
    int least_decimals;
    double parts;
    std::size_t width;
    const char* text;
  };
  const Case cases[] = {
      {8192.0F, 4, 1e4, 12, "8192.0000"},
      {0.01F, 4, 1e4, 12, "0.0100"},
      {33.33333F, 4, 1e4, 12, "33.3333"},
      {0.50005F, 4, 1e4, 12, "0.5001"},  // half a unit of the last place is just one part in 10,000
      {0.00123F, 4, 1e4, 12, "0.00123"},
      {0.00012207F, 4, 1e4, 12, "0.00012207"},
      {0.000122074F, 4, 1e4, 12, "0.00012207"},
      {3.0517578e-5F, 4, 1e4, 12, "0.00003052"},
      {1.2345e-5F, 4, 1e4, 12, "0.000012345"},
      {1e-5F, 4, 1e4, 10, "0.00001"},
      {0.333333F, 3, 1e3, 11, "0.333"},
      {0.000366211F, 3, 1e3, 11, "0.000366"},
      {5.0F, 0, 1e3, 11, "5"},
      // Beyond the width: as many decimals as fit.
      {1.2345e-5F, 4, 1e4, 10, "0.00001235"},
      {1.2345e-7F, 4, 1e4, 10, "0.00000012"},
      {123456.0F, 4, 1e4, 10, "123456.000"},
      {12345678.0F, 4, 1e4, 8, "12345678"},
      // Not seen in a survey, but they must end.
      {0.0F, 4, 1e4, 12, "0.0000"},
      {std::numeric_limits<float>::quiet_NaN(), 4, 1e4, 12, "NaN"},
      {std::numeric_limits<float>::infinity(), 4, 1e4, 12, "Inf"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(frequency_text(c.frequency, c.least_decimals, c.parts, c.width), c.text) << c.frequency;
  }
}
