#include "formats/csv/curve_table.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "formats/csv/csv_records.h"
#include "tests/support/temporary_folder.h"

using formats::FileReport;
using namespace formats::csv;

namespace {

struct Table {
  std::vector<CurveRows> curves;
  FileReport report;

  [[nodiscard]] bool told(std::string_view text) const {
    const auto holds = [&](const auto& remark) { return remark.text.find(text) != std::string::npos; };
    return std::ranges::any_of(report.unreadable, holds) || std::ranges::any_of(report.ignored, holds);
  }
};

Table read(const std::string& text) {
  const TemporaryFolder folder;
  LineReader lines(folder.write("curves.csv", text));
  Table table;
  table.curves = read_curve_table(lines, table.report);
  return table;
}

const std::string plain = "station,data_type,frequency_Hz,resistivity_ohm_m,phase_deg\n";

CurveRows full_curve() {
  CurveRows curve;
  curve.line = "200E";
  curve.station = 100.5;
  curve.site = "Mt. \"Top\", east";
  curve.data_type = "EyHx";
  curve.reference_type = 1;
  curve.dipole = 33.3;
  curve.scan_rate = 4096.0;
  curve.event = 2;
  curve.date = "2019-01-07";
  curve.azimuth = 11.25;
  curve.latitude = -19.440206123;
  curve.longitude = 136.444403;
  curve.elevation = 218.25;
  curve.easting = 311288.125;
  curve.northing = 4281879.0;
  CurvePoint& first = curve.points.emplace_back();
  first.frequency = double{0.023438F};
  first.resistivity = double{123.456787F};
  first.phase = double{-135.000015F};
  first.resistivity_error = double{1.17549435e-38F};
  first.phase_error = double{0.1F};
  first.resistivity_masked = false;
  first.phase_masked = true;
  curve.points.emplace_back().frequency = 8192.0;
  return curve;
}

}  // namespace

TEST(Curve_table, What_is_written_is_read_again) {
  const CurveRows written = full_curve();
  CurveRows tipper = full_curve();
  tipper.data_type = "HzHy";
  tipper.points[0].resistivity_error = 0.25;
  const Table table = read(curve_table_header() + curve_table_rows(written) + curve_table_rows(tipper));
  EXPECT_EQ(table.report.failure, "");
  EXPECT_FALSE(table.report.has_remarks());
  ASSERT_EQ(table.curves.size(), 2U);
  const CurveRows& curve = table.curves[0];
  EXPECT_EQ(curve.line, written.line);
  EXPECT_EQ(curve.station, written.station);
  EXPECT_EQ(curve.site, written.site);
  EXPECT_EQ(curve.data_type, written.data_type);
  EXPECT_EQ(curve.reference_type, written.reference_type);
  EXPECT_EQ(curve.dipole, written.dipole);
  EXPECT_EQ(curve.scan_rate, written.scan_rate);
  EXPECT_EQ(curve.event, written.event);
  EXPECT_EQ(curve.date, written.date);
  EXPECT_EQ(curve.azimuth, written.azimuth);
  EXPECT_EQ(curve.latitude, written.latitude);
  EXPECT_EQ(curve.longitude, written.longitude);
  EXPECT_EQ(curve.elevation, written.elevation);
  EXPECT_EQ(curve.easting, written.easting);
  EXPECT_EQ(curve.northing, written.northing);
  ASSERT_EQ(curve.points.size(), 2U);
  const CurvePoint& point = curve.points[0];
  const CurvePoint& given = written.points[0];
  for (const auto member : {&CurvePoint::frequency, &CurvePoint::resistivity, &CurvePoint::phase,
                            &CurvePoint::resistivity_error, &CurvePoint::phase_error}) {
    EXPECT_EQ(static_cast<float>(point.*member), static_cast<float>(given.*member));
  }
  EXPECT_EQ(point.resistivity_masked, std::optional(false));
  EXPECT_EQ(point.phase_masked, std::optional(true));
  EXPECT_TRUE(std::isnan(curve.points[1].resistivity));
  EXPECT_EQ(curve.points[1].phase_masked, std::nullopt);

  const CurvePoint& parts = table.curves[1].points[0];
  EXPECT_EQ(static_cast<float>(parts.phase), -135.000015F);
  EXPECT_EQ(parts.resistivity_error, 0.25);
  EXPECT_EQ(parts.phase_error, 0.25);
}

TEST(Curve_table, Columns_go_by_their_names_and_rows_by_what_they_name) {
  const Table table = read(
      "\xEF\xBB\xBF\r\n\"PHASE\",Data_Type,remarks,masked,Frequency_hz,latitude,longitude,STATION,"
      "Resistivity\r\n"
      "45,exhy,good,0,1,-19.5,226.5,100,10\r\n"
      "30,EyHx,\"two\r\nlines\",1,1,-19.5,226.5,100,20\r\n"
      "46,ExHy,,true,2,-19.6,226.5,1E2,nan\r\n");
  EXPECT_EQ(table.report.failure, "");
  ASSERT_EQ(table.curves.size(), 2U);
  EXPECT_EQ(table.curves[0].data_type, "ExHy");
  EXPECT_EQ(table.curves[0].longitude, -133.5);
  ASSERT_EQ(table.curves[0].points.size(), 2U);
  EXPECT_EQ(table.curves[0].points[0].phase, 45.0);
  EXPECT_EQ(table.curves[0].points[1].resistivity_masked, std::optional(true));
  EXPECT_TRUE(std::isnan(table.curves[0].points[1].resistivity));
  EXPECT_EQ(table.curves[1].line_number, 4);
  EXPECT_TRUE(table.told("the column 'remarks' is not used"));
  EXPECT_TRUE(table.told("latitude_deg '-19.6' differs"));
  EXPECT_EQ(table.report.unreadable.size(), 0U);
}

TEST(Curve_table, Texts_that_spreadsheets_take_for_formulas_come_back_as_they_were) {
  for (const std::string site :
       {"=1+2", "+A1", "-north", "@x", "'=x", "''-x", "-12", "'plain", "a=b", "=\"a,b\""}) {
    SCOPED_TRACE(site);
    const std::string field = csv_field(site);
    const std::vector<std::string> fields = csv_fields(field, ',');
    ASSERT_EQ(fields.size(), 1U);
    EXPECT_EQ(csv_text(fields[0]), site);
    const bool is_formula = std::string_view("=+@").find(fields[0][0]) != std::string_view::npos;
    EXPECT_FALSE(is_formula);
  }
  EXPECT_EQ(csv_field("-12"), "-12");
}

TEST(Curve_table, Headers_are_known_by_what_no_curve_can_do_without) {
  EXPECT_TRUE(is_curve_table_header(curve_table_header()));
  EXPECT_TRUE(is_curve_table_header(plain));
  EXPECT_TRUE(is_curve_table_header("Station;data_type;frequency;tipper_real"));
  EXPECT_TRUE(is_curve_table_header("STATION\tDATA_TYPE\tFREQUENCY_HZ\tPHASE_DEG"));
  EXPECT_FALSE(is_curve_table_header("station,frequency_Hz,resistivity_ohm_m"));
  EXPECT_FALSE(is_curve_table_header("station,data_type,frequency_kHz,resistivity_ohm_m"));
  EXPECT_FALSE(is_curve_table_header("station,data_type,frequency_Hz,resistivity_error_ohm_m"));
  EXPECT_FALSE(is_curve_table_header("skp Station Freq Comp Amps Resistivity Phase"));
  for (const char* const of_results :
       {"line,station,site,frequency_Hz,x_azimuth_deg,element,real_mV/km/nT,resistivity_ohm_m,phase_deg",
        "line,station,site,frequency_Hz,x_azimuth_deg,component,real,imaginary,variance",
        "line,station,site,frequency_Hz,x_azimuth_deg,det_rho_ohm_m,det_phase_deg",
        "line,station,site,data_type,frequency_Hz,resistivity_ohm_m,fitted_resistivity_ohm_m,phase_deg"}) {
    EXPECT_FALSE(is_curve_table_header(of_results)) << of_results;
  }
  EXPECT_FALSE(is_curve_table_header(""));
  EXPECT_FALSE(is_curve_table_header(plain + std::string(1 << 20, ',')));
}

TEST(Curve_table, A_table_of_another_kind_is_told_what_is_wanted) {
  struct Case {
    const char* text;
    const char* failure;
  };
  const Case cases[] = {
      {"station;data_type;frequency_Hz;phase_deg\n1;ExHy;1;2\n", "semicolons"},
      {"station\tdata_type\tfrequency_Hz\tphase_deg\n", "tabs"},
      {"station,frequency_Hz,phase_deg\n1,1,1\n", "no column data_type"},
      {"station,data_type,frequency_Hz,phase_deg\n1,ExHy,1,45\n2,ExHy,\"0,5\",45\n",
       "line 3: frequency_Hz '0,5' has a decimal comma"},
      {"station,data_type,frequency_Hz,phase_deg\n", "no row"},
      {"", "no column station"},
      {"station,data_type,frequency_Hz,phase_deg\n1,ExHy,1,45\n1,\"ExHy,1,45\n1,ExHy,1,45\n",
       "line 3: a quote is opened and not closed"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_NE(read(c.text).report.failure.find(c.failure), std::string::npos) << read(c.text).report.failure;
  }
}

TEST(Curve_table, Rows_that_cannot_be_read_are_told_and_the_others_kept) {
  const Table table = read(plain +
                           "1,ExHy,1,10,45\n"
                           "x,ExHy,1,10,45\n"
                           "1,Exhz,1,10,45\n"
                           "1,ExHy,0,10,45\n"
                           "1,ExHy,2,abc,45\n"
                           "1,ExHy,3,10\n"
                           "1,ExHy,4,10,45,6\n"
                           "1,ExHy,5," +
                           std::string(70000, '1') +
                           ",45\n"
                           "1,ExHy,1e999,10,45\n"
                           "1,ExHy,6,1e32,-0\n"
                           "1,ExHy,1e-60,10,45\n"
                           "1,ExHy,7,10,45");
  EXPECT_EQ(table.report.failure, "");
  ASSERT_EQ(table.curves.size(), 1U);
  std::vector<double> frequencies;
  for (const CurvePoint& point : table.curves[0].points) {
    frequencies.push_back(point.frequency);
  }
  EXPECT_EQ(frequencies, (std::vector<double>{1, 2, 6, 7}));
  EXPECT_TRUE(std::isnan(table.curves[0].points[1].resistivity));
  EXPECT_TRUE(std::isnan(table.curves[0].points[2].resistivity));
  for (const char* const text :
       {"station 'x' is no station", "data_type 'Exhz' is none of", "frequency_Hz '0' is not above 0",
        "frequency_Hz '1e-60' is too near to 0", "resistivity_ohm_m 'abc' is not a number",
        "the row has 4 fields where the header has 5", "the row has 6 fields", "longer than 65536 bytes"}) {
    EXPECT_TRUE(table.told(text)) << text;
  }
}

TEST(Curve_table, A_table_cut_anywhere_gives_rows_of_the_whole_one) {
  CurveRows curve = full_curve();
  curve.points.resize(1);
  curve.data_type = "ExHx";
  const std::string text = curve_table_header() + curve_table_rows(curve) + curve_table_rows(full_curve());
  for (std::size_t size = 0; size < text.size(); ++size) {
    const Table table = read(text.substr(0, size));
    EXPECT_TRUE(!table.curves.empty() || !table.report.failure.empty()) << size;
    for (const CurveRows& cut : table.curves) {
      EXPECT_EQ(cut.site, curve.site) << size;
      EXPECT_EQ(static_cast<float>(cut.points[0].phase), -135.000015F) << size;
    }
  }
}

TEST(Curve_table, Quotes_and_fields_without_end_are_bounded) {
  std::string open = plain + "1,\"ExHy";
  for (int i = 0; i < 200000; ++i) {
    open += "\n\"\"";
  }
  EXPECT_NE(read(open).report.failure.find("not closed"), std::string::npos);
  const Table many = read(plain + std::string(60000, ',') + "\n1,ExHy,1,10,45\n");
  EXPECT_TRUE(many.told("more than 1000 fields"));
  EXPECT_EQ(many.curves.size(), 1U);
}
