#include "formats/edi/edi_parser.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/absent_value.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/support/temporary_folder.h"

using namespace formats::edi;
using formats::FileReport;
using formats::ReportRemark;

namespace {

struct Parsed {
  std::vector<EdiSection> sections;
  FileReport report;
};

class EdiParser : public ::testing::Test {
 protected:
  Parsed parse(const std::string& text) const {
    Parsed parsed;
    LineReader reader(folder_.write("made.edi", text));
    EdiMtParser parser(reader, parsed.report);
    EdiSection section;
    while (parser.next_section(section)) {
      parsed.sections.push_back(section);
    }
    return parsed;
  }

  TemporaryFolder folder_;
};

using Values = std::vector<float>;

bool mentions(const std::vector<ReportRemark>& remarks, const std::string& text) {
  for (const ReportRemark& remark : remarks) {
    if (remark.text.find(text) != std::string::npos) {
      return true;
    }
  }
  return false;
}

}  // namespace

TEST_F(EdiParser, Reads_the_same_from_every_spelling_of_a_file) {
  const std::string plain = made_edi();
  const std::string cases[] = {
      plain,
      replaced(plain, "\n", "\r"),
      replaced(plain, "\n", "\r\n"),
      "\xEF\xBB\xBF" + plain,
      plain.substr(0, plain.size() - 1),
      replaced(plain, "1 2 3", "1.D0\t2.0d+00\t+3.0E0"),
      replaced(plain, "1 2 3", "\n1,2\n\n  3;\n\n"),
      replaced(plain, "1 2 3", "1\n>! in between !\n2\n!****!\n3"),
      replaced(replaced(plain, ">RHOXY //3", ">rhoxy rot=none//3"), "NFREQ", "nfreq"),
      replaced(replaced(plain, ">", "  >"), "NFREQ=", "NFREQ  =   "),
      replaced(plain, "//3", "// 17 values follow"),
      replaced(plain, "  NFREQ=3\n", "  NFREQ=3\n>!**** DEFAULTS ****!\n"),
  };
  for (const std::string& text : cases) {
    SCOPED_TRACE(text);
    const Parsed parsed = parse(text);
    ASSERT_EQ(parsed.sections.size(), 1U);
    const EdiSection& section = parsed.sections[0];
    EXPECT_EQ(section.frequencies, (Values{100, 10, 1}));
    EXPECT_EQ(section.get(element_xy, quantity_resistivity).values, (Values{1, 2, 3}));
    EXPECT_EQ(section.get(element_xy, quantity_phase).values, (Values{45, -45, 30}));
    EXPECT_FALSE(section.get(element_yx, quantity_phase).present);
    EXPECT_EQ(section.SECTID, "12");
    ASSERT_TRUE(section.local_hx);
    EXPECT_EQ(section.local_hx->X, 11.0);
    EXPECT_EQ(section.local_hx->Y, 22.0);
    EXPECT_EQ(section.local_hx->AZM, 12.5);
    EXPECT_FALSE(parsed.report.has_remarks());
  }
}

TEST_F(EdiParser, Takes_odd_values_and_reports_them) {
  struct Case {
    const char* written;
    float taken;
    bool reported;
  };
  const Case cases[] = {
      {"1.0e+32", no_data, false},
      {"0.1000000E+33", no_data, false},
      {"-1e31", no_data, false},
      {"1.000000e+032", no_data, false},
      {"9.9e29", 9.9e29F, false},
      {"1e999", no_data, false},
      {"1e-999", 0.0F, false},
      {"NaN", no_data, true},
      {"-inf", no_data, true},
      {"*****", no_data, true},
      {"abc", no_data, true},
      {"12.5x", no_data, true},
      {"1.#QNAN", no_data, true},
      {"1.#INF", no_data, true},
      {"-1.#IND", no_data, true},
      {"1e", no_data, true},
      {"1.5-", no_data, true},
      {"2019-10-21", no_data, true},
      {"-.5D-1", -0.05F, false},
      {"1.5-101", 0.0F, false},
      {"-2.5-003", -0.0025F, false},
      {"+2.5+002", 250.0F, false},
      {"1.5+101", no_data, false},
      {"7.", 7.0F, false},
      {"1.2345678901234567890123456789012345678901234567890123456789012345678901234567", 1.2345679F, false}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.written);
    const Parsed parsed = parse(replaced(made_edi(), "1 2 3", std::string("1 2\n") + c.written));
    ASSERT_EQ(parsed.sections.size(), 1U);
    EXPECT_EQ(parsed.sections[0].get(element_xy, quantity_resistivity).values, (Values{1, 2, c.taken}));
    ASSERT_EQ(parsed.report.unreadable.size(), c.reported ? 1U : 0U);
    if (c.reported) {
      EXPECT_EQ(parsed.report.unreadable[0].line, 26);
      EXPECT_NE(parsed.report.unreadable[0].text.find(c.written), std::string::npos);
    }
  }
}

TEST_F(EdiParser, Ends_a_block_at_the_next_tag) {
  const Parsed missing = parse(replaced(made_edi(), "1 2 3", "1 2"));
  EXPECT_EQ(missing.sections.at(0).get(element_xy, quantity_resistivity).values, (Values{1, 2, no_data}));
  EXPECT_EQ(missing.sections.at(0).get(element_xy, quantity_phase).values, (Values{45, -45, 30}));
  EXPECT_TRUE(mentions(missing.report.unreadable, "2 of 3 values"));

  const Parsed surplus = parse(replaced(made_edi(), "1 2 3", "1 2 3 4\n5"));
  EXPECT_EQ(surplus.sections.at(0).get(element_xy, quantity_resistivity).values, (Values{1, 2, 3}));
  EXPECT_TRUE(mentions(surplus.report.ignored, "2 values of block >RHOXY beyond"));
}

TEST_F(EdiParser, Matches_tags_whole_and_lets_the_last_block_win) {
  MadeSection section;
  section.blocks =
      ">RHOXY.FIT //3\n7 7 7\n>RHOXY.ERR //3\n4 5 6\n>ZXY.VAR //3\n1 2 3\n>RHOXY.ERR //3\n8 8 8\n"
      ">RHOXY //3\n1 2 3\n>ZROT //3\n0 0 0\n>COH MEAS1=1 //3\n1 1 1\n";
  const Parsed parsed = parse(made_edi({section}));
  const EdiSection& read = parsed.sections.at(0);
  EXPECT_EQ(read.get(element_xy, quantity_resistivity).values, (Values{1, 2, 3}));
  EXPECT_EQ(read.get(element_xy, quantity_resistivity_error).values, (Values{8, 8, 8}));
  EXPECT_EQ(read.get(element_xy, quantity_variance).values, (Values{1, 2, 3}));
  EXPECT_GT(read.get(element_xy, quantity_resistivity_error).block,
            read.get(element_xy, quantity_variance).block);
  EXPECT_TRUE(mentions(parsed.report.ignored, ">RHOXY.FIT is not used"));
  EXPECT_TRUE(mentions(parsed.report.ignored, ">COH is not used"));
  EXPECT_TRUE(mentions(parsed.report.ignored, ">RHOXY.ERR comes again"));
  EXPECT_EQ(parsed.report.ignored.size(), 3U);
}

TEST_F(EdiParser, Counts_frequencies_where_the_head_does_not) {
  for (const char* count :
       {"", "  NFREQ=\n", "  NFREQ=-3\n", "  NFREQ=2000000000\n", "  NFREQ=1e300\n", "  NFREQ=0\n"}) {
    SCOPED_TRACE(count);
    const Parsed parsed = parse(replaced(made_edi(), "  NFREQ=3\n", count));
    ASSERT_EQ(parsed.sections.size(), 1U);
    EXPECT_EQ(parsed.sections[0].frequencies.size(), 3U);
    EXPECT_EQ(parsed.sections[0].get(element_xy, quantity_resistivity).values, (Values{1, 2, 3}));
  }
  const Parsed none = parse(replaced(made_edi(), ">FREQ //3\n100. 10. 1.\n", ""));
  EXPECT_TRUE(none.sections.at(0).frequencies.empty());
  EXPECT_TRUE(none.sections.at(0).get(element_xy, quantity_resistivity).values.empty());
  EXPECT_TRUE(mentions(none.report.unreadable, "no >FREQ"));
}

TEST_F(EdiParser, A_nul_byte_costs_no_more_than_its_value) {
  const Parsed parsed = parse(replaced(made_edi(), "1 2 3", std::string("1 2\0 3", 6)));
  ASSERT_EQ(parsed.sections.size(), 1U);
  EXPECT_EQ(parsed.sections[0].get(element_xy, quantity_resistivity).values, (Values{1, no_data, 3}));
  EXPECT_EQ(parsed.sections[0].get(element_xy, quantity_phase).values, (Values{45, -45, 30}));
  EXPECT_TRUE(mentions(parsed.report.unreadable, "'2?' is not a number, taken as absent"));
}

TEST_F(EdiParser, Values_behind_a_hole_of_nul_bytes_do_not_move) {
  const Parsed parsed = parse(replaced(made_edi(), "1 2 3", std::string(9, '\0') + " 3"));
  ASSERT_EQ(parsed.sections.size(), 1U);
  EXPECT_EQ(parsed.sections[0].get(element_xy, quantity_resistivity).values,
            (Values{no_data, no_data, no_data}));
  EXPECT_TRUE(mentions(parsed.report.unreadable, "so all of it is absent"));
}

TEST_F(EdiParser, Decimal_commas_are_named_and_nothing_of_them_is_taken) {
  const std::string plain = made_edi();
  const std::string cases[] = {
      replaced(plain, "100. 10. 1.", "1,0E+02 1,0E+01 1,0E+00"), replaced(plain, "1 2 3", "1,5 2,5 0"),
      replaced(plain, "45 -45 30", "45,25\n-45,5\n30,0\n"),
      replaced(replaced(plain, "  NFREQ=3\n", ""), "100. 10. 1.", "100,5 10,25 1,5")};
  for (const std::string& text : cases) {
    SCOPED_TRACE(text);
    const Parsed parsed = parse(text);
    EXPECT_TRUE(parsed.sections.empty());
    EXPECT_NE(parsed.report.failure.find("has a decimal comma"), std::string::npos) << parsed.report.failure;
    EXPECT_NE(parsed.report.failure.find("section 1 is not stored"), std::string::npos);
  }
  // Lists with commas, of whole numbers or not, stay lists.
  for (const char* list : {"1,2,3", "1.5,2.5,3", "1,2\n3", "1, 2, 3", "1.,2. 3."}) {
    SCOPED_TRACE(list);
    const Parsed parsed = parse(replaced(plain, "1 2 3", list));
    ASSERT_EQ(parsed.sections.size(), 1U);
    EXPECT_EQ(parsed.sections[0].get(element_xy, quantity_resistivity).values.size(), 3U);
    EXPECT_FALSE(parsed.report.has_remarks());
  }
}

TEST_F(EdiParser, Text_of_the_info_block_is_no_section) {
  const std::string plain = made_edi();
  const std::string info =
      ">INFO\n  The impedances stand in\n>=MTSECT\n  NFREQ=7\n>=SPECTRASECT of another file, >FREQ and\n"
      ">FREQ\n 1 2 3\n>END\n";
  const Parsed parsed = parse(replaced(plain, ">=DEFINEMEAS", info + ">=DEFINEMEAS"));
  ASSERT_EQ(parsed.sections.size(), 1U);
  EXPECT_EQ(parsed.sections[0].SECTID, "12");
  EXPECT_EQ(parsed.sections[0].frequencies, (Values{100, 10, 1}));
  EXPECT_TRUE(parsed.sections[0].local_hx);
  EXPECT_FALSE(parsed.report.has_remarks());
  // Without definitions behind it the text ends where a section begins.
  const std::string no_definitions = replaced(
      plain.substr(0, plain.find(">=DEFINEMEAS")) + ">INFO\n words\n" + plain.substr(plain.find(">=MTSECT")),
      "\n", "\r\n");
  EXPECT_EQ(parse(no_definitions).sections.size(), 1U);
}

TEST_F(EdiParser, Names_channels_that_the_head_does_not_define) {
  const Parsed parsed =
      parse(replaced(replaced(made_edi(), "  HY=2.001", "  HY=7.001"), "  RX=5.001", "  RX=8.001"));
  ASSERT_EQ(parsed.sections.size(), 1U);
  ASSERT_EQ(parsed.report.unreadable.size(), 2U);
  EXPECT_EQ(parsed.report.unreadable[0].line, 17);
  EXPECT_EQ(parsed.report.unreadable[0].text, "HY='7.001' has no >HMEAS or >EMEAS");
  EXPECT_EQ(parsed.report.unreadable[1].text, "RX='8.001' has no >HMEAS or >EMEAS");
}

TEST_F(EdiParser, Ids_of_channels_that_differ_in_zeros_are_the_same) {
  const Parsed parsed = parse(replaced(made_edi(), "  HX=1.001", "  HX=01.0010"));
  ASSERT_EQ(parsed.sections.size(), 1U);
  EXPECT_TRUE(parsed.report.unreadable.empty());
  ASSERT_TRUE(parsed.sections[0].local_hx);
  EXPECT_EQ(parsed.sections[0].local_hx->AZM, 12.5);
  // Unless the very same text is there: these are two sensors.
  const std::vector<EdiChannel> two{{.ID = "1.1", .CHTYPE = "HY"}, {.ID = "1.10", .CHTYPE = "HX"}};
  ASSERT_NE(find_channel(two, "1.10"), nullptr);
  EXPECT_EQ(find_channel(two, "1.10")->CHTYPE, "HX");
  EXPECT_EQ(find_channel(two, "1.100")->CHTYPE, "HY");
  EXPECT_EQ(find_channel(two, "2"), nullptr);
}

// Whatever is cut off, each section is given whole or not at all.
TEST_F(EdiParser, Gives_whole_sections_of_a_file_cut_at_any_byte) {
  const std::string whole = made_edi({MadeSection{}, MadeSection{.sectid = "13"}});
  const std::size_t second_section = whole.rfind(">=MTSECT");
  const std::size_t last_value = whole.rfind("30") + 1;
  for (std::size_t length = 0; length < whole.size(); ++length) {
    SCOPED_TRACE(length);
    const Parsed parsed = parse(whole.substr(0, length));
    for (const EdiSection& section : parsed.sections) {
      EXPECT_EQ(section.frequencies.size(), 3U);
      for (const auto& element : section.elements) {
        for (const EdiValues& values : element) {
          EXPECT_TRUE(!values.present || values.values.size() == 3U);
        }
      }
    }
    if (length > second_section) {
      ASSERT_GE(parsed.sections.size(), 1U);
      EXPECT_EQ(parsed.sections[0].get(element_xy, quantity_phase).values, (Values{45, -45, 30}));
    }
    EXPECT_EQ(parsed.sections.size() == 2U,
              length >= second_section && parsed.report.failure.empty() && length > second_section + 8);
    if (length > last_value) {
      EXPECT_EQ(parsed.sections.size(), 2U);
    }
  }
}
