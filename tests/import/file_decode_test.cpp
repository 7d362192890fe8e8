#include "import/file_decode.h"

#include <gtest/gtest.h>

#include "core/calendar.h"
#include "formats/head_dates.h"
#include "import/natural_order.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/import/made_site_files.h"
#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

using namespace Module_data_file;
using formats::FileReport;
using formats::head_date;

namespace {

ReadingRecord good_record() {
  ReadingRecord record;
  record.choices.ReferenceType = 0;
  record.choices.ReductionType = 0;
  record.choices.decode[decode_line_number].specified = "200";
  record.choices.decode[decode_event].specified = "1";
  record.choices.decode[decode_sample_rate].specified = "0.1";
  return record;
}

}  // namespace

TEST(Decode_line, Gives_the_normal_form) {
  struct Case {
    const char* text;
    LineDirection direction;
    const char* line;
    double number;
  };
  const Case cases[] = {
      {"-200", LineDirection::local_east, "200W", -200},   {"200", LineDirection::local_east, "200E", 200},
      {"-200", LineDirection::local_north, "200S", -200},  {"200", LineDirection::local_north, "200N", 200},
      {"200S", LineDirection::local_east, "200S", -200},   {"-200S", LineDirection::local_east, "200N", -200},
      {"-200W", LineDirection::local_north, "200E", -200}, {"12.5E", LineDirection::local_east, "13E", 12.5}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    double number = 0;
    std::string line;
    EXPECT_EQ(decode_line(ShowFault::yes, c.text, c.direction, number, line), 0);
    EXPECT_EQ(line, c.line);
    EXPECT_EQ(number, c.number);
  }
}

TEST(Decode_line, Names_the_fault) {
  RecordingInterface interface;
  const std::pair<const char*, const char*> cases[] = {
      {"12a4", "The supplied Line number is not valid"},
      {"200X", "The supplied Line number suffix is not valid"},
      {"W", "The supplied Line number value is not valid"},
      {"a2W", "The supplied Line number value is not valid"}};
  for (const auto& [text, message] : cases) {
    double number = 7;
    std::string line = "as before";
    EXPECT_EQ(decode_line(ShowFault::yes, text, LineDirection::local_east, number, line), -1);
    EXPECT_EQ(interface.take_messages(), std::vector<std::string>{message});
    EXPECT_EQ(decode_line(ShowFault::no, text, LineDirection::local_east, number, line), -1);
    EXPECT_TRUE(interface.take_messages().empty());
    EXPECT_EQ(line, "as before");
  }
}

TEST(Decode_file_format, Stops_at_the_first_fault) {
  RecordingInterface interface;
  struct Case {
    void (*change)(ImportChoices&);
    const char* message;
  };
  const Case cases[] = {
      {[](ImportChoices& c) { c.ReferenceType = c.ReductionType = -1; },
       "You have not specified a data type"},
      {[](ImportChoices& c) { c.ReductionType = -1; }, "You have not specified the data reduction"},
      {[](ImportChoices& c) { c.decode[0] = {.use_file_name = true, .width = 3, .specified = ""}; },
       "The start column for Line Number is invalid"},
      {[](ImportChoices& c) { c.decode[1] = {.use_file_name = true, .start_column = 1, .specified = ""}; },
       "The column width for Event is invalid"},
      {[](ImportChoices& c) { c.decode[0].specified.clear(); },
       "The specified value for Line Number is invalid"},
      {[](ImportChoices& c) { c.decode[1].specified = "-1"; }, "The specified event value is invalid"},
      {[](ImportChoices& c) { c.decode[2].specified = "fast"; }, "The specified Sample Rate is invalid"},
      {[](ImportChoices& c) { c.decode[0].specified = "1e999E"; },
       "The supplied Line number value is not valid"},
      {[](ImportChoices& c) { c.decode[2].specified = "1e39"; }, "The specified Sample Rate is invalid"},
      {[](ImportChoices& c) { c.decode[2].specified = "-1"; }, "The Sample Rate cannot be negative"},
      {[](ImportChoices& c) { c.decode[2].specified = "0"; },
       "The Sample Rate cannot be zero for non-merged data"},
  };
  for (const Case& c : cases) {
    ReadingRecord record = good_record();
    c.change(record.choices);
    EXPECT_EQ(decode_file_format(ShowFault::yes, record), -1);
    EXPECT_EQ(interface.take_messages(), std::vector<std::string>{c.message});
  }
  ReadingRecord merged = good_record();
  merged.choices.ReductionType = 2;
  merged.choices.decode[decode_sample_rate].specified = "0";
  merged.choices.decode[decode_event] = {
      .use_file_name = true, .start_column = 1, .width = 1, .specified = ""};
  EXPECT_EQ(decode_file_format(ShowFault::yes, merged), 0);
}

TEST(Display_file_format, Tells_formats_and_dates_apart) {
  const TemporaryFolder folder;
  struct Case {
    std::string text;
    std::int32_t format;
    const char* date;
  };
  const Case cases[] = {
      {made_edi(), format_edi_mt, "22-Oct-2019"},
      {replaced(made_edi(), "  UNITS", "  FILEBY=\"Brenlox 1.0\"\n  UNITS"), format_edi_mt, "21-Oct-2019"},
      {replaced(made_edi(), ">=DEFINEMEAS", ">INFO\nPROGVERS=\"Brenlox 1.0\"\n>=DEFINEMEAS"), format_edi_mt,
       "22-Oct-2019"},
      {"\n  >head\n filedate = \"10/21/49\"\n>=spectrasect\n", format_edi_spectra, "21-Oct-2049"},
      {">HEAD\nFILEDATE=13/32/50\n>=MTSECT\n", format_edi_mt, "01-Feb-1951"},
      {">HEAD\nFILEDATE=April 03, 2011\n>=MTSECT\n", format_edi_mt, "03-Apr-2011"},
      {">HEAD\nFILEDATE=Avril 03, 2011\n>=MTSECT\n", format_edi_mt, "01-Jan-1900"},
      {">HEAD\n>INFO\n>=SPECTRASECT\n>=DEFINEMEAS\n>=MTSECT\n", format_edi_mt, "01-Jan-1900"},
      {">HEAD\n>INFO\n words\n>=SPECTRASECT\n>SPECTRA\n", format_edi_spectra, "01-Jan-1900"},
      {">HEAD\nnothing else\n", format_unknown, "01-Jan-1900"},
      {"X20190704XXXX20190705       1250.4 DC\n", format_fixed_columns, "01-Jan-1900"},
      {"DC20190704   20190705        1250.4\n", format_fixed_columns, "04-Jul-2019"},
      {"DC99991231   20190705        1250.4\n", format_fixed_columns, "31-Dec-9999"},
      {" 1234\n\n1234567892001-02-03\n", format_zonge_raw, "03-Feb-2001"},
      {" 1234\n\n1234567890001-02-03\n", format_zonge_raw, "03-Feb-0001"},
      {" 1234\n\n1234567890000-02-03\n", format_zonge_raw, "01-Jan-1900"},
      {" 1234\n\n123456789-001-02-03\n", format_zonge_raw, "01-Jan-1900"},
      {"x,y,rho\n1,2,3\n", format_unknown, "01-Jan-1900"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    ReadingRecord record = good_record();
    SampleFields sample;
    FileReport report;
    display_file_format(folder.write("L200_07_24.edi", c.text), record, sample, report);
    EXPECT_EQ(record.file_format, c.format);
    if (c.format != format_fixed_columns || std::string(c.date) != "01-Jan-1900") {
      EXPECT_EQ(sample.date, c.date);
    }
  }
  ReadingRecord record = good_record();
  SampleFields sample;
  FileReport report;
  EXPECT_THROW(display_file_format(folder.write("L200_07_24.edi", " \n"), record, sample, report),
               std::runtime_error);
}

// What stands in the first lines tells a format, before the DC that fixed columns have in theirs.
TEST(Display_file_format, Tells_exchange_formats_by_their_content) {
  const TemporaryFolder folder;
  const std::string xml = made_emtf_xml();
  const std::string z = made_z_file();
  const std::string j = made_j();
  const std::string plain_avg =
      "\\ AMTAVG 7.76: \"DC1.fld\"\n$ ASPACE= 50.0m\n"
      "skp Station Freq Comp Amps Emag Ephz Hmag Hphz Resistivity Phase\n2 1 8192 ExHy 5 1 1 1 1 1 1\n";
  const std::string table =
      "line,station,data_type,frequency_Hz,resistivity_ohm_m,phase_deg\n100E,1,ExHy,1,100,45\n";
  std::string utf16 = "\xFF\xFE";
  for (const char byte : xml + std::string(40000, '\n')) {  // more than the reader takes at once
    utf16 += std::string{byte, '\0'};
  }
  struct Case {
    const char* name;
    std::string text;
    std::int32_t format;
  };
  const Case cases[] = {
      {"XML", xml, format_emtf_xml},
      {"behind a mark", "\xEF\xBB\xBF" + xml, format_emtf_xml},
      {"UTF-16", utf16, format_emtf_xml},
      {"blank lines", "\n \r\n" + xml.substr(xml.find("<EM_TF")), format_emtf_xml},
      {"behind comments", replaced(xml, "<EM_TF>", "<!-- DC\n" + std::string(3000, '-') + "\n-->\n<EM_TF>"),
       format_emtf_xml},
      {"in one line", replaced(xml, "\n", " "), format_emtf_xml},
      {"other XML", "<?xml version=\"1.0\"?>\n<kml>\nZXY\n3\n</kml>\n", format_unknown},
      {"Z", z, format_z_file},
      {"Z with DC in its title", replaced(z, "TRANSFER FUNCTIONS", "DC TRANSFER FUNCTIONS"), format_z_file},
      {"Z with another title", replaced(z, "TRANSFER FUNCTIONS IN MEASUREMENT", "RESULTS IN LOCAL"),
       format_z_file},
      {"notes with a title's words", "Transfer functions in this folder are DC coupled.\n",
       format_fixed_columns},
      {"J", j, format_j},
      {"J of a site DC100", "DC100\n" + j, format_j},
      {"J with a number for a name", "1234\nRXY\n2\n1 100 45\n", format_j},
      {"J behind many comments",
       std::string(500, '#') + "\n" + replaced(std::string(300, 'x'), "x", "# DC\n") + j, format_j},
      {"J without a count", "DATA\nRXY\n2.5\n", format_unknown},
      {"average", plain_avg, format_zonge_avg},
      {"average by keywords", "$Survey.Type=CSAMT\n$Rx.Cmp = ExHy\n", format_zonge_avg},
      {"table", table, format_curve_table},
      {"table behind a mark", "\xEF\xBB\xBF" + table, format_curve_table},
      {"a line of a megabyte", std::string(1U << 20U, 'z') + "\n" + j, format_unknown}};
  RecordingInterface interface;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ReadingRecord record = good_record();
    SampleFields sample;
    FileReport report;
    display_file_format(folder.write("field.dat", c.text), record, sample, report);
    EXPECT_EQ(record.file_format, c.format);
  }
}

TEST(Display_file_format, Cuts_line_event_and_rate_from_the_name) {
  const TemporaryFolder folder;
  ReadingRecord record = good_record();
  record.choices.decode[decode_line_number] = {
      .use_file_name = true, .start_column = 1, .width = 5, .specified = ""};
  record.choices.decode[decode_event] = {
      .use_file_name = true, .start_column = 6, .width = 2, .specified = ""};
  record.choices.decode[decode_sample_rate] = {
      .use_file_name = true, .start_column = 9, .width = 20, .specified = ""};
  SampleFields sample;
  FileReport report;
  display_file_format(folder.write("L\xC3\xA9 2 07_.5.edi", made_edi()), record, sample, report);
  EXPECT_EQ(record.LineNumber, "L\xC3\xA9 2");
  EXPECT_EQ(record.EventNumber, 7);
  EXPECT_EQ(sample.rate, ".5.edi");
  EXPECT_EQ(record.SampleRate, 0.0F);
  EXPECT_EQ(report.unreadable.size(), 1U);
}

TEST(Head_date, Reads_each_form) {
  const std::pair<const char*, std::optional<double>> cases[] = {
      {"10/21/19", day_count(2019, 10, 21)},
      {"08/17/14 04:58", day_count(2014, 8, 17)},
      {"01/02/98", day_count(1998, 1, 2)},
      {"1/2/2003", day_count(2003, 1, 2)},
      {"2014/03/04T17:14:43", day_count(2014, 3, 4)},
      {"2021-12-17", day_count(2021, 12, 17)},
      {"\"07/01/19\"", day_count(2019, 7, 1)},
      {"02/30/2020", day_count(2020, 3, 1)},
      {"2020-13-05", std::nullopt},
      {"2020-02-31", std::nullopt},
      {"02/29/2020", day_count(2020, 2, 29)},
      {"None", std::nullopt},
      {"", std::nullopt},
      {"May 18, 2010", day_count(2010, 5, 18)},
      {"18-may-10", day_count(2010, 5, 18)},
      {"\"18 May 2010 04:58\"", day_count(2010, 5, 18)},
      {"18.SEPT.1998", day_count(1998, 9, 18)},
      {"2011/Sep/03", day_count(2011, 9, 3)},
      {"Sun Apr  3 12:00:01 2011", day_count(2011, 4, 3)},
      {"03APR2011", day_count(2011, 4, 3)},
      {"32 May 2010", std::nullopt},
      {"31 Feb 2010", std::nullopt},
      {"0 May 2010", std::nullopt},
      {"May 2010", std::nullopt},
      {"Ma 3 2010", std::nullopt},
      {"Maybe 3 2010", std::nullopt},
      {"3 May 123", std::nullopt},
      {"1/2", std::nullopt},
      {"1/2/99999", std::nullopt}};
  for (const auto& [text, days] : cases) {
    SCOPED_TRACE(text);
    EXPECT_EQ(head_date(text), days);
  }
  EXPECT_EQ(day_count(1900, 1, 1), start_date);
  EXPECT_EQ(day_count(2012, 2, 29), 40968.0);  // as every spreadsheet counts
  EXPECT_EQ(criterion_date(40968.0), "02/29/2012");
}

TEST(Natural_order, Counts_as_people_do) {
  const char* const ordered[] = {"a/l2.edi",  "a/L10.edi", "a/l10b.edi", "a/b/1.edi",
                                 "b/001.edi", "b/1.edi",   "b/1a.edi",   "b10/1"};
  for (std::size_t i = 0; i < std::size(ordered); ++i) {
    for (std::size_t j = 0; j < std::size(ordered); ++j) {
      EXPECT_EQ(comes_before_naturally(ordered[i], ordered[j]), i < j) << ordered[i] << " " << ordered[j];
    }
  }
}
