#include "formats/j_format/j_format.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numbers>

#include <gtest/gtest.h>

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
  result.function = formats::j_format::read_j_format(lines, result.report);
  return result;
}

Read read_text(const std::string& text) {
  const TemporaryFolder folder;
  return read(folder.write("made.j", text));
}

std::string field_file(const std::string& name) {
  return (fs::path(BRENLOX_FIELD_DATA) / "exchange" / "jformat" / name).string();
}

bool seems_cut(const formats::FileReport& report) {
  return std::ranges::any_of(report.unreadable, [](const formats::ReportRemark& remark) {
    return remark.text.ends_with("the file may be cut off");
  });
}

/// rho / (0.2 |Z|^2 / f) of all points that have both.
double largest_disagreement(const TransferFunction& function) {
  double largest = 0.0;
  for (const Point& point : function.points) {
    for (const Value& value : point.values) {
      if (value.has_value() && value.has_curve()) {
        largest = std::max(largest, std::abs(std::log(value.resistivity /
                                                      (0.2 * std::norm(value.value) / point.frequency))));
      }
    }
  }
  return largest;
}

}  // namespace

TEST(J_format, Takes_periods_and_frequencies_and_their_limits) {
  const Read made = read_text(
      "# made\n>LATITUDE = -19.5\n>LONGITUDE =\n>AZIMUTH = 12.5\nS01  12\n"
      "RXY\n 4\n-100.0 50.0 40.0 55.0 45.0 42.0 38.0 1.0 1.0\n4.0 20.0 30.0 80.0 5.0 31.0 29.0 1 1\n"
      "-999. -999. -999. -999. -999. -999. -999. -999. -999.\n-10 -3.0 12.0 1 1 1 1 1 1\n"
      "TZX\n1\n-100.0 0.25 -0.5 0.01 1.0\n");
  EXPECT_EQ(made.report.failure, "");
  EXPECT_EQ(made.function.site.id, "S01");
  EXPECT_FALSE(made.function.site.longitude.has_value());
  EXPECT_DOUBLE_EQ(made.function.site.x_azimuth.value(), 12.5);
  ASSERT_EQ(made.function.points.size(), 3U);
  const Value& at_100_Hz = made.function.points[0].of(Component::zxy);
  EXPECT_DOUBLE_EQ(made.function.points[0].frequency, 100.0);
  EXPECT_DOUBLE_EQ(at_100_Hz.resistivity_error, 5.0);
  EXPECT_DOUBLE_EQ(at_100_Hz.phase_error, 2.0);
  EXPECT_DOUBLE_EQ(made.function.points[1].frequency, 0.25);
  EXPECT_NEAR(made.function.points[1].of(Component::zxy).resistivity_error, 20.0 * std::log(4.0), 1e-12);
  EXPECT_FALSE(made.function.points[2].of(Component::zxy).use_resistivity);  // a rejected point
  EXPECT_DOUBLE_EQ(made.function.points[0].of(Component::tx).variance, 1e-4);
}

TEST(J_format, Takes_the_unit_from_what_it_reads) {
  const double f = 10.0;
  const std::complex<double> z(3.0, 4.0);  // mV/km/nT
  const double rho = 0.2 * std::norm(z) / f;
  const auto text = [&](double over, const std::string& unit, bool with_curve) {
    return "S\n" +
           (with_curve ? "RXY\n1\n-10 " + std::to_string(rho) + " 53.13 1 1 1 1 1 1\n" : std::string()) +
           "ZXY " + unit + "\n1\n-10 " + std::to_string(z.real() / over) + " " +
           std::to_string(z.imag() / over) + " 0.1 1\n";
  };
  constexpr double ohm = 795.774715459;
  struct Case {
    double over;
    std::string unit;
    bool with_curve;
  };
  for (const Case& c : {Case{1.0, "S.I.", true}, Case{ohm, "FIELD", true}, Case{ohm, "S.I. UNITS", false},
                        Case{1.0, "FIELD UNITS", false}}) {
    const Read made = read_text(text(c.over, c.unit, c.with_curve));
    EXPECT_NEAR(made.function.points.at(0).of(Component::zxy).value.real(), 3.0, 1e-3)
        << c.unit << c.with_curve;
  }
}

TEST(J_format, Errors_are_what_their_columns_can_be) {
  struct Case {
    const char* row;
    double resistivity_error, phase_error;
  };
  const Case cases[] = {{"-100 50 179.5 55 45 -179.5 178.5", 5.0, 1.0},  // on both sides of 180 degrees
                        {"-100 50 40 45 55 38 42", 5.0, 2.0},            // least before most
                        {"-100 50 47.1 7889 1.086 174.5 -80.2", 25.0 * std::log(7889 / 1.086), 127.35},
                        {"-100 50 40 -999 -999 -999 -999", NAN, NAN},
                        {"-100 50 40 50 50 40 40", NAN, NAN},  // printed with too few digits: not known
                        {"-100 50 40", NAN, NAN}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.row);
    const Read made = read_text(std::string("S\nRXY\n1\n") + c.row + " \n");
    const Value value = made.function.points.at(0).of(Component::zxy);
    const auto is_as = [](double read, double wanted) {
      return std::isnan(wanted) ? std::isnan(read) : std::abs(read - wanted) < 1e-9;
    };
    EXPECT_TRUE(is_as(value.resistivity_error, c.resistivity_error)) << value.resistivity_error;
    EXPECT_TRUE(is_as(value.phase_error, c.phase_error)) << value.phase_error;
  }
}

TEST(J_format, Head_says_what_it_can) {
  const auto with = [](const std::string& head) {
    return read_text(head + "RXY\n1\n-100 50 40 55 45 42 38 1 1\n");
  };
  EXPECT_DOUBLE_EQ(with(">AZIMUTH =\nS1 -30\n").function.site.x_azimuth.value(), -30.0);
  EXPECT_DOUBLE_EQ(with(">AZIMUTH = 5\nS1 -30\n").function.site.x_azimuth.value(), 5.0);
  EXPECT_FALSE(with("S1 north\n").function.site.x_azimuth.has_value());
  const Read minutes = with(">LATITUDE = -19:30:00\n>LONGITUDE = 236.25\n>ELEVATION = -999\nS1\n");
  EXPECT_DOUBLE_EQ(minutes.function.site.latitude.value(), -19.5);
  EXPECT_DOUBLE_EQ(minutes.function.site.longitude.value(), -123.75);
  EXPECT_FALSE(minutes.function.site.elevation.has_value());
  const Read absent = with(">LATITUDE = -999.0\n>LONGITUDE = 1e999\nS1\n");
  EXPECT_FALSE(absent.function.site.latitude.has_value());
  EXPECT_EQ(absent.report.unreadable.size(), 2U);
}

TEST(J_format, Older_programs_print_the_root_of_the_complex_variance) {
  const std::string blocks = "S1\nZXY FIELD\n1\n4.0 3 4 0.5 1\nTZX\n1\n4.0 0.1 0.2 0.05 1\n";
  const Point older = read_text("#WRITTEN BY SOMETHING\n" + blocks).function.points.at(0);
  EXPECT_DOUBLE_EQ(older.of(Component::zxy).variance, 0.25);
  const Point newer = read_text("#BIRRP Version 5\n" + blocks).function.points.at(0);
  EXPECT_DOUBLE_EQ(newer.of(Component::zxy).variance, 0.5);
  EXPECT_DOUBLE_EQ(newer.of(Component::tx).variance, 0.005);
}

TEST(J_format, Blocks_hold_together_whatever_their_count_says) {
  const std::string row = "-10 50 40 55 45 42 38 1 1\n";
  struct Case {
    const char* name;
    std::string text;
    std::size_t xy, yx, remarks;  // points with XY, with YX; remarks of both kinds
  };
  const Case cases[] = {
      {"blank lines and comments", "RXY\n\n1\n# note\n\n" + row + "RYX\n1\n" + row, 1, 1, 0},
      {"no count", "RXY\nRYX\n1\n" + row, 0, 1, 1},
      {"a count that is none", "RXY\nmany\n" + row + "RYX\n1\n" + row, 0, 1, 1},
      {"a huge count", "RXY\n2000000000\n" + row + "RYX\n1\n" + row, 1, 1, 1},
      {"a period twice", "RXY\n2\n" + row + row + "RYX\n2\n" + row + row, 2, 2, 0},
      {"a block twice", "RXY\n1\n" + row + "RXY\n1\n-10 9 9 9 9 9 9\nRYX\n1\n" + row, 1, 1, 1},
      {"decimal commas", "RXY\n1\n-10 50,5 40,5 55 45 42 38\nRYX\n1\n" + row, 0, 1, 1},
      {"no element", "RTE\n1\n" + row + "ZDE\n1\n-10 1 2 3 1\nRYX\n1\n" + row, 0, 1, 2}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Read made = read_text("S1\n" + c.text);
    std::size_t xy = 0;
    std::size_t yx = 0;
    for (const Point& point : made.function.points) {
      xy += point.of(Component::zxy).has_curve() ? 1U : 0U;
      yx += point.of(Component::zyx).has_curve() ? 1U : 0U;
      EXPECT_TRUE(!point.of(Component::zxy).has_curve() || point.of(Component::zxy).resistivity == 50.0);
    }
    EXPECT_EQ(xy, c.xy);
    EXPECT_EQ(yx, c.yx);
    EXPECT_EQ(made.report.unreadable.size() + made.report.ignored.size(), c.remarks);
  }
}

// A cut between two blocks leaves each count as it was.
TEST(J_format, A_block_without_its_other_half_is_missed) {
  const auto blocks = [](const std::vector<std::string>& names) {
    std::string text = "S1\n";
    for (const std::string& name : names) {
      text += name + (name[0] == 'R' ? "\n1\n-10 50 40 55 45 42 38 1 1\n" : "\n1\n-10 3 4 0.1 1\n");
    }
    return read_text(text).report;
  };
  struct Case {
    std::vector<std::string> names;
    std::string missing;
  };
  const std::vector<std::string> all{"ZXX", "ZXY", "ZYX", "ZYY", "RXX", "RXY", "RYX", "RYY", "TZX", "TZY"};
  for (const Case& c :
       {Case{all, ""}, Case{{"RXY"}, ""}, Case{{"RYX", "RXY"}, ""}, Case{{"ZXY", "RXY"}, ""},
        Case{{"TZX", "TZY"}, ""}, Case{{all.begin(), all.end() - 1}, "TZY"},
        Case{{all.begin(), all.end() - 3}, "RYY"}, Case{{all.begin(), all.begin() + 6}, "RYX, RYY"},
        Case{{all.begin(), all.begin() + 3}, "ZYY"}, Case{{"RXX", "RXY"}, "RYX, RYY"},
        Case{{"RXY", "RYX", "ZXY"}, "ZYX"}}) {
    const formats::FileReport report = blocks(c.names);
    EXPECT_EQ(report.failure, "");
    ASSERT_EQ(report.unreadable.size(), c.missing.empty() ? 0U : 1U) << c.missing;
    if (!c.missing.empty()) {
      EXPECT_EQ(report.unreadable[0].text,
                "there is no block " + c.missing + " with the others; the file may be cut off");
    }
  }
}

TEST(J_format, Says_what_it_cannot_read) {
  EXPECT_EQ(read_text("").report.failure, "the file has no block of transfer functions");
  EXPECT_EQ(read_text("S\nRXY\n99999999999999\n").report.failure,
            "the file has no block of transfer functions");
  const Read cut_off = read_text("S\nZXY FIELD\n3\n-10 1 2 0.1 1\n");
  EXPECT_EQ(cut_off.report.failure, "the file ends inside the block ZXY, after 1 rows of 3");
  EXPECT_TRUE(cut_off.function.points.at(0).of(Component::zxy).has_value());
  const Read cut = read_text("S\nZXY\n3\n-10 1 2 0.1 1\nZYX\n1\n-10 1 2 0.1 1\n");
  ASSERT_EQ(cut.report.unreadable.size(), 1U);
  EXPECT_EQ(cut.report.unreadable[0].text, "the block ZXY has 1 rows of 3");
  EXPECT_TRUE(cut.function.points.at(0).of(Component::zyx).has_value());
}

TEST(J_format, Field_files_have_their_values) {
  if (!fs::exists(field_file("BP02.j"))) {
    GTEST_SKIP() << "the field data is absent";
  }
  const Read birrp = read(field_file("BP02.j"));
  EXPECT_EQ(birrp.function.site.id, "BP02");
  const Value& zxx = birrp.function.points.at(0).of(Component::zxx);
  EXPECT_LT(largest_disagreement(birrp.function), 1e-4);  // "S.I." that are field units
  EXPECT_NEAR(zxx.value.real(), 75.63423, 1e-9);
  EXPECT_NEAR(zxx.variance, 2.0 * 2.217733 * 2.217733, 1e-9);

  const Read ohm = read(field_file("kb0-s001.txt"));
  EXPECT_EQ(ohm.function.site.id, "kb0001");
  EXPECT_DOUBLE_EQ(ohm.function.site.x_azimuth.value(), -30.0);
  EXPECT_EQ(ohm.function.points.size(), 29U);
  EXPECT_NEAR(ohm.function.points.at(2).of(Component::zxy).value.real(), 0.1339 * 795.7747, 1e-3);
  EXPECT_LT(largest_disagreement(ohm.function), 0.02);
  EXPECT_DOUBLE_EQ(ohm.function.points.at(2).of(Component::tx).value.real(), -0.1872);

  const Read scalar = read(field_file("S00.dat"));
  EXPECT_EQ(scalar.function.points.size(), 17U);
  EXPECT_FALSE(seems_cut(birrp.report) || seems_cut(ohm.report) || seems_cut(scalar.report));
  EXPECT_DOUBLE_EQ(scalar.function.points.at(0).of(Component::zxy).phase, -33.3);
}
