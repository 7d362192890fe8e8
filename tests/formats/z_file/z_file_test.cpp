#include "formats/z_file/z_file.h"

#include <cmath>
#include <filesystem>
#include <numbers>

#include <gtest/gtest.h>

#include "formats/transfer_function/channel_axes.h"
#include "tests/support/temporary_folder.h"

using namespace formats::transfer_function;
namespace fs = std::filesystem;

namespace {

struct Read {
  TransferFunction function;
  formats::FileReport report;
};

Read read(const std::string& path) {
  Read result;
  LineReader lines(path);
  result.function = formats::z_file::read_z_file(lines, result.report);
  return result;
}

std::string field_file(const std::string& name) {
  return (fs::path(BRENLOX_FIELD_DATA) / "exchange" / "zmm" / name).string();
}

std::string made_file() {
  return " TRANSFER FUNCTIONS IN MEASUREMENT COORDINATES\n"
         " ********** WITH FULL ERROR COVARIANCE*********\n\n"
         "station    :S 7\n"
         "coordinate    -19.500   236.250 declination    5.00\n"
         "number of channels   5   number of frequencies   1\n"
         " orientations and tilts of each channel\n"
         "    1     0.00     0.00 S7  Hx\n    2    90.00     0.00 S7  Hy\n    3     0.00     0.00 S7  Hz\n"
         "    4     0.00     0.00 S7  Ex\n    5    90.00     0.00 S7  Ey\n\n"
         "period :      4.00000    decimation level   1    freq. band from   25 to   30\n"
         "number of data point  64340 sampling freq.   1.000 Hz\n"
         " Transfer Functions\n"
         " 0.1 0.2 0.3 0.4\n 1.0 2.0 3.0 4.0\n 5.0 6.0 7.0 8.0\n"
         " Inverse Coherent Signal Power Matrix\n 2.0 0.0\n 0.5 0.1 3.0 0.0\n"
         " Residual Covariance\n 0.01 0.0\n 0.0 0.0 0.5 0.0\n 0.0 0.0 0.1 0.2 0.7 0.0\n";
}

}  // namespace

TEST(Z_file, Has_rows_by_output_and_variances_from_the_covariances) {
  const TemporaryFolder folder;
  const Read made = read(folder.write("made.zmm", made_file()));
  EXPECT_EQ(made.report.failure, "");
  EXPECT_EQ(made.function.site.id, "S 7");
  EXPECT_DOUBLE_EQ(made.function.site.longitude.value(), -123.75);
  EXPECT_DOUBLE_EQ(made.function.site.x_azimuth.value(), 5.0);
  ASSERT_EQ(made.function.points.size(), 1U);
  const Point& point = made.function.points[0];
  EXPECT_DOUBLE_EQ(point.frequency, 0.25);
  EXPECT_LT(std::abs(point.of(Component::zxy).value - Complex(3.0, 4.0)), 1e-12);
  EXPECT_LT(std::abs(point.of(Component::zyx).value - Complex(5.0, 6.0)), 1e-12);
  EXPECT_LT(std::abs(point.of(Component::ty).value - Complex(0.3, 0.4)), 1e-12);
  EXPECT_NEAR(point.of(Component::zxy).variance, 0.5 * 3.0, 1e-12);
  EXPECT_NEAR(point.of(Component::zyx).variance, 0.7 * 2.0, 1e-12);
  EXPECT_NEAR(point.of(Component::tx).variance, 0.01 * 2.0, 1e-12);
}

TEST(Z_file, Says_what_it_cannot_read) {
  const TemporaryFolder folder;
  const std::string whole = made_file();
  struct Case {
    std::string text, failure;
  };
  const std::size_t residuals = whole.find(" Residual");
  const Case cases[] = {{"", "the file ends before the orientations of its channels"},
                        {whole.substr(0, whole.find("period")), "the file has no band of transfer functions"},
                        {whole.substr(0, residuals + 30), "the file ends inside a band"},
                        {std::string(whole).replace(whole.find("   5   number"), 4, "   9"),
                         "the number of channels isn't 3, 4 or 5"},
                        {std::string(whole).replace(whole.find("S7  Ex"), 6, "S7  Qx"),
                         "a channel is none of Hz, Ex and Ey: 'QX'"},
                        {std::string(whole).replace(whole.find("   5   number"), 4, " 1e9"),
                         "the number of channels isn't 3, 4 or 5"},
                        {std::string(whole).replace(whole.find("    5    90.00"), 14, "    5    1e999"),
                         "the line of a channel can't be read: '5    1e999     0.00 S7  Ey'"},
                        {std::string(whole).replace(whole.find("    5    90.00"), 14, "    5     1.00"),
                         "two channels of a kind lie along one line"}};
  for (const Case& c : cases) {
    EXPECT_EQ(read(folder.write("made.zmm", c.text)).report.failure, c.failure);
  }
}

TEST(Z_file, Leaves_out_the_bands_that_lack_something) {
  const TemporaryFolder folder;
  const std::string one = made_file();
  const std::size_t begin = one.find("period");
  std::string head = one.substr(0, begin);
  head.replace(head.find("frequencies   1"), 15, "frequencies   3");
  const std::string band = one.substr(begin);
  const std::size_t power = band.find(" Inverse");
  const std::size_t residuals = band.find(" Residual");
  const auto told = [&](const std::string& middle) {
    const Read made = read(folder.write("made.zmm", head + band + middle + band));
    EXPECT_EQ(made.report.failure, "");
    EXPECT_EQ(made.function.points.size(), 2U);  // two bands of one period are two points
    EXPECT_EQ(made.report.unreadable.size(), 1U);
    return made.report.unreadable.empty() ? std::string() : made.report.unreadable.front().text;
  };
  EXPECT_EQ(told(band.substr(0, power) + band.substr(residuals)), "a band lacks a matrix and is left out");
  EXPECT_EQ(told(band.substr(0, band.find(" Transfer")) + band.substr(power)),
            "a band lacks a matrix and is left out");
  // A row that isn't there takes its band along, and not the next one.
  EXPECT_EQ(told(band.substr(0, band.rfind(" 0.0 0.0 0.1"))),
            "a row of a band is too short, and the band is left out");
  EXPECT_EQ(told("period : 0.0\n" + band.substr(band.find('\n') + 1)),
            "a band has no period above 0 and is left out");
}

TEST(Z_file, Cut_off_gives_the_bands_before) {
  const TemporaryFolder folder;
  std::string text = made_file();
  text.replace(text.find("frequencies   1"), 15, "frequencies   2");
  const Read at_band = read(folder.write("made.zmm", text));
  EXPECT_EQ(at_band.report.failure, "the file ends after 1 bands of 2");
  EXPECT_EQ(at_band.function.points.size(), 1U);
  const std::size_t begin = text.find("period");
  const Read inside = read(folder.write("made.zmm", text + text.substr(begin, text.size() - begin - 30)));
  EXPECT_EQ(inside.report.failure, "the file ends inside a band");
  EXPECT_EQ(inside.function.points.size(), 1U);
}

TEST(Z_file, Knows_its_head_by_words) {
  const TemporaryFolder folder;
  std::string text = made_file();
  text.erase(text.find("\nstation    :") + 1, 12);  // the name alone; the title has the word "coordinates"
  const Read without_word = read(folder.write("made.zmm", text));
  EXPECT_EQ(without_word.function.site.id, "S 7");
  EXPECT_FALSE(without_word.report.has_remarks());
  text = made_file();
  text.erase(text.find("S 7\n"), 3);
  EXPECT_EQ(read(folder.write("made.zmm", text)).function.site.id, "");  // and not the line's own words
}

TEST(Channel_axes, Of_any_channels_give_what_they_project) {
  // Fields in orthogonal axes are projected on four oblique channels; the tensor comes back.
  const std::array<std::array<Complex, 2>, 2> Z{
      {{Complex(1, 2), Complex(10, 8)}, {Complex(-9, -11), Complex(-0.5, -1)}}};
  const ChannelAzimuths azimuths{{87.0, 177.0}, {77.8, 172.7}};
  const auto direction = [](double degrees) {
    return std::array<double, 2>{std::cos(degrees * std::numbers::pi / 180.0),
                                 std::sin(degrees * std::numbers::pi / 180.0)};
  };
  // Z_channels = V Z U^-1; U is orthogonal here, so that its inverse is its transpose.
  ChannelFunctions functions;
  for (std::size_t i = 0; i < 2; ++i) {
    const auto v = direction(azimuths.electric[i]);
    for (std::size_t j = 0; j < 2; ++j) {
      const auto u = direction(azimuths.magnetic[j]);
      for (std::size_t k = 0; k < 2; ++k) {
        for (std::size_t l = 0; l < 2; ++l) {
          functions.impedance[i][j] += v[k] * Z[k][l] * u[l];
        }
      }
    }
  }
  const auto result = to_orthogonal_axes(functions, azimuths);
  ASSERT_TRUE(result);
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 2; ++j) {
      EXPECT_LT(std::abs(result->impedance[i][j] - Z[i][j]), 1e-12);
    }
  }
}

TEST(Z_file, Field_files_have_their_values) {
  if (!fs::exists(field_file("CAS04bcd_REV06.zrr"))) {
    GTEST_SKIP() << "the field data is absent";
  }
  const Read cas = read(field_file("CAS04bcd_REV06.zrr"));
  EXPECT_EQ(cas.report.failure, "");
  EXPECT_EQ(cas.function.site.id, "CAS04bcd_REV06");
  EXPECT_NEAR(cas.function.site.longitude.value(), -121.468, 1e-9);
  EXPECT_NEAR(cas.function.site.x_azimuth.value(), 13.17, 1e-9);
  ASSERT_EQ(cas.function.points.size(), 33U);
  const Point& first = cas.function.points[0];
  EXPECT_LT(std::abs(first.of(Component::zxx).value - Complex(0.1598, 0.1481)), 1e-12);
  EXPECT_LT(std::abs(first.of(Component::zyy).value - Complex(1.254, -2.018)), 1e-12);
  EXPECT_NEAR(first.of(Component::zxy).variance, 0.3267e-05 * 0.1154e+04, 1e-12);

  const Read without_word = read(field_file("tf_zmm.zmm"));
  EXPECT_EQ(without_word.function.site.id, "300");
  EXPECT_FALSE(without_word.report.has_remarks());
  EXPECT_EQ(without_word.function.points.size(), 38U);

  const Read tipper_only = read(field_file("tf_zss_tipper.zss"));
  EXPECT_EQ(tipper_only.function.points.size(), 44U);
  EXPECT_FALSE(tipper_only.function.points[0].of(Component::zxy).has_value());
  EXPECT_LT(std::abs(tipper_only.function.points[0].of(Component::tx).value - Complex(-0.2039, 0.09208)),
            1e-12);

  const Read oblique = read(field_file("PKD_272_00.zrr"));
  EXPECT_EQ(oblique.function.points.size(), 25U);
  // Electric channels at 77.8 and 172.7 degrees with magnetic ones at 87 and 177: by hand from the first
  // band.
  EXPECT_DOUBLE_EQ(oblique.function.site.x_azimuth.value(), 87.0);
  const double ex = -9.2 * std::numbers::pi / 180.0;
  const double ey = 85.7 * std::numbers::pi / 180.0;
  const Complex along_ex(-12.41, -9.900);
  const Complex along_ey(-2.923, -1.464);
  const Complex zxy = (along_ex * std::sin(ey) - along_ey * std::sin(ex)) / std::sin(ey - ex);
  EXPECT_LT(std::abs(oblique.function.points[0].of(Component::zxy).value - zxy), 1e-9);
  EXPECT_FALSE(oblique.function.points[0].of(Component::tx).has_value());
}
