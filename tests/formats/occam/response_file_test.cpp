// Responses with and without a header.
#include "formats/occam/response_file.h"

#include "core/absent_value.h"
#include "tests/formats/occam/made_run.h"

namespace Module_occam {
namespace {

using Row = OccamResponse::Row;
constexpr Row absent{no_data, no_data, no_data, no_data};

const std::string failed = "An error occurred while reading the response file: ";

// The values of made::data's rows: the column behind the datum is the residual, then the modelled value.
const std::string residuals =
    "1.0 1.0 5.0 0.0 2.0000  0.2000  2.0\n"
    "1.0 1.0 6.0 0.0 45.000 -4.0000 -2.0\n"
    "2.0 2.0 5.0 0.0 3.0000  0.1000  1.0\n"
    "2.0 2.0 6.0 0.0 30.000  1.0000  0.5\n";
const std::string modelled =
    "1.0 1.0 5.0 0.0 2.0000  1.8000  2.0\n"
    "1.0 1.0 6.0 0.0 45.000  49.000 -2.0\n"
    "2.0 2.0 5.0 0.0 3.0000  2.9000  1.0\n"
    "2.0 2.0 6.0 0.0 30.000  29.000  0.5\n";

class ResponseFileTest : public made::OccamTest {
 protected:
  int read(const std::string& rows, const std::string& data = made::data) {
    (void)folder.write("occamdat", data);
    return read_file(folder.write("RESP07.resp", rows));
  }
  int read_file(const std::string& path) {
    return read_occam_response(path, folder.path("occamdat"), response);
  }

  void expect_row(DataType type, int site, int frequency, const Row& expected) const {
    SCOPED_TRACE(testing::Message() << data_type_name(type) << " site " << site << " frequency "
                                    << frequency);
    const Row row = response.row(type, site, frequency);
    for (std::size_t value = 0; value < expected.size(); ++value) {
      EXPECT_FLOAT_EQ(row[value], expected[value]);
    }
  }

  OccamResponse response;
};

TEST_F(ResponseFileTest, Names_follow_the_iteration_file) {
  const std::pair<const char*, const char*> cases[] = {{"ITER12.iter", "RESP12.resp"},
                                                       {"ITER12.ITER", "RESP12.resp"},
                                                       {"/run.d/ITER_07", "RESP_ITER_07.out"},
                                                       {"ITER07.txt", "RESP_ITER07.out"},
                                                       {"abc.iter", "RESP.resp"},
                                                       {"C:\\run\\ITER1.Iter", "RESP1.resp"}};
  for (const auto& [iteration, name] : cases) {
    EXPECT_EQ(response_file_name(iteration), name);
  }
}

TEST_F(ResponseFileTest, Without_a_header_the_data_file_has_sites_and_frequencies) {
  ASSERT_EQ(read(residuals), 0);
  EXPECT_EQ(response.resp_site_names, (std::vector<std::string>{"station_110.0", "station_130.0"}));
  EXPECT_EQ(response.resp_offsets, (std::vector<double>{110, 130}));
  EXPECT_EQ(response.resp_frequencies, (std::vector<double>{1, 10}));
  expect_row(DataType::tm_resistivity, 1, 1, {2.0F, 0.2F, 1.8F, 2.0F});
  expect_row(DataType::tm_phase, 2, 2, {30.0F, 1.0F, 29.0F, 0.5F});
  expect_row(DataType::tm_resistivity, 1, 2, absent);
  expect_row(DataType::tm_phase, 0, 0, absent);
  EXPECT_FLOAT_EQ(response.value(ResponseValue::modelled, DataType::tm_phase, 1, 1), 49.0F);
}

TEST_F(ResponseFileTest, Modelled_values_after_the_datum_are_read_as_such_once_proven) {
  struct Case {
    const char* name;
    std::string rows;
    std::string data;
    Row first;  // resistivity of the first site
  };
  const Row as_modelled{2.0F, 0.2F, 1.8F, 2.0F};
  const Row as_residual{2.0F, 1.8F, 0.2F, 2.0F};
  const Case cases[] = {
      {"proven", modelled, made::data, as_modelled},
      {"a labelled data file of another program", modelled,
       made::replaced(made::replaced(made::data, "SITES  ", "SITES: "), "FREQUENCIES  ", "FREQUENCIES: "),
       as_modelled},
      {"one row in four speaks against it", made::replaced(modelled, "29.000  0.5", "28.000  0.5"),
       made::data, as_residual},
      {"no errors to prove it with", modelled,
       made::data.substr(0, made::data.find("     2           2       6")), as_residual},
      {"errors of other data", modelled,
       made::replaced(made::data, "     2           2       6", "     2           1       6"), as_residual}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ASSERT_EQ(read(c.rows, c.data), 0);
    expect_row(DataType::tm_resistivity, 1, 1, c.first);
  }
}

TEST_F(ResponseFileTest, With_a_header_a_row_holds_all_four_values) {
  std::string marked = made::replaced(made::data, "TITLE  ", "TITLE: ");
  for (const char* label : {"SITES", "OFFSETS", "FREQUENCIES", "NO.DATABLOCKS"}) {
    marked = made::replaced(marked, label, std::string(label) + ":");
  }
  marked = marked.substr(0, marked.find("     1           1"));
  marked +=
      "1 1 5 2.0 0.2 1.8 2.0\n"
      "1 1 1 7.0 7.0 7.0 7.0\n"  // another type of the same place
      "1 1 77 8 8 8 8\n"         // one that nobody knows
      "1 1 6 45 -4 49 -2\n"
      "1 1 6 46 -3 49 -1.5\n"     // the last one of a place stays
      "2 0 5.0 0.0 3.0\n 4 5\n";  // a row may go on, and number 0 has a place
  marked = made::replaced(marked, "NO.DATABLOCKS:     4", "NO.DATABLOCKS:     6");
  ASSERT_EQ(read_file(folder.write("RESP.resp", made::with_crlf(marked))), 0);
  expect_row(DataType::tm_resistivity, 1, 1, {2.0F, 0.2F, 1.8F, 2.0F});
  expect_row(DataType::te_resistivity, 1, 1, {7.0F, 7.0F, 7.0F, 7.0F});
  expect_row(DataType{77}, 1, 1, {8.0F, 8.0F, 8.0F, 8.0F});
  expect_row(DataType::tm_phase, 1, 1, {46.0F, -3.0F, 49.0F, -1.5F});
  expect_row(DataType::te_phase, 1, 1, absent);
  expect_row(DataType::tm_resistivity, 2, 0, {0.0F, 3.0F, 4.0F, 5.0F});
  EXPECT_EQ(response.rows().size(), 6U);
  EXPECT_EQ(response.rows()[3].values[0], 45.0F);  // both count, in the order of the file
  EXPECT_TRUE(response.has(DataType{77}));
  EXPECT_FALSE(response.has(DataType::te_phase));

  // Counts without a colon don't count.
  EXPECT_EQ(read_file(folder.write("RESP.resp", made::data)), -1);
  EXPECT_EQ(interface.take_messages(), made::Messages{"The file does not have any sites defined"});
}

TEST_F(ResponseFileTest, Faults_are_reported_and_leave_what_was_read_before) {
  ASSERT_EQ(read(residuals), 0);
  struct Case {
    const char* name;
    std::string rows;
    std::string data;
    made::Messages messages;
  };
  const auto in_rows = [](const char* name, const char* part, const char* by, made::Messages messages) {
    return Case{name, made::replaced(residuals, part, by), made::data, std::move(messages)};
  };
  const auto in_data = [](const char* name, const char* part, const char* by, made::Messages messages) {
    return Case{name, residuals, made::replaced(made::data, part, by), std::move(messages)};
  };
  const Case cases[] = {
      in_data("foreign", "OCCAM2MTDATA_1.0", "EDI", {"The file does not have the correct format"}),
      in_data("no sites", "SITES             2", "SITES             -1",
              {"The file does not have any sites defined"}),
      in_data("no frequencies", "FREQUENCIES       2", "FREQUENCIES       x",
              {"The file does not have any frequencies defined"}),
      in_data("no rows", "DATABLOCKS     4", "DATABLOCKS     0",
              {"The file does not have any data values defined"}),
      in_data("too many rows", "DATABLOCKS     4", "DATABLOCKS     2000000000",
              {failed + "the file ends behind 4 of 2000000000 rows"}),
      in_data("too many frequencies", "FREQUENCIES       2", "FREQUENCIES       2000000000",
              {failed + "line 12: 'NO.DATABLOCKS' is not a number"}),
      in_rows("unknown site", "2.0 2.0 5.0", "3.0 2.0 5.0", {failed + "there is no site 3"}),
      in_rows("unknown frequency", "2.0 2.0 5.0", "2.0 -1 5.0", {failed + "there is no frequency -1"}),
      in_rows("type beyond all", "2.0 2.0 5.0", "2.0 2.0 9e99", {failed + "9E+99 is too large for a count"}),
      in_rows("site beyond all", "2.0 2.0 5.0", "9e99 2.0 5.0", {failed + "9E+99 is too large for a count"}),
      in_rows("cut", " 30.000  1.0000  0.5\n", "", {failed + "the file ends behind 3 of 4 rows"}),
      {"nothing", "", made::data, {failed + "the file ends behind line 0"}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(read(c.rows, c.data), -1);
    EXPECT_EQ(interface.take_messages(), c.messages);
    EXPECT_EQ(response.resp_sites(), 2);
  }
  std::filesystem::remove(folder.path("occamdat"));
  EXPECT_EQ(read_file(folder.path("RESP07.resp")), -1);
  EXPECT_EQ(interface.take_messages().size(), 1U);
  EXPECT_EQ(read_file(folder.write("RESP07.resp", residuals)), -1);
  EXPECT_EQ(interface.take_messages(), made::Messages{failed + folder.path("occamdat") + " doesn't exist"});
}

TEST_F(ResponseFileTest, A_small_file_does_not_ask_for_millions_of_cells) {
  // 3000 sites and as many frequencies are a small file, but a table of all pairs would be large.
  std::string data = "OCCAM2MTDATA_1.0\nt\nSITES 3000\n";
  for (int line = 0; line < 3000; ++line) {
    data += "s\n";
  }
  data += "OFFSETS\n";
  std::string numbers;
  for (int number = 0; number < 3000; ++number) {
    numbers += "1 ";
  }
  data += numbers + "\nFREQUENCIES 3000\n" + numbers + "\nNO.DATABLOCKS 4\nlabel\n";
  EXPECT_EQ(read(residuals, data), -1);
  EXPECT_EQ(interface.take_messages(), made::Messages{failed + "there are too many sites and frequencies"});
}

}  // namespace
}  // namespace Module_occam
