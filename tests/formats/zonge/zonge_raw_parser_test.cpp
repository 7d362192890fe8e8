#include "formats/zonge/zonge_raw_parser.h"

#include <algorithm>
#include <numbers>

#include <gtest/gtest.h>

#include "tests/formats/edi/made_edi.h"
#include "tests/formats/zonge/made_zonge_raw.h"
#include "tests/support/temporary_folder.h"

using namespace formats::zonge;
using formats::FileReport;

namespace {

struct Parsed {
  std::vector<ZongeBlock> mt_blocks;
  FileReport report;

  [[nodiscard]] bool tells(const std::string& line) const {
    return std::ranges::find(report.account, line) != report.account.end();
  }
};

Parsed parse(const std::string& text) {
  const TemporaryFolder folder;
  Parsed parsed;
  LineReader reader(folder.write("a.raw", text));
  ZongeAccount account(parsed.report);
  ZongeRawParser parser(reader, account);
  ZongeBlock block;
  while (parser.next_block(block)) {
    if (block.type == ZongeBlockType::mt) {
      parsed.mt_blocks.push_back(block);
    }
  }
  return parsed;
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) {
    text += line + "\n";
  }
  return text;
}

// A block whose lines behind the type line are given.
std::string data_block(const std::string& lines) {
  return made_block(7, "CSAMT    2004-05-12 08:15:22 12.4v\n" + lines);
}

const char* const hy_line = "1 Hy 150 0.012 45 0 O 4\n";
const char* const ex_line = "2 Ex 150 12.3 785 105.5 O 16\n";

}  // namespace

TEST(Zonge_raw_parser, Tells_each_kind_of_block) {
  const std::string date = " 2004-05-12 08:15:22 12.4v\n";
  const auto block = [&](int number, const char* type, const char* line) {
    return made_block(number, std::string(type) + date + line + "\n");
  };
  const Parsed parsed =
      parse(block(1, "SYNC", "OPER 1") + block(2, "Sync", "Tx 1") + block(3, "SYNC", "1 2 3") +
            block(4, "CR", "oper 1") + block(5, "CRES", "TX 2 RX 3") + block(6, "RIP", "OPER 1") +
            block(7, "RIP", "Tx 1") + block(8, "TDIP", "OPER 1") + block(9, "tdip", "Tx 1") +
            block(10, "TEM", "OPER 1") + block(11, "NANOTEM", "Tx 1") + block(12, "CSAMT", "Tx ISys") +
            block(13, "RIP", "Tx ICal") + block(14, "DIAG", "Tx 1") + "0015\n0016\n");
  EXPECT_EQ(joined(parsed.report.account),
            "Block : 1 - Synchronisation Header Block\n"
            "Block : 2 - Synchronisation Block\n"
            "Block : 3 - Non-MT Block\n"
            "Block : 4 - Complex Resistivity Header Block\n"
            "Block : 5 - Complex Resistivity Block\n"
            "Block : 6 - Reference Phase IP Header Block\n"
            "Block : 7 - Reference Phase IP Block\n"
            "Block : 8 - Time Domain IP Header Block\n"
            "Block : 9 - Time Domain IP Block\n"
            "Block : 10 - Time Domain EM Block\n"
            "Block : 11 - Time Domain EM Block\n"
            "Block : 12 - System Check Block\n"
            "Block : 13 - Calibration Block\n"
            "Block : 14 - Non-MT Block\n"
            "Block : 15 - Non-MT Block\n"
            "Block : 16 - Non-MT Block\n");
  EXPECT_TRUE(parsed.mt_blocks.empty());
}

TEST(Zonge_raw_parser, Tells_what_is_set_up_and_each_change_of_it) {
  const Parsed parsed = parse(made_header(1) + made_csamt(2, 8.0, 100.0) +
                              replaced(made_header(3, "TEN", "50m"), "LINE 12", "Line Number= 14") +
                              replaced(made_csamt(4, 4096.0, 100.0), " 6 Ey", "! 6 Ey"));
  EXPECT_EQ(joined(parsed.report.account),
            "Block : 1 Survey Configuration is Vector\n"
            "Block : 1 A spacing is 100\n"
            "Block : 1 Line number is 12\n"
            "Block : 1 Gain for input 2 is 8\n"
            "Block : 1 Gain for input 1 is 2\n"
            "Block : 2 Frequency is 8\n"
            "Block : 2 Gain for input 2 has changed to 4\n"
            "Block : 2 Gain for input 3 is 8\n"
            "Block : 2 Gain for input 4 is 16\n"
            "Block : 2 Gain for input 5 is 1\n"
            "Block : 2 Gain for input 6 is 2\n"
            "Block : 2 Number of data channels is 6\n"
            "Block : 3 Survey Configuration has changed from Vector to : Tensor\n"
            "Block : 3 A spacing has changed to 50\n"
            "Block : 3 Line number has changed to 14\n"
            "Block : 3 Gain for input 2 has changed to 8\n"
            "Block : 4 Frequency has changed to 4096\n"
            "Block : 4 Gain for input 2 has changed to 4\n"
            "Block : 4 Channel Number is invalid ! on line : 37\n"
            "Block : 4 Number of data channels has changed to 5\n");
  ASSERT_EQ(parsed.mt_blocks.size(), 4U);
  EXPECT_EQ(parsed.mt_blocks[1].a_spacing, 100.0);
  EXPECT_EQ(parsed.mt_blocks[3].a_spacing, 50.0);
  EXPECT_TRUE(parsed.mt_blocks[2].is_header);
  EXPECT_FALSE(parsed.mt_blocks[3].is_header);
}

TEST(Zonge_raw_parser, Reads_lines_of_numbers_in_their_variants) {
  struct Case {
    const char* name;
    std::string lines;
    double frequency;
    double resistivity;  // of Ex at the first harmonic
    double phase;
  };
  const double degrees = 180.0 / std::numbers::pi;
  const Case cases[] = {
      {"plain", "8 Hz\n1 Hy 150 1 45 0 O 4\n2 Ex 150 12.3 44.5 105.5 O 16\n", 8.0, 105.5, 44.5},
      {"lower case, commas", "freq=8hz\n1,hy,150,1,45,0,out,4\n2,ex,150,12.3,44.5,105.5,in,16\n", 8, 105.5,
       44.5},
      {"units", "8Hz\n1 Hy 150m 1mV 45 0 O 4\n2 Ex 150 m 12.3 mV 785.4 mrad 0.1055kohm-m O 16\n", 8, 105.5,
       0.7854 * degrees},
      {"radians", "Base Frequency: 4.096kHz\n1 Hy 0 1 1 0 4\n2 Ex 0 1 0.5rad 1.5D+02 4\n", 4096, 150,
       0.5 * degrees},
      {"millihertz", "16 Cyc 125 mHz\n1 Hy 0 1 1 0 I 4\n2 Ex 0 1 -44 +9 I 4 1 2 3 4 5 6\n", 0.125, 9, -44},
      {"numbered components", "8 Hz\n1 Hy2 0 1 1 0 I 4\n2 Ex3 0 1 4 9 I 4\n", 8, 9, 4},
      {"blank lines, remark", "\n8 Hz 64 Bursts\nremark\n1 Hy 0 1 1 0 I 4\n\n\n2 Ex 0 1 4 9 I 4\n", 8, 9, 4},
      {"magnetic field behind", "8 Hz\n2 Ex 0 1 4 9 I 4\n1 Hy 0 1 1 0 I 4\n", 8, 9, 4},
      {"the later line", "8 Hz\n2 Ex 0 1 5 8 I 4\n2 Ex 0 1 4 9 I 4\n1 Hy 0 1 1 0 I 4\n", 8, 9, 4},
      {"names from a table", "Ch Gain Comp\n2 4 Ex\n1 4 Hy\n8 Hz\n1 0 1 1 0 I 4\n2 0 1 4 9 I 4\n", 8, 9, 4},
      {"names from keywords", "CH 2 EX GAIN 4\nch 1 S/N 12 NAME hy\n8 Hz\n1 0 1 1 0 I 4\n2 0 1 4 9 I 4\n", 8,
       9, 4},
      {"harmonic over the first", "8 Hz\n2 Ex 0 1 5 8 I 4\n1 Hy 0 1 1 0 I 4\nHARMONICS\n2 1 7 4 9\n", 8, 9,
       4},
      {"vertical field", "8 Hz 64 Bursts\n3 Hz 0 1 1 0 I 4\n1 Hy 0 1 1 0 I 4\n2 Ex 0 1 4 9 I 4\n", 8, 9, 4},
      {"vertical field in a table",
       "Ch Name Gain Notch S/N Passed\n1 Hy 4 60 9 38\n3 Hz 4 60 9 38\n2 Ex 4 60 9 38\n8 Hz\n"
       "1 0 1 1 0 I 4\n2 0 1 4 9 I 4\n3 Hz 0 1 1 0 O 4\n",
       8, 9, 4},
      {"numbers behind harmonics", "8 Hz\n1 Hy 0 1 1 0 I 4\nharmonics 1 3 1 1 1\nTx 1\n2 Ex 0 1 4 9 I 4\n", 8,
       9, 4},
  };
  for (const Case& c : cases) {
    for (const bool numbered : {true, false}) {
      SCOPED_TRACE(std::string(c.name) + (numbered ? ", numbered" : ""));
      const std::string text = data_block(c.lines);
      const Parsed parsed = parse(numbered ? text : text.substr(text.find('\n') + 1));
      ASSERT_EQ(parsed.mt_blocks.size(), 1U);
      const ZongeBlock& block = parsed.mt_blocks[0];
      EXPECT_EQ(block.fault, "");
      EXPECT_EQ(block.number, numbered ? 7 : 1);
      EXPECT_EQ(block.base_frequency, c.frequency);
      const auto ex = std::ranges::find(block.channels, "ExHy", &ZongeChannel::name);
      ASSERT_NE(ex, block.channels.end());
      EXPECT_DOUBLE_EQ(ex->values.at(0).resistivity, c.resistivity);
      EXPECT_DOUBLE_EQ(ex->values.at(0).phase, c.phase);
    }
  }
}

TEST(Zonge_raw_parser, Harmonics_are_numbers_or_frequencies) {
  const Parsed parsed = parse(data_block(
      "0.1 Hz\n1 Hy 5 1 1 0 I 4\n2 Ex 5 1 4 9 I 4\nHARMONICS\n2 Ex 3 1 5 10 0.7 Hz 1 7 14\n1 5 1 1 1\n"));
  ASSERT_EQ(parsed.mt_blocks.size(), 1U);
  EXPECT_EQ(parsed.mt_blocks[0].fault, "");
  EXPECT_EQ(parsed.mt_blocks[0].harmonics, (std::vector<double>{1, 3, 5, 7}));
  ASSERT_EQ(parsed.mt_blocks[0].channels.size(), 2U);
  EXPECT_EQ(parsed.mt_blocks[0].channels[1].values.size(), 3U);
}

TEST(Zonge_raw_parser, A_fault_drops_its_block_with_its_message) {
  struct Case {
    std::string lines;  // behind the type line, which is line 2
    const char* fault;
  };
  std::string many_harmonics = "8 Hz\n1 Hy 0 1 1 0 I 4\n";
  for (int harmonic = 2; harmonic <= 65; ++harmonic) {
    many_harmonics += "HARMONICS 1 " + std::to_string(harmonic) + " 1 1 1\n";
  }
  const std::string start = std::string("8 Hz\n") + hy_line;
  const Case cases[] = {
      {"A-SP x\n", "A Spacing is invalid : x on line : 3"},
      {"A-SP\n", "A Spacing is invalid :  on line : 3"},
      {"A SPACING -10\n", "A Spacing is not positive : -10 on line : 3"},
      {"A-SP: 0 m\n", "A Spacing is not positive : 0 on line : 3"},
      {"TIME 24:00:00\n", "Survey Time is invalid 24:00:00 on line : 3"},
      {"TIME 12:60\n", "Survey Time is invalid 12:60 on line : 3"},
      {"TIME 12\n", "Survey Time is invalid 12 on line : 3"},
      {"Battery low\n", "Survey Voltage is invalid low on line : 3"},
      {"Tx here Rx 1\n", "Transmitter location is invalid here on line : 3"},
      {"Tx 1 Rx there\n", "Receiver location is invalid there on line : 3"},
      {"FREQ none\n", "Base Frequency is invalid none on line : 3"},
      {"0 Hz\n", "Base Frequency is invalid 0 on line : 3"},
      {"-8 Hz\n", "Base Frequency is invalid -8 on line : 3"},
      {std::string(hy_line), "Base Frequency is invalid  on line : 1"},
      {"8 Hz x Bursts\n", "Number of Bursts is invalid  on line : 3"},
      {"8 Hz Stacks x\n", "Number of stacks is invalid x on line : 3"},
      {"Samples -1\n", "Number of samples is invalid -1 on line : 3"},
      {"Cyc x\n", "Number of Cycles is invalid x on line : 3"},
      {"Tx Curr x\n", "Transmitter Current is invalid x on line : 3"},
      {"S/N x\n", "S/N is invalid x on line : 3"},
      {"CH 1 GAIN 4 PASSED x\n", "Passed is invalid x on line : 3"},
      {"Ch S/N\n1 2\n2 x\n", "S/N is invalid x on line : 5"},
      {"8 Hz\n1.5 Hy 150 1 1 0 O 4\n", "Channel Number is invalid 1.5 on line : 4"},
      {"8 Hz\n65 Hy 150 1 1 0 O 4\n",
       "Invalid channel number 65 encountered : 65 Hy 150 1 1 0 O 4 on line : 4"},
      {"8 Hz\n0 Hy 150 1 1 0 O 4\n", "Invalid channel number 0 encountered : 0 Hy 150 1 1 0 O 4 on line : 4"},
      {start + "2 Ex 150 12.3 785\n",
       "Reading data line does not contain enough data 2 Ex 150 12.3 785 on line : 5"},
      {start + "2 Ex 150 12.3 785 10 O\n",
       "Reading data line does not contain enough data 2 Ex 150 12.3 785 10 O on line : 5"},
      {start + "2 Ex x 12.3 785 105.5 O 16\n", "Station is invalid x on line : 5"},
      {start + "2 Ex 150 x 785 105.5 O 16\n", "Magnitude value is invalid x on line : 5"},
      {start + "2 Ex 150 12.3 x 105.5 O 16\n", "Phase value is invalid x on line : 5"},
      {start + "2 Ex 150 12.3 785 ***** O 16\n", "Resistivity value is invalid ***** on line : 5"},
      {start + "2 Ex 150 12.3 785 105.5 O x\n", "Gain value is invalid x on line : 5"},
      {start + "2 Ex 150 12.3 785 105.5 O 16 x\n", "Standard Error value is invalid x on line : 5"},
      {start + "2 Ex 150 12.3 785 105.5 O 16 1 x\n", "Self Potential value is invalid x on line : 5"},
      {start + "2 Ex 150 12.3 785 105.5 O 16 1 2 x\n", "Contact Resistance value is invalid x on line : 5"},
      {start + "2 Ex 150 12.3 785 105.5 O 16 1 2 3 x\n", "External gain value is invalid x on line : 5"},
      {start + "2 Ex 150 12.3 785 1e999 O 16\n", "Resistivity value is invalid 1e999 on line : 5"},
      {start + "HARMONICS\n1 3 1 1\n", "Harmonic data line does not contain enough data 1 3 1 1 on line : 6"},
      {start + "HARMONICS\n1 x 1 1 1\n", "The AMT reading frequency is invalid x on line : 6"},
      {start + "HARMONICS\n1 -3 1 1 1\n", "The AMT reading frequency is invalid -3 on line : 6"},
      {start + "HARMONICS\n1 3 1 1 x\n", "Res1 value is invalid x on line : 6"},
      {start + "HARMONICS\n9 3 1 1 1\n", "Station is invalid  on line : 6"},
      {many_harmonics, "The AMT reading frequency is invalid 65 on line : 68"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.lines);
    const Parsed parsed = parse(data_block(c.lines) + made_csamt(8, 8.0, 100.0));
    ASSERT_EQ(parsed.mt_blocks.size(), 2U);
    EXPECT_EQ(parsed.mt_blocks[0].fault, c.fault);
    EXPECT_TRUE(parsed.tells(std::string("Block : 7 ") + c.fault));
    EXPECT_EQ(parsed.mt_blocks[1].fault, "");
    EXPECT_EQ(parsed.mt_blocks[1].channels.size(), 6U);
  }
  EXPECT_EQ(parse("0001\nCSAMT    2004-05-12 08:61:22 12.4v\n").mt_blocks.at(0).fault,
            "Survey Time is invalid 08:61:22 on line : 2");
  EXPECT_EQ(parse("0001\nCSAMT    2004-05-12 08:15:22 1x.4v\n").mt_blocks.at(0).fault,
            "Survey Voltage is invalid 1x.4v on line : 2");
}

TEST(Zonge_raw_parser, An_electric_channel_needs_its_magnetic_one) {
  const Parsed parsed = parse(data_block(std::string("8 Hz\n") + hy_line + ex_line + "3 Ey 150 1 1 1 O 1\n"));
  ASSERT_EQ(parsed.mt_blocks.size(), 1U);
  EXPECT_EQ(parsed.mt_blocks[0].fault, "");
  EXPECT_EQ(parsed.mt_blocks[0].channels[1].name, "ExHy");
  EXPECT_EQ(parsed.mt_blocks[0].channels[2].name, "Ey");
  EXPECT_TRUE(parsed.tells("Block : 7 Channel Ey has no matching Hx field on line : 6"));
}

TEST(Zonge_raw_parser, A_blank_line_ends_a_block_that_has_no_number) {
  const std::string lines = std::string("\n8 Hz\n") + hy_line + "\nSummary of the day\n" + ex_line;
  const std::string type = "AMT      2004-05-12 08:15:22 12.4v\n";
  const Parsed without = parse(type + lines);
  ASSERT_EQ(without.mt_blocks.size(), 1U);
  EXPECT_EQ(without.mt_blocks[0].channels.size(), 1U);
  EXPECT_EQ(without.report.account.back(), "Block : 2 - Non-MT Block");
  const Parsed with = parse("0001\n" + type + lines);
  ASSERT_EQ(with.mt_blocks.size(), 1U);
  EXPECT_EQ(with.mt_blocks[0].channels.size(), 2U);
  ASSERT_EQ(with.report.ignored.size(), 1U);
  EXPECT_EQ(with.report.ignored[0].text, "'Summary of the day' is not understood");
}

TEST(Zonge_raw_parser, Cut_at_any_byte_gives_no_value_that_the_whole_file_lacks) {
  const std::string text = made_header(1) + made_csamt(2, 8.0, 100.0) + made_csamt(3, 64.0, 400.0);
  std::vector<std::pair<double, double>> known;  // resistivity, phase
  for (const ZongeBlock& block : parse(text).mt_blocks) {
    for (const ZongeChannel& channel : block.channels) {
      known.emplace_back(channel.values.at(0).resistivity, channel.values.at(0).phase);
    }
  }
  ASSERT_EQ(known.size(), 12U);
  for (std::size_t size = 0; size < text.size(); ++size) {
    for (const ZongeBlock& block : parse(text.substr(0, size)).mt_blocks) {
      for (const ZongeChannel& channel : block.channels) {
        const std::pair value{channel.values.at(0).resistivity, channel.values.at(0).phase};
        ASSERT_NE(std::ranges::find(known, value), known.end()) << size;
      }
    }
  }
}

TEST(Zonge_raw_parser, Files_of_something_else_have_no_mt_blocks) {
  for (const std::string& text : {std::string(), std::string("\n\r\n\n"), std::string("0001"),
                                  std::string(5000, '7'), std::string(1000, '\xff'), made_edi()}) {
    EXPECT_TRUE(parse(text).mt_blocks.empty());
  }
}
