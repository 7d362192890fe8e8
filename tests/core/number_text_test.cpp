#include "core/number_text.h"

#include <bit>
#include <cmath>
#include <limits>
#include <locale>
#include <random>

#include <gtest/gtest.h>

TEST(Format_number, Rounds_the_decimal_text_half_away_from_zero) {
  struct Case {
    double value;
    const char* picture;
    const char* text;
  };
  const Case cases[] = {{2.5, "0", "3"},
                        {-2.5, "0", "-3"},
                        {0.5, "0", "1"},
                        {0.49999999999999994, "0", "0"},
                        {0.125, "0.00", "0.13"},
                        {1.005, "0.00", "1.01"},
                        {-0.04, "0.0", "0.0"},
                        {-0.0, "0.0", "0.0"},
                        {-0.05, "0.0", "-0.1"},
                        {0.0, "0.000", "0.000"},
                        {9.9996, "0.000", "10.000"},
                        {999.95, "0.0", "1000.0"},
                        {0.0004, "0", "0"},
                        {7, "00", "07"},
                        {-7, "00", "-07"},
                        {123, "00", "123"},
                        {5e-324, "0.000000", "0.000000"},
                        {1e22, "0", "10000000000000000000000"},
                        {123.456, "0.00000E+0", "1.23456E+2"},
                        {0.00999999951, "0.00000E+0", "1.00000E-2"},
                        {0, "0.00000E+0", "0.00000E+0"},
                        {-1.5e-300, "0.00000E+0", "-1.50000E-300"},
                        {24000, "0.0000e+00", "2.4000e+04"},
                        {std::numeric_limits<double>::quiet_NaN(), "0", "NaN"},
                        {-std::numeric_limits<double>::infinity(), "0.0", "-Inf"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.picture);
    EXPECT_EQ(format_number(c.value, c.picture), c.text);
  }
  EXPECT_EQ(format_number(-1e32F, "0.0"), "-1" + std::string(32, '0') + ".0");
  EXPECT_EQ(format_number(1.005F, "0.00"), "1.01");
  EXPECT_EQ(format_number(33.35F, "0.0"), "33.4");
  EXPECT_EQ(format_number(std::numeric_limits<std::int64_t>::min(), "0"), "-9223372036854775808");
  EXPECT_EQ(format_number(100, "0.0"), "100.0");
}

TEST(Plain_text, Is_what_a_person_would_write) {
  struct Case {
    double value;
    const char* text;
  };
  const Case cases[] = {{0.1, "0.1"},
                        {-12.5, "-12.5"},
                        {0.1 + 0.2, "0.3"},
                        {1e20, "1E+20"},
                        {1e-10, "1E-10"},
                        {1e14, "100000000000000"},
                        {1e15, "1E+15"},
                        {0.0001, "0.0001"},
                        {0.00001, "1E-05"},
                        {-0.0, "0"},
                        {1.0 / 3.0, "0.333333333333333"},
                        {-1.25e-7, "-1.25E-07"}};
  for (const Case& c : cases) {
    EXPECT_EQ(plain_text(c.value), c.text);
  }
  EXPECT_EQ(plain_text(0.1F), "0.1");
  EXPECT_EQ(plain_text(1250.4F), "1250.4");
  EXPECT_EQ(plain_text(24000.0F / 7.0F), "3428.572");  // the single is 3428.57153
  EXPECT_EQ(plain_text(-1e32F), "-1E+32");
  EXPECT_EQ(plain_text(1234567.0F), "1234567");
  EXPECT_EQ(plain_text(-40), "-40");
}

TEST(Criterion_text, Reads_back_as_the_same_number) {
  EXPECT_EQ(criterion_text(24000.0F / 7.0F), "3428.5715");
  EXPECT_EQ(criterion_text(0.1F), "0.1");
  EXPECT_EQ(criterion_text(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(criterion_text(-1e32F), "-1E+32");
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t bits = random();
    const auto wide = std::bit_cast<double>(bits);
    const auto narrow = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
    if (std::isfinite(wide)) {
      const std::string text = criterion_text(wide);
      ASSERT_EQ(numeric_value(text), wide) << text;
      ASSERT_EQ(text.find_first_not_of("-0123456789.E+"), std::string::npos) << text;
    }
    if (std::isfinite(narrow)) {
      ASSERT_EQ(static_cast<float>(numeric_value(criterion_text(narrow))), narrow);
      ASSERT_EQ(static_cast<float>(decimal_of_single(narrow)), narrow);
    }
  }
}

TEST(Decimal_of_single, Adds_like_the_written_numbers) {
  EXPECT_EQ(decimal_of_single(33.3F), 33.3);
  EXPECT_EQ(plain_text(decimal_of_single(1250.4F) + decimal_of_single(33.3F)), "1283.7");
  EXPECT_TRUE(std::isnan(decimal_of_single(std::numeric_limits<float>::quiet_NaN())));
}

TEST(Numeric_value, Takes_the_leading_number) {
  struct Case {
    const char* text;
    double value;
    bool whole;  // the whole text is one number
  };
  const double infinity = std::numeric_limits<double>::infinity();
  const Case cases[] = {{"", 0, false},
                        {" \t 12.5 ", 12.5, true},
                        {"200W", 200, false},
                        {"+3", 3, true},
                        {"-.5", -0.5, true},
                        {"5.", 5, true},
                        {".", 0, false},
                        {"-", 0, false},
                        {"+-3", 0, false},
                        {"1e", 1, false},
                        {"1e+", 1, false},
                        {"12.5.1", 12.5, false},
                        {"1.5D+03", 1500, true},
                        {"+1.5d3", 1500, true},
                        {"2D", 2, false},
                        {"1D2D3", 100, false},
                        {"1.0E+32", 1e32, true},
                        {"nan", 0, false},
                        {"inf", 0, false},
                        {"0x1F", 0, false},
                        {"1,5", 1, false},
                        {"1e400", infinity, true},
                        {"-0.001D500", -infinity, true},
                        {"1e-400", 0, true},
                        {"1e99999999999999999999", infinity, true},
                        {"2D9223372036854775807", infinity, true},
                        {"2e-9223372036854775807", 0, true},
                        {"4.9e-324", 4.9e-324, true},
                        {"\f 2\v", 2.0, true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(numeric_value(c.text), c.value);
    EXPECT_EQ(is_numeric(c.text), c.whole);
  }
}

TEST(Numeric_value, Leaves_what_stands_behind_the_number) {
  struct Case {
    const char* text;
    const char* rest;
  };
  const Case cases[] = {{"12.4v", "v"}, {" +1.5D3Hz ", "Hz "}, {"2D", "D"},    {"08:15", ":15"},
                        {"1e3", ""},    {"1.5d+03", ""},       {"v12", "v12"}, {"  ", "  "}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    std::string_view rest;
    EXPECT_EQ(numeric_value(c.text, rest), numeric_value(c.text));
    EXPECT_EQ(rest, c.rest);
  }
}

TEST(Number_text, Does_not_follow_the_locale) {
  struct DecimalComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::locale earlier = std::locale::global(std::locale(std::locale(), new DecimalComma));
  EXPECT_EQ(format_number(1234.5, "0.0"), "1234.5");
  EXPECT_EQ(plain_text(1234), "1234");
  EXPECT_EQ(numeric_value("1.5"), 1.5);
  std::locale::global(earlier);
}
