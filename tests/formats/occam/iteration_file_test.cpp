// Start and iteration files, and the sites of data files.
#include "formats/occam/iteration_file.h"

#include "formats/occam/data_file.h"
#include "tests/formats/occam/made_run.h"

namespace Module_occam {
namespace {

const std::string iteration =
    "FORMAT:           OCCAMITER_1.0\n"
    "DESCRIPTION:      by hand\n"
    "MODEL FILE:       inmodel\n"
    "DATA FILE:        occamdat \n"
    "DATE/TIME:        today\n"
    "MAX ITER:         20\n"
    "REQ TOL:          1.2\n"
    "IRUF:             1\n"
    "DEBUG LEVEL:      1\n"
    "ITERATION:        7\n"
    "PMU:              4.5\n"
    "RLAST:            1.e+07\n"
    "TLAST:            1.25D+00\n"
    "IFFTOL:           0\n"
    "NO. PARMS:        5\n"
    "  2.0  1.5\n\n -0.5,3\n  text\n";

class IterationFileTest : public made::OccamTest {
 protected:
  int read(const std::string& text, IterationParts parts = IterationParts::with_parameters) {
    return read_occam_iteration(parts, folder.write("ITER07.iter", text), result);
  }
  OccamIteration result;
};

TEST_F(IterationFileTest, Start_file_is_laid_out_in_lines_of_four_values) {
  EXPECT_EQ(
      start_file_text({"  a run ", " inmodel ", "occamdat", "07-September-2018", " 20 ", "1.2", 5, 2.0}),
      "FORMAT:           OCCAMITER_1.0\r\n"
      "DESCRIPTION:      a run\r\n"
      "MODEL FILE:       inmodel\r\n"
      "DATA FILE:        occamdat\r\n"
      "DATE/TIME:        07-September-2018\r\n"
      "MAX ITER:         20\r\n"
      "REQ TOL:          1.2\r\n"
      "IRUF:             1\r\n"
      "DEBUG LEVEL:      1\r\n"
      "ITERATION:        0\r\n"
      "PMU:              5.0\r\n"
      "RLAST:            1.e+07\r\n"
      "TLAST:            100\r\n"
      "IFFTOL:           0\r\n"
      "NO. PARMS:        5\r\n"
      "         2.0000         2.0000         2.0000         2.0000\r\n"
      "         2.0000\r\n");
}

TEST_F(IterationFileTest, Every_field_is_read_back) {
  for (const std::string& text : {iteration, made::with_crlf(iteration)}) {
    ASSERT_EQ(read(text), 0);
    EXPECT_EQ(result.model_file, "inmodel");
    EXPECT_EQ(result.data_file, "occamdat");
    EXPECT_EQ(result.debug_level, 1);
    EXPECT_EQ(result.number, 7);
    EXPECT_EQ(result.PMU, 4.5);
    EXPECT_EQ(result.RLAST, 1e7);
    EXPECT_EQ(result.TLAST, 1.25);
    EXPECT_EQ(result.parameter_count, 5);
    EXPECT_EQ(result.parameters, (std::vector<double>{2.0, 1.5, -0.5, 3.0, 0.0}));
  }
  ASSERT_EQ(read(iteration, IterationParts::head_only), 0);
  EXPECT_TRUE(result.parameters.empty());
}

TEST_F(IterationFileTest, The_flexible_form_has_four_lines_more) {
  std::string flexible = made::replaced(iteration, "OCCAMITER_1.0", "OCCAMITER_FLEX");
  flexible = made::replaced(flexible, "DEBUG", "DIAGONAL: 0\n\n!LIMITS: none\n!STEPS: none\nDEBUG");
  flexible = made::replaced(flexible, "DEBUG LEVEL:      1", "DEBUG LEVEL:      0");
  ASSERT_EQ(read(flexible), 0);
  EXPECT_EQ(result.debug_level, 0);
  EXPECT_EQ(result.number, 7);
  EXPECT_EQ(result.parameters.size(), 5U);
}

TEST_F(IterationFileTest, Faults_are_reported_once_and_leave_what_was_read_before) {
  ASSERT_EQ(read(iteration), 0);
  const std::string failed = "An error occurred while reading the iteration file: ";
  struct Case {
    const char* name;
    std::string text;
    made::Messages messages;
  };
  const Case cases[] = {{"empty line", made::replaced(iteration, "PMU:              4.5", "  "), {}},
                        {"head cut", iteration.substr(0, 100), {failed + "the file ends behind line 4"}},
                        {"values cut",
                         iteration.substr(0, iteration.find("  text")),
                         {failed + "the file ends behind 4 of 5 parameters"}},
                        {"huge count",
                         made::replaced(iteration, "PARMS:        5", "PARMS:        2000000000"),
                         {failed + "the file ends behind 5 of 2000000000 parameters"}},
                        {"count beyond all",
                         made::replaced(iteration, "PARMS:        5", "PARMS:        1e300"),
                         {failed + "1E+300 is too large for a count"}},
                        {"negative count",
                         made::replaced(iteration, "PARMS:        5", "PARMS:        -5"),
                         {failed + "the number of parameters is -5"}},
                        {"no number",
                         made::replaced(iteration, "ITERATION:        7", "ITERATION:        of May"),
                         {failed + "line 10: 'of May' is not the number of an iteration"}},
                        {"nothing", "", {failed + "the file ends behind line 0"}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(read(c.text), -1);
    EXPECT_EQ(interface.take_messages(), c.messages);
    EXPECT_EQ(result.number, 7);
  }
  EXPECT_EQ(read_occam_iteration(IterationParts::head_only, folder.path("gone"), result), -1);
  EXPECT_EQ(interface.take_messages(), made::Messages{failed + folder.path("gone") + " doesn't exist"});
}

TEST_F(IterationFileTest, Control_file_names_model_and_data) {
  ControlFile names;
  ASSERT_EQ(read_occam_control_file(folder.write("startup", iteration), names), 0);
  EXPECT_EQ(names.model_file, "inmodel");
  EXPECT_EQ(names.data_file, "occamdat");
  EXPECT_EQ(read_occam_control_file(folder.write("startup", "FORMAT: SOMETHING_1.0\n"), names), -1);
  EXPECT_EQ(interface.take_messages(), made::Messages{"The file does not have the correct format"});
  EXPECT_EQ(read_occam_control_file(folder.write("startup", iteration.substr(0, 70)), names), -1);
  EXPECT_EQ(interface.take_messages(),
            made::Messages{"An error occurred while reading the control file: the file ends behind line 3"});
  EXPECT_EQ(names.model_file, "inmodel");
}

class SitesTest : public made::OccamTest {
 protected:
  int read(const std::string& text) { return read_occam_data_file(folder.write("occamdat", text), data); }

  OccamData data;
};

TEST_F(SitesTest, Are_read_with_and_without_colons) {
  std::string with_colons = made::replaced(made::data, "SITES  ", "SITES: ");
  with_colons = made::replaced(with_colons, "TITLE  ", "TITLE: ");
  for (const std::string& text : {made::data, with_colons}) {
    data = {};
    ASSERT_EQ(read(text), 0);
    EXPECT_EQ(data.title, "by hand");
    EXPECT_EQ(data.site_names, (std::vector<std::string>{"station_110.0", "station_130.0"}));
    EXPECT_EQ(data.site_offsets, (std::vector<float>{110, 130}));
  }
}

TEST_F(SitesTest, What_is_written_is_read_back) {
  DataFile written;
  written.description = "Line 200E";
  written.positions = {-50, 1250.5F};
  ASSERT_EQ(read(data_file_text(written)), 0);
  EXPECT_EQ(data.title, "Line 200E");
  EXPECT_EQ(data.site_names, (std::vector<std::string>{"station_-50.0", "station_1250.5"}));
  EXPECT_EQ(data.site_offsets, written.positions);
}

TEST_F(SitesTest, Faults_are_reported_and_leave_what_was_read_before) {
  ASSERT_EQ(read(made::data), 0);
  const std::string failed = "An error occurred while reading the control file: ";
  struct Case {
    const char* name;
    std::string text;
    made::Messages messages;
  };
  const Case cases[] = {
      {"foreign", "$Gdp.Prgver\n", {"The file does not have the correct format"}},
      {"no sites",
       made::replaced(made::data, "SITES             2", "SITES             0"),
       {"The file does not have any sites defined"}},
      {"negative count",
       made::replaced(made::data, "SITES             2", "SITES             -2"),
       {"The file does not have any sites defined"}},
      {"text for a count",
       made::replaced(made::data, "SITES             2", "SITES             two"),
       {"The file does not have any sites defined"}},
      {"huge count",
       made::replaced(made::data, "SITES             2", "SITES             2147483647"),
       {failed + "the file ends behind line 17"}},
      {"empty line", made::replaced(made::data, "OFFSETS\n", "\nOFFSETS\n"), {}},
      {"cut", made::data.substr(0, made::data.find("       130")), {failed + "the file ends behind line 7"}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(read(c.text), -1);
    EXPECT_EQ(interface.take_messages(), c.messages);
    EXPECT_EQ(data.site_count(), 2);
  }
}

}  // namespace
}  // namespace Module_occam
