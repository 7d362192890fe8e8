#include "formats/edi/edi_writer.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/absent_value.h"
#include "core/calendar.h"
#include "core/line_reader.h"
#include "core/text_fields.h"
#include "formats/edi/edi_names.h"
#include "formats/edi/edi_parser.h"
#include "tests/support/temporary_folder.h"

using formats::edi::edi_text;
using formats::edi::EdiSection;
using formats::transfer_function::Component;
using formats::transfer_function::Point;
using formats::transfer_function::SiteDocument;
using formats::transfer_function::Value;

namespace {

Value value(std::complex<double> z, double variance, double rho, double phase) {
  Value made;
  made.value = z;
  made.variance = variance;
  made.resistivity = rho;
  made.phase = phase;
  made.resistivity_error = 0.1 * rho;
  made.phase_error = 2.5;
  return made;
}

/// Two frequencies of Zxy and Tx; at the lower one the impedance is absent.
SiteDocument made_site() {
  SiteDocument site;
  site.id = "200E_100";
  site.survey = "North";
  site.line = "200E";
  site.station = 100.0;
  site.dipole = 100.0;
  site.program = "Brenlox 1.0";
  site.date_collected = day_count(2019, 7, 1);
  site.date_written = day_count(2026, 11, 21);
  site.function.site.name = "ET 100";
  site.function.site.latitude = -19.440206;
  site.function.site.longitude = 136.444403;
  site.function.site.elevation = 218.5;
  site.function.site.datum = "WGS84";
  site.function.site.x_azimuth = 30.0;
  site.sensor_azimuth = 0.0;
  site.history = {"ExHy: average of 3 repeats", "> a line that looks like a \"tag\"\r\n>FREQ"};
  Point low;
  low.frequency = 0.5;
  low.of(Component::zxy).phase = 45.5;
  low.of(Component::tx).value = {0.1, -0.2};
  low.of(Component::tx).variance = 0.0002;
  Point high;
  high.frequency = 10400.0;
  high.of(Component::zxy) = value({1.23456789e3, -9.87654321e-4}, 3.14159265e-12, 33.3, -0.125);
  site.function.points = {low, high};
  return site;
}

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::string_view rest = text;
  std::string_view line;
  while (take_line(rest, line)) {
    lines.emplace_back(line);
  }
  return lines;
}

/// The names of all blocks in their order.
std::vector<std::string> blocks_of(const std::string& text) {
  std::vector<std::string> blocks;
  for (const std::string& line : lines_of(text)) {
    if (line.find("//") != std::string::npos) {
      blocks.push_back(line.substr(1, line.find(' ') - 1));
    }
  }
  return blocks;
}

bool has_line(const std::string& text, const std::string& line) {
  const auto lines = lines_of(text);
  return std::ranges::find(lines, line) != lines.end();
}

EdiSection read_back(const SiteDocument& site, formats::edi::EdiPlace* place = nullptr) {
  const TemporaryFolder folder;
  formats::FileReport report;
  LineReader reader(folder.write("site.edi", edi_text(site)));
  formats::edi::EdiMtParser parser(reader, report);
  if (place != nullptr) {
    *place = parser.place();
  }
  EdiSection section;
  EXPECT_TRUE(parser.next_section(section));
  EXPECT_TRUE(report.unreadable.empty());
  EXPECT_TRUE(report.ignored.empty());
  EXPECT_EQ(report.failure, "");
  return section;
}

}  // namespace

// Without these one or another reader refuses the file, sees no tipper or takes values for what they aren't.
TEST(Edi_writer, Keeps_to_what_readers_ask_for) {
  const std::string text = edi_text(made_site());
  EXPECT_TRUE(text.starts_with(">HEAD\r\n  DATAID=\"200E_100\"\r\n"));
  EXPECT_TRUE(text.ends_with("\r\n>END\r\n"));
  for (const char* const line :
       {"  LAT=-19:26:24.7416", "  LONG=136:26:39.8508", "  ELEV=218.5", "  REFLAT=-19:26:24.7416",
        "  REFLONG=136:26:39.8508", "  REFELEV=218.5", "  STDVERS=\"SEG 1.0\"", "  EMPTY=1.0E+32",
        "  ACQDATE=07/01/2019", "  FILEDATE=11/21/2026", "  PROGVERS=\"Brenlox 1.0\"",
        "  Written by Brenlox 1.0", "  SECTID=\"200E_100\"", "  NFREQ=2",
        ">HMEAS ID=101.001 CHTYPE=HX X=0.0 Y=0.0 Z=0.0 AZM=0",
        ">EMEAS ID=104.001 CHTYPE=EX X=-50.00 Y=0.00 Z=0.0 X2=50.00 Y2=0.00 Z2=0.0"}) {
    EXPECT_TRUE(has_line(text, line)) << line << "\n" << text;
  }
  EXPECT_EQ(blocks_of(text),
            (std::vector<std::string>{"FREQ", "ZROT", "ZXYR", "ZXYI", "ZXY.VAR", "RHOXY", "RHOXY.ERR",
                                      "PHSXY", "PHSXY.ERR", "TROT.EXP", "TXR.EXP", "TXI.EXP", "TXVAR.EXP",
                                      "TYR.EXP", "TYI.EXP", "TYVAR.EXP"}));
  EXPECT_TRUE(has_line(text, "   1.04000000E+04   5.00000000E-01"));
  EXPECT_TRUE(has_line(text, "   1.00000000E+32   1.00000000E+32")) << "no Ty";
  EXPECT_FALSE(has_line(text, ">FREQ"));
  EXPECT_TRUE(has_line(text, "  > a line that looks like a tag  >FREQ"));
}

TEST(Edi_writer, Gives_back_all_digits_and_leaves_absent_what_is) {
  formats::edi::EdiPlace place;
  const EdiSection read = read_back(made_site(), &place);
  using namespace formats::edi;
  EXPECT_EQ(read.frequencies, (std::vector<float>{10400.0F, 0.5F}));
  EXPECT_EQ(read.ZROT, (std::vector<float>{30.0F, 30.0F}));
  EXPECT_EQ(read.TROT, read.ZROT);
  EXPECT_EQ(read.local_hx->AZM, 0.0);
  const auto values = [&](auto element, EdiQuantity quantity) { return read.get(element, quantity).values; };
  EXPECT_EQ(values(element_xy, quantity_real), (std::vector<float>{1.23456789e3F, no_data}));
  EXPECT_EQ(values(element_xy, quantity_imaginary), (std::vector<float>{-9.87654321e-4F, no_data}));
  EXPECT_EQ(values(element_xy, quantity_variance), (std::vector<float>{3.14159265e-12F, no_data}));
  EXPECT_EQ(values(element_xy, quantity_resistivity), (std::vector<float>{33.3F, no_data}));
  EXPECT_EQ(values(element_xy, quantity_phase), (std::vector<float>{-0.125F, 45.5F}));
  EXPECT_NEAR(values(element_xy, quantity_resistivity_error)[0], 0.0434294, 1e-7);  // 0.1 / ln 10
  EXPECT_EQ(values(tipper_x, quantity_imaginary), (std::vector<float>{no_data, -0.2F}));
  EXPECT_FALSE(read.get(element_yx, quantity_real).present);
  ASSERT_TRUE(place.geographic);
  EXPECT_NEAR(place.geographic->latitude, -19.440206, 2e-8);
  EXPECT_EQ(place.datum, "WGS84");
}

TEST(Edi_writer, Rounds_places_before_it_splits_them) {
  struct Case {
    double degrees;
    const char* text;
  };
  for (const Case& c : {Case{-0.5, "-0:30:00.0000"}, Case{59.9999999999, "60:00:00.0000"},
                        Case{-10.99999999, "-11:00:00.0000"}, Case{12.0166666666, "12:01:00.0000"},
                        Case{-1e-10, "0:00:00.0000"}}) {
    SiteDocument site = made_site();
    site.function.site.latitude = c.degrees;
    EXPECT_TRUE(has_line(edi_text(site), "  LAT=" + std::string(c.text))) << c.degrees;
  }
}

// A zero would be a place, or a day.
TEST(Edi_writer, Says_nothing_of_what_is_not_known) {
  SiteDocument site = made_site();
  site.function.site = {};
  site.date_collected.reset();
  site.sensor_azimuth.reset();
  const std::string text = edi_text(site);
  for (const char* const key : {"LAT=", "LONG=", "ELEV=", "DATUM=", "ACQDATE="}) {
    EXPECT_EQ(text.find(key), std::string::npos) << key;
  }
  formats::edi::EdiPlace place;
  read_back(site, &place);
  EXPECT_FALSE(place.geographic || place.elevation);
}

TEST(Edi_writer, Lays_the_dipoles_along_the_axes_of_measurement) {
  SiteDocument site = made_site();
  site.sensor_azimuth = 30.0;
  for (Point& point : site.function.points) {
    point.of(Component::zyx) = value({1.0, 1.0}, 0.1, 1.0, 45.0);
  }
  const std::string text = edi_text(site);
  EXPECT_TRUE(has_line(text, ">HMEAS ID=102.001 CHTYPE=HY X=0.0 Y=0.0 Z=0.0 AZM=120"));
  EXPECT_TRUE(has_line(text, ">EMEAS ID=104.001 CHTYPE=EX X=-43.30 Y=-25.00 Z=0.0 X2=43.30 Y2=25.00 Z2=0.0"));
  EXPECT_TRUE(has_line(text, ">EMEAS ID=105.001 CHTYPE=EY X=25.00 Y=-43.30 Z=0.0 X2=-25.00 Y2=43.30 Z2=0.0"));
  site.sensor_azimuth = 281.18;
  EXPECT_TRUE(has_line(edi_text(site), ">HMEAS ID=102.001 CHTYPE=HY X=0.0 Y=0.0 Z=0.0 AZM=11.18"));
}
