// Spectra, Em1dfm and fixed-column files: what of them comes into the survey.
#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include <gtest/gtest.h>

#include "database/reading_facts.h"
#include "database/sites.h"
#include "import/import_run.h"
#include "import/readers/edi_spectra_reader.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/import/readers/made_fields.h"
#include "tests/support/survey_fixture.h"

using namespace Module_data_file;
using formats::FileReport;
using formats::ReportRemark;

namespace {

using Module_database::Curve;
using Module_database::open_survey;
using Module_database::StoredReading;

constexpr float absent = -1e32F;

class OtherFormats : public SurveyTest {
 protected:
  OtherFormats() {
    new_survey();
    choices.ReferenceType = 0;
    choices.ReductionType = 0;
    choices.decode[decode_line_number].specified = "200";
    choices.decode[decode_event].specified = "3";
    choices.decode[decode_sample_rate].specified = "4096";
  }

  FileReport import(const std::string& name, const std::string& text, ImportMode mode = ImportMode::import) {
    EXPECT_EQ(run_import(choices, {folder.write(name, text)}, mode, report), 0);
    return report.files.at(0);
  }

  /// The record as the reader of spectra leaves it behind a scan.
  ReadingRecord read_into_record(const std::string& name) const {
    ReadingRecord record;
    FileReport ignored;
    StoreNotes notes;
    FileTask task{ImportMode::scan, folder.path(name), record, ignored, notes, {}};
    EXPECT_EQ(read_edi_spectra(task), 0);
    return record;
  }

  static StoredReading stored(const std::string& criteria) {
    dao::Recordset rows =
        open_survey().database.open_recordset("SELECT * FROM ReadingsDataTable WHERE " + criteria);
    if (rows.eof()) {
      ADD_FAILURE() << "no reading with " << criteria;
      return {};
    }
    StoredReading reading = Module_database::read_reading(rows);
    Module_database::read_facts(reading);
    return reading;
  }

  static Curve raw(const std::string& data_type) {
    return stored("FileID > 0 AND DataType = '" + data_type + "'").curve;
  }

  static bool told(const std::vector<ReportRemark>& remarks, const std::string& text) {
    return std::any_of(remarks.begin(), remarks.end(), [&](const ReportRemark& remark) {
      return remark.text.find(text) != std::string::npos;
    });
  }

  ImportChoices choices;
  ImportReport report;
};

const MadeTensor earth{std::complex{-3.0, 1.0}, std::complex{40.0, 25.0}, std::complex{-30.0, -28.0},
                       std::complex{2.0, -4.0}};

std::vector<MadeFrequency> two_frequencies() { return {{100.0, earth}, {10.0, earth}}; }

}  // namespace

TEST_F(OtherFormats, Spectra_come_in_as_the_curves_of_their_tensor) {
  for (const MadeChannels& channels : {channels_by_id(), channels_by_keyword()}) {
    SCOPED_TRACE(channels.list);
    const FileReport file = import("a.edi", made_spectra(two_frequencies(), channels));
    EXPECT_FALSE(file.has_remarks()) << remark_lines(file).at(0);
    const bool has_hz = std::ranges::count(channels.order, 2) == 1;  // a tenth of Hx
    EXPECT_EQ(file.readings, has_hz ? 6 : 4);
    EXPECT_EQ(file.frequencies, 2);
    if (has_hz) {
      const Curve x = raw("HzHx");
      const Curve y = raw("HzHy");
      EXPECT_NEAR(x.value(1, 1), 0.1, 1e-6);
      for (const float zero : {x.value(2, 1), y.value(1, 1), y.value(2, 1)}) {
        EXPECT_NEAR(zero, 0.0, 1e-6);
      }
      EXPECT_EQ(x.mask, (std::vector<std::int32_t>{1, 1, 1, 1}));
      EXPECT_EQ(y.mask, x.mask);
      EXPECT_EQ(x.value(13, 1), absent);
    }
    const char* const data_types[] = {"ExHx", "ExHy", "EyHx", "EyHy"};
    for (std::size_t element = 0; element < 4; ++element) {
      SCOPED_TRACE(data_types[element]);
      const Curve curve = raw(data_types[element]);
      ASSERT_EQ(curve.frequencies, (std::vector<float>{10, 100}));
      const double resistivity = 0.2 * std::norm(earth.at(element)) / 100.0;
      const double degrees = std::arg(earth.at(element)) * 180.0 / std::numbers::pi;
      const double phase = degrees < -90.0 ? degrees + 360.0 : degrees;
      constexpr double to_ohm = 4e-4 * std::numbers::pi;
      const double yy = 4.0 * to_ohm;  // the imaginary part of Zyy, without its sign
      EXPECT_NEAR(curve.value(1, 1), resistivity, 1e-5 * resistivity);
      EXPECT_NEAR(curve.value(2, 1), phase, 1e-4);
      EXPECT_NEAR(curve.value(3, 1), 6314.0 * std::sqrt(yy * resistivity / 100.0), 0.01);
      EXPECT_NEAR(curve.value(4, 1), 2000.0 * std::sqrt(yy / 100.0), 0.001);
      EXPECT_NEAR(curve.value(9, 1), earth.at(element).real() * to_ohm, 1e-7);
      EXPECT_NEAR(curve.value(10, 1), earth.at(element).imag() * to_ohm, 1e-7);
      EXPECT_EQ(curve.value(11, 1), 0.0F);
      EXPECT_EQ(curve.value(13, 1), absent);
      EXPECT_NEAR(curve.value(19, 1), 1.0, 1e-5);  // coherence of fields without noise
      for (const int field : {1, 2, 3, 4}) {
        EXPECT_EQ(curve.value(field + 4, 1), curve.value(field, 1));
      }
      EXPECT_EQ(curve.value(18, 1), absent);
      EXPECT_EQ(curve.counts_at(1, 1), 1);
      EXPECT_EQ(curve.counts_at(2, 1), phase > 0.0 ? 1 : 0);
    }
    dao::Recordset& files = open_survey().files;
    files.move_first();
    EXPECT_EQ(files.get_text("Filter"), "EMISpect");
    EXPECT_EQ(read_into_record("a.edi").Orientation, 12.5F);
    dao::Recordset& places = open_survey().locations;
    places.move_first();
    EXPECT_EQ(places.get_double("MapX"), 22.0);
    EXPECT_EQ(places.get_double("Elevation"), 33.0);
  }
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType = 2"), 4)
      << "merged curves at the end of the import";
}

TEST_F(OtherFormats, Spectra_read_the_same_from_every_spelling) {
  const std::string plain = made_spectra(two_frequencies(), channels_by_id());
  const std::string on_one_line = "//7\n 11.1 12.1 13.1\n14.1 15.1 16.1 17.1\n";
  const std::string cases[] = {
      replaced(plain, "\n", "\r\n"),
      replaced(plain, "// 7\n 11.1\n 12.1\n 13.1\n 14.1\n 15.1\n 16.1\n 17.1\n", on_one_line),
      replaced(plain, " // 49", "\n// 49"), replaced(plain, ">SPECTRA FREQ=", "\n  >spectra  freq = "),
      replaced(plain, "ROTSPEC=0 BW=1.0 AVGT=120", "ROTSPEC= 0 BW= 1.0 AVGT= 120 AVGF= 12"),
      replaced(plain, "E+00 ", "D+00\n"),
      replaced(plain, ">=SPECTRASECT\n", ">=SPECTRASECT\n  NCHAN=7\n>!****A COMMENT****!\n"),
      // Ids of the remote channels that repeat the station's own ones.
      replaced(replaced(plain, "16.1", "11.1"), "17.1", "12.1"),
      replaced(plain, "ID=16.1 CHTYPE=HX", "ID=16.1 CHTYPE=RHX"), replaced(plain, " 11.1\n", " 011.10\n")};
  (void)import("a.edi", plain);
  const Curve expected = raw("ExHy");
  for (const std::string& text : cases) {
    SCOPED_TRACE(text.substr(0, 1200));
    const FileReport file = import("a.edi", text);
    EXPECT_EQ(file.failure, "");
    const Curve curve = raw("ExHy");
    EXPECT_EQ(curve.frequencies, expected.frequencies);
    for (std::size_t k = 0; k < curve.data.size() && k < expected.data.size(); ++k) {
      EXPECT_NEAR(curve.data[k], expected.data[k], 1e-5 * std::abs(expected.data[k]));
    }
  }
}

// The local channels are spoilt, so that only the right choice of a reference gives the tensor back.
TEST_F(OtherFormats, A_second_pair_of_channels_is_the_reference) {
  std::string spoilt = made_spectra({{100.0, earth}}, channels_by_id());
  const std::size_t first_value = spoilt.find('\n', spoilt.find(">SPECTRA")) + 1;
  spoilt.replace(first_value, spoilt.find(' ', first_value + 1) - first_value,
                 " 9.0");  // power of Hx, too large
  struct Case {
    const char* name;
    std::string text;
    bool referenced;
  };
  const Case cases[] = {
      {"magnetic", spoilt, true},
      {"electric",
       replaced(replaced(spoilt, "16.1 CHTYPE=HX", "16.1 CHTYPE=EX"), "17.1 CHTYPE=HY", "17.1 CHTYPE=EY"),
       true},
      {"named as reference",
       replaced(replaced(spoilt, "16.1 CHTYPE=HX", "16.1 CHTYPE=RRHX"), "17.1 CHTYPE=HY", "17.1 CHTYPE=RRHY"),
       true},
      {"half a pair", replaced(spoilt, "17.1 CHTYPE=HY", "17.1 CHTYPE=HZ"), false}};
  const double resistivity = 0.2 * std::norm(earth[1]) / 100.0;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(import("a.edi", c.text).failure, "");
    EXPECT_EQ(std::abs(raw("ExHy").value(1, 0) - resistivity) < 1e-3, c.referenced);
  }
}

TEST_F(OtherFormats, Faults_of_a_spectrum_cost_that_frequency_alone) {
  const MadeChannels channels = channels_by_id();
  const std::string good = made_spectra_block({100.0, earth}, channels);
  const std::string bad = made_spectra_block({10.0, earth}, channels);
  const std::size_t first_value = bad.find('\n') + 1;
  const std::string rest = bad.substr(bad.find(' ', first_value + 1));
  struct Case {
    const char* name;
    std::string block;
    const char* remark;
  };
  const Case cases[] = {
      {"absent value", bad.substr(0, first_value) + " 1.0E+32" + rest, "absent values"},
      {"not a number", bad.substr(0, first_value) + " NaN" + rest, "absent values"},
      {"other text", bad.substr(0, first_value) + " 5.4x" + rest, "'5.4x' is not a number, taken as absent"},
      {"a value short", bad.substr(0, first_value) + rest, "48 of 49 values"},
      {"no frequency", replaced(bad, "FREQ=", "FRQ="), "no frequency above 0"},
      {"zeros", bad.substr(0, first_value) + replaced(std::string(49, 'z'), "z", " 0") + "\n",
       "one direction"},
      {"another block", ">COHERENCE // 49\n" + bad.substr(first_value), "not used"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string whole = made_spectra({{1.0, earth}}, channels);
    const FileReport file = import("a.edi", replaced(whole, ">END", c.block + good + ">END"));
    EXPECT_EQ(file.failure, "");
    EXPECT_TRUE(told(file.unreadable, c.remark) || told(file.ignored, c.remark)) << remark_lines(file).at(0);
    EXPECT_EQ(raw("ExHy").frequencies, (std::vector<float>{1, 100}));
  }
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST_F(OtherFormats, An_invalid_number_of_averages_is_told_once_and_costs_nothing) {
  const std::string text = made_spectra(
      {{10.0, earth, "ROTSPEC=0 AVGT=many"}, {1.0, earth, "AVGT=-3"}, {0.1, earth, "AVGT=1.2E+03"}},
      channels_by_id());
  const FileReport file = import("a.edi", text);
  EXPECT_EQ(interface.take_messages(), (std::vector<std::string>{"The AVGT value is invalid: MANY"}));
  EXPECT_EQ(file.unreadable.size(), 2U);
  EXPECT_EQ(file.frequencies, 3);
}

// A uniform earth, whose tensor is the same in all axes but for the two off the diagonal changing places with
// their signs at 90 degrees; HX of the made channels has an azimuth of 12.5.
TEST_F(OtherFormats, Rotated_spectra_tell_the_turn_and_where_the_tensor_points) {
  const auto with_rotations = [&](const std::string& first, const std::string& second) {
    return made_spectra({{10.0, earth, first + " AVGT=120"}, {1.0, earth, second + " AVGT=120"}},
                        channels_by_id());
  };
  struct Case {
    const char* first;
    const char* second;
    const char* told;
    float orientation;
  };
  const Case cases[] = {
      {"ROTSPEC=0", "ROTSPEC=0", "", 12.5F},
      {"ROTSPEC=360", "ROTSPEC=0", "", 12.5F},
      {"ROTSPEC=30", "ROTSPEC=30", "turned back by ROTSPEC, 30 degrees clockwise", 12.5F},
      {"ROTSPEC=30", "ROTSPEC=-15", "turned back by ROTSPEC, -15 to 30 degrees clockwise", 12.5F},
      {"ROTSPEC=12.5", "ROTSPEC=12.5", "12.5 degrees clockwise, which is the azimuth of its channels", 0.0F},
      {"ROTSPEC=13", "ROTSPEC=372.1", "it points north", 0.0F},
      {"ROTSPEC=-347.5", "ROTSPEC=12", "it points north", 0.0F},
      {"ROTSPEC=13.1", "ROTSPEC=13.1", "13.1 degrees clockwise", 12.5F},
      {"ROTSPEC=12.5", "ROTSPEC=30", "12.5 to 30 degrees clockwise", 12.5F},
      {"ROTSPEC=NaN", "ROTSPEC=0", "ROTSPEC='NAN' is not a number, taken as 0", 12.5F}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.first) + " " + c.second);
    const FileReport file = import("a.edi", with_rotations(c.first, c.second));
    EXPECT_EQ(file.ignored.size() + file.unreadable.size(), *c.told == '\0' ? 0U : 1U);
    EXPECT_TRUE(*c.told == '\0' || told(file.ignored, c.told) || told(file.unreadable, c.told))
        << remark_lines(file).at(0);
    EXPECT_EQ(told(file.ignored, "north"), c.orientation == 0.0F);
    EXPECT_EQ(read_into_record("a.edi").Orientation, c.orientation);
    EXPECT_EQ(stored("FileID > 0").axes.HxAzimuth, c.orientation);
  }
  // The tensor itself stands in the channels' axes: Z = R Z' R^T with R of a quarter turn.
  (void)import("a.edi", with_rotations("ROTSPEC=90", "ROTSPEC=90"));
  EXPECT_NEAR(raw("ExHy").value(1, 0), 0.2 * std::norm(earth[2]), 0.01);
}

TEST_F(OtherFormats, Spectra_turn_Ey_by_their_own_phases) {
  const MadeTensor upright{std::complex{-3.0, 1.0}, std::complex{40.0, 25.0}, std::complex{30.0, 28.0},
                           std::complex{2.0, -4.0}};
  choices.turn_ey = TurnEy::where_needed;
  EXPECT_EQ(import("a.edi", made_spectra({{1.0, earth}, {2.0, earth}, {4.0, upright}}, channels_by_id()))
                .sections_turned,
            1);
  EXPECT_NEAR(raw("EyHx").value(2, 0), std::atan2(28.0, 30.0) * 180.0 / std::numbers::pi, 1e-3);
  EXPECT_NEAR(raw("EyHy").value(2, 0), std::atan2(4.0, -2.0) * 180.0 / std::numbers::pi, 1e-3);
  EXPECT_EQ(import("a.edi", made_spectra({{1.0, earth}, {2.0, upright}}, channels_by_id())).sections_turned,
            0)
      << "exactly half";
  choices.turn_ey = TurnEy::always;
  EXPECT_EQ(import("a.edi", made_spectra({{2.0, upright}}, channels_by_id())).sections_turned, 1);
}

TEST_F(OtherFormats, Spectra_name_what_they_can_not_read) {
  const std::string plain = made_spectra(two_frequencies(), channels_by_id());
  EXPECT_TRUE(told(import("a.edi", replaced(plain, " 13.1\n", " 99\n")).unreadable,
                   "channel '99' has no >HMEAS or >EMEAS"));
  std::string commas = plain;
  const std::size_t blocks = commas.find('\n', commas.find(">SPECTRA"));
  std::replace(commas.begin() + static_cast<std::ptrdiff_t>(blocks), commas.end(), '.', ',');
  const FileReport named = import("b.edi", commas);
  EXPECT_EQ(named.readings, 0);
  EXPECT_NE(named.failure.find("has a decimal comma"), std::string::npos) << named.failure;
  const FileReport odd = import("d.edi", replaced(plain, "FREQ=1.0", "FREQ=1.#QNAN"));
  EXPECT_EQ(odd.readings, 0);
  EXPECT_TRUE(told(odd.unreadable, "is not a number, taken as absent"));
  const FileReport below = import("c.edi", replaced(plain, "FREQ=1.0", "FREQ=-1.0"));
  EXPECT_TRUE(told(below.unreadable, "2 frequencies are not above 0 Hz (-100"));
  const Curve curve = stored("FileID = 2 AND DataType = 'ExHy'").curve;
  EXPECT_EQ(curve.frequencies, (std::vector<float>{-100, -10}));
  EXPECT_EQ(curve.value(1, 0), absent);
  EXPECT_GT(curve.value(2, 0), 0.0F);
  const FileReport zero = import("e.edi", replaced(plain, "FREQ=1.000000E+02", "FREQ=0"));
  EXPECT_EQ(zero.frequencies, 2) << "stored as it came, too";
}

TEST_F(OtherFormats, Spectra_of_several_sections_are_several_stations) {
  const std::string one = made_spectra({{1.0, earth}}, channels_by_id());
  const std::size_t section = one.find(">=SPECTRASECT");
  const std::string second = replaced(one.substr(section), "\"12\"", "\"40\"");
  const std::string two = replaced(one, ">END\n", "") + second;
  EXPECT_EQ(import("a.edi", two).sections, 2);
  EXPECT_EQ(rows_in("StationsTable"), 2);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID > 0 AND EventNumber = 1 AND Station = 100"), 6);
  choices.stations_by = StationsBy::sectid;
  EXPECT_EQ(import("b.edi", two).readings, 12);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID > 0 AND Station = 40"), 6);
  // A section without Ey is named; the other one comes in.
  const FileReport file = import("c.edi", replaced(one, ">END\n", "") + replaced(second, " 15.1\n", " 99\n"));
  EXPECT_EQ(file.readings, 6);
  EXPECT_NE(file.failure.find("section 2 has no channel EY"), std::string::npos) << file.failure;
}

TEST_F(OtherFormats, A_spectra_file_cut_anywhere_gives_all_or_nothing) {
  const std::string whole = made_spectra({{1.0, earth}}, channels_by_id());
  (void)import("a.edi", whole);
  const Curve expected = raw("EyHx");
  int stored_files = 0;
  for (std::size_t size = whole.find(">=SPECTRASECT") + 13; size < whole.size(); size += 7) {
    SCOPED_TRACE(whole.substr(0, size));
    const FileReport file = import("cut.edi", whole.substr(0, size));
    EXPECT_TRUE(file.has_remarks());
    if (file.readings != 0) {
      ++stored_files;
      EXPECT_EQ(raw("EyHx").data, expected.data);
    }
  }
  EXPECT_LE(stored_files, 3) << "only where nothing but the end of the last number or >END is missing";
}

TEST_F(OtherFormats, Em1dfm_stations_come_in_as_quadrature_readings) {
  const std::string text =
      "Frequency Domain EM Data, version 1\n"
      "line 300E survey\n"
      "Station no. 1250 5001.5 7002.5 88 3\n"
      " 100  both  0 0 12.5 3.5 9 0.1 0.2\n"
      " 10   quad  0 -4.5 9 0.3\n"
      "  1   B 7 7 1e31 0 9 0.5 0.6\n"
      "\n"
      "LINE 400E\n"
      "STAT a b 1300 1 2 3 1\n"
      " 5 Q 0 8.5 0 0.7\n";
  const FileReport file = import("a.dat", text);
  EXPECT_FALSE(file.has_remarks()) << remark_lines(file).at(0);
  EXPECT_EQ(file.readings, 2);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID > 0"), 2);
  const Curve curve =
      stored("FileID > 0 AND LineNumber = '300E' AND Station = 1250 AND DataType = 'QP'").curve;
  ASSERT_EQ(curve.frequencies, (std::vector<float>{1, 10, 100}));
  const float fields[3][4] = {
      {absent, 0.0F, 0.5F, 0.6F}, {-4.5F, absent, 0.3F, absent}, {12.5F, 3.5F, 0.1F, 0.2F}};
  const std::int32_t masks[3][2] = {{0, 0}, {0, 0}, {1, 1}};
  for (std::size_t index = 0; index < 3; ++index) {
    SCOPED_TRACE(index);
    for (int field = 1; field <= 4; ++field) {
      EXPECT_EQ(curve.value(field, index), fields[index][field - 1]);
      EXPECT_EQ(curve.value(field + 4, index), fields[index][field - 1]);
    }
    for (int field = 9; field <= 18; ++field) {
      EXPECT_EQ(curve.value(field, index), absent);
    }
    EXPECT_EQ(curve.value(19, index), 0.0F);
    EXPECT_EQ(curve.counts_at(1, index), masks[index][0]);
    EXPECT_EQ(curve.counts_at(2, index), masks[index][1]);
  }
  EXPECT_EQ(stored("FileID > 0 AND LineNumber = '400E' AND Station = 1300").curve.value(1, 0), 8.5F);
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType = 1 AND DataType = 'QP'"), 2) << "averages";
  dao::Recordset& files = open_survey().files;
  files.move_first();
  EXPECT_EQ(files.get_text("Filter"), "Em1dfm");
  EXPECT_EQ(files.get_single("DipoleLength"), 100.0F);
  dao::Recordset& places = open_survey().locations;
  places.move_first();
  EXPECT_EQ(places.get_double("MapX"), 5001.5);
  EXPECT_EQ(places.get_double("MapY"), 7002.5);
  EXPECT_EQ(places.get_double("Elevation"), 88.0);
  EXPECT_EQ(Module_database::find_site("300E", 1250.0)->elevation, 88.0);
  EXPECT_EQ(stored("FileID > 0").axes, Module_database::ReadingAxes{});
}

TEST_F(OtherFormats, An_Em1dfm_file_without_a_station_says_so) {
  EXPECT_EQ(import("a.dat", "FREQUENCY DOMAIN EM DATA").failure, "the file gave no reading");
}

TEST_F(OtherFormats, Fixed_columns_come_in_as_four_readings) {
  const std::vector<MadeRecord> records{
      {16.0, 0.25, {1e-4, 2e-4, 3e-3, 4e-3, -3e-3, -3e-3, 1e-4, -2e-4}, {1e-8, 2e-8, 3e-8, 4e-8}},
      {1024.0, 0.5, {0.0, 0.0, 6e-3, 8e-3, 3e-3, -4e-3, 0.0, 5e-4}, {1e-8, 0.0, 0.0, 0.0}}};
  const FileReport file = import("a.res", made_fixed_columns(records));
  EXPECT_FALSE(file.has_remarks()) << remark_lines(file).at(0);
  const Curve xy = raw("ExHy");
  ASSERT_EQ(xy.frequencies, (std::vector<float>{16, 1024}));
  // Z = 60 + 80i: 0.2 x 10000 / 1024 / 4
  EXPECT_FLOAT_EQ(xy.value(1, 1), 0.48828125F);
  EXPECT_NEAR(xy.value(2, 1), 53.130102, 1e-5);
  EXPECT_NEAR(xy.value(3, 1), 6314.0 * std::sqrt(5.0 * 0.48828125 / 1024.0), 1e-3);
  EXPECT_NEAR(xy.value(4, 1), 2000.0 * std::sqrt(5.0 / 1024.0), 1e-4);
  EXPECT_FLOAT_EQ(xy.value(9, 1), 60.0F);
  EXPECT_FLOAT_EQ(xy.value(10, 1), 80.0F);
  EXPECT_FLOAT_EQ(xy.value(11, 0), 2.0F);
  EXPECT_FLOAT_EQ(xy.value(12, 0), 2.0F);
  EXPECT_EQ(xy.value(13, 0), absent);
  EXPECT_EQ(xy.value(18, 0), absent);
  EXPECT_FLOAT_EQ(xy.value(14, 1), 60.0F);
  EXPECT_EQ(xy.value(19, 0), 0.25F);
  EXPECT_EQ(xy.counts_at(2, 1), 1);
  EXPECT_EQ(raw("ExHx").counts_at(1, 1), 0);
  EXPECT_NEAR(raw("EyHx").value(2, 0), 225.0, 1e-4);
  EXPECT_NEAR(raw("EyHx").value(2, 1), -53.130102, 1e-5);
  EXPECT_EQ(raw("EyHx").counts_at(2, 1), 0);
  dao::Recordset& files = open_survey().files;
  files.move_first();
  EXPECT_EQ(files.get_text("Filter"), "Notch");
  EXPECT_EQ(files.get_double("Station"), 1250.0);
  EXPECT_EQ(files.get_single("DipoleLength"), 50.0F);
  EXPECT_EQ(files.get_single("StationSpacing"), 100.0F);
  EXPECT_EQ(files.get_single("Orientation"), 12.5F);
  EXPECT_EQ(files.get_long("EventNumber"), 3);
  dao::Recordset& places = open_survey().locations;
  places.move_first();
  EXPECT_EQ(places.get_double("MapX"), 200.0) << "without a place in the file, that of the survey grid";
  // Z = 30 + 40i with a variance of 2: a standard error of 1 of each part, 2 percent of |Z|.
  EXPECT_NEAR(xy.error(1, 0), 0.04 * xy.value(1, 0), 1e-5 * xy.value(1, 0));
  EXPECT_NEAR(xy.error(2, 0), 1.1459156, 1e-6);
  EXPECT_EQ(xy.error(2, 1), absent) << "a variance of 0";
  EXPECT_EQ(stored("FileID > 0").axes,
            (Module_database::ReadingAxes{Module_database::ey_as_measured, 12.5F}));
  EXPECT_EQ(Module_database::find_site("200E", 1250.0)->name, "");
  EXPECT_EQ(files.get_date("DateCollected"), 43759.0);  // 21 October 2019
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE ReductionType = 2"), 4);
}

TEST_F(OtherFormats, Fixed_columns_that_end_early_or_fit_no_rate) {
  const std::string whole =
      made_fixed_columns({{16.0, 0.25, {1e-4, 2e-4, 3e-3, 4e-3}, {}}, {1024.0, 0.5, {}, {}}});
  const std::size_t head = whole.find('\n') + 1;
  struct Case {
    const char* name;
    std::string text;
    std::int32_t readings;
    const char* reason;
  };
  const Case cases[] = {{"blank lines behind", whole + "\n\n \n", 4, ""},
                        {"cut in the last record", whole.substr(0, whole.size() - 100), 4, ""},
                        {"cut to its frequency", whole.substr(0, whole.find("1024.0000") + 9), 4, ""},
                        {"last record missing", whole.substr(0, whole.find(" 1024.0000")), 0,
                         "not 4 times the last frequency of 16 Hz"},
                        {"head alone", whole.substr(0, head), 0, "no record"},
                        {"no number", replaced(whole, " 3.000e-03", " 1.#QNAN  "), 4, ""},
                        {"other text", "some notes\non several\nlines\n", 0, "is of no known kind"},
                        {"records behind another head", "XX" + whole.substr(2), 0,
                         "is of no known kind: not EDI, EMTF XML, a Z or J file, Zonge raw or averages, "
                         "Em1dfm, a table of curves or fixed columns (DC in the first line)"},
                        {"AVG", "\\ AMTAVG 7.76\n$ ASPACE= 50.0m\n1024 1 2 3\n4\n5\n", 0, "no known kind"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const FileReport file = import(std::string(c.name) + ".res", c.text);
    EXPECT_EQ(file.readings, c.readings);
    EXPECT_NE(file.failure.find(c.reason), std::string::npos) << file.failure;
  }
  for (const char* field : {"     ", "none ", "1e99 "}) {
    std::string vague = whole;
    for (const std::size_t column : {47, 52, 61}) {
      vague.replace(column, 5, field);
    }
    EXPECT_EQ(import("vague.res", vague).readings, 4) << field;
    EXPECT_EQ(
        rows_in("FileTable WHERE SurveyFile = 'vague.res' AND DipoleLength = 0 AND StationSpacing = 0 AND "
                "Orientation = 0"),
        1)
        << "not known: '" << field << "'";
  }
  const Curve curve = stored("FileID = 3 AND DataType = 'ExHy'").curve;  // cut to its frequency
  ASSERT_EQ(curve.frequencies, (std::vector<float>{16, 1024}));
  EXPECT_EQ(curve.value(1, 1), 0.0F);
  EXPECT_EQ(curve.counts_at(1, 1), 0);
  EXPECT_TRUE(interface.take_messages().empty());
  choices.decode[decode_sample_rate].specified = "2048";
  EXPECT_EQ(import("rate.res", whole).readings, 0);
  EXPECT_TRUE(interface.take_messages().empty()) << "told in the report, without a message";
}
