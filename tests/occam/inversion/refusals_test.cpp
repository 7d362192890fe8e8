// What can't be inverted is refused with its reason before any file is written.
#include <filesystem>
#include <functional>
#include <map>
#include <set>

#include "core/text_fields.h"
#include "occam/inversion/run_inversion.h"
#include "tests/formats/occam/made_run.h"
#include "tests/occam/inversion/made_inversion.h"

namespace fs = std::filesystem;
using namespace Module_occam;
using made::replaced;

namespace {

std::set<std::string> names_in(const fs::path& folder) {
  std::set<std::string> names;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    names.insert(entry.path().string());
  }
  return names;
}

class Refusals : public ::testing::Test {
 protected:
  Refusals() { made::write_inversion(folder); }

  /// @return why the run is refused; empty if it isn't
  [[nodiscard]] std::string refusal(const InversionOptions& options = {}) const {
    const std::set<std::string> before = names_in(folder.folder());
    try {
      (void)run_inversion(folder.folder(), options, {});
    } catch (const std::exception& failure) {
      EXPECT_EQ(names_in(folder.folder()), before);
      return failure.what();
    }
    return {};
  }

  void change(const std::string& file, const std::string& part, const std::string& by) const {
    static_cast<void>(folder.write(file, replaced(file_contents(folder.path(file)), part, by)));
  }

  /// One of the data rows with other items.
  void change_row(int site, int frequency, int type, const std::string& by) const {
    std::string data = file_contents(folder.path("occamdat"));
    const std::string begin = pad_field(std::to_string(site), 6) + pad_field(std::to_string(frequency), 12) +
                              pad_field(std::to_string(type), 8);
    const std::size_t at = data.find(begin);
    ASSERT_NE(at, std::string::npos);
    static_cast<void>(folder.write("occamdat", data.replace(at, data.find('\r', at) - at, by)));
  }

  TemporaryFolder folder;
};

}  // namespace

TEST_F(Refusals, Name_what_is_wrong_and_leave_the_directory_as_it_was) {
  struct Case {
    const char* name;
    std::function<void()> spoil;
    std::vector<std::string> words;  // in the reason; with "^" at its begin
  };
  const auto row = [this](const std::string& by) { return [this, by] { change_row(2, 1, 1, by); }; };
  const auto in = [this](const std::string& file, const std::string& part, const std::string& by) {
    return [=, this] { change(file, part, by); };
  };
  const auto file = [this](const std::string& name, const std::string& text) {
    return [=, this] { static_cast<void>(folder.write(name, text)); };
  };
  const std::string exceptions = "NO. EXCEPTIONS:   0";
  const std::vector<Case> cases{
      {"type 7", row("2 1 7 1.0 0.1"), {"row 13 of the data has type 7"}},
      {"type 11", row("2 1 11 1.0 0.1"), {"row 13 of the data has type 11"}},
      {"type 18, two rows",
       [&] {
         row("2 1 18 1.0 0.1")();
         change_row(2, 3, 1, "2 3 18 1.0 0.1");
       },
       {"row 13 of the data has type 18", "as have 2 rows in all"}},
      {"types 12, 17 and 99",
       [&] {
         row("2 1 12 1.0 0.1")();
         change_row(2, 3, 1, "2 3 17 1.0 0.1");
         change_row(3, 3, 6, "3 3 99 1.0 0.1");
       },
       {"type 12", "type 17", "row 36 of the data has type 99"}},
      {"error of 0", row("2 1 1 1.0 0.0"), {"row 13 of the data has an error of 0"}},
      {"datum no number", row("2 1 1 NaN 0.1"), {"occamdat", "'NaN' is not a number"}},
      {"datum of stars", row("2 1 1 ******** 0.1"), {"occamdat", "is not a number"}},
      {"unknown site", row("4 1 1 1.0 0.1"), {"row 13 is of site 4, and the file lists 3"}},
      {"unknown frequency", row("2 9 1 1.0 0.1"), {"row 13 is of frequency 9, and the file lists 3"}},
      {"negative frequency", in("occamdat", "    100.0000", "   -100.0000"), {"frequency 2 is -100 Hz"}},
      {"frequency 0", in("occamdat", "    100.0000", "      0.0000"), {"frequency 2 is 0 Hz"}},
      {"site off the mesh",
       in("occamdat", "      1400.0", "     14000.0"),
       {"site 3 at 14000 m is off the mesh"}},
      {"rows missing",
       in("occamdat", "NO.DATABLOCKS     36", "NO.DATABLOCKS     37"),
       {"occamdat", "ends behind 36 of its rows"}},
      {"too few parameters",
       file("startup", made::inverted_start("1", "1", 35)),
       {"35 parameters", "36 free blocks"}},
      {"too many parameters", file("startup", made::inverted_start("1", "1", 37)), {"37 parameters"}},
      {"parameter no number", in("startup", "  2.5\n  2.5\n", "  2.5\n  NaN\n"), {"startup", "'NaN'"}},
      {"parameters cut off",
       in("startup", "NO. PARMS:        36", "NO. PARMS:        40"),
       {"startup", "ends behind 36 of 40 parameters"}},
      {"unknown label",
       in("startup", "IRUF:             1", "ISMOOTH:          1"),
       {"startup", "line 8", "'ISMOOTH' is not known"}},
      {"roughness 2", in("startup", "IRUF:             1", "IRUF:             2"), {"roughness type 2"}},
      {"roughness 100",
       in("startup", "IRUF:             1", "IRUF:             100"),
       {"roughness type 100"}},
      {"target 0", in("startup", "REQ TOL:          1.0", "REQ TOL:          0"), {"target misfit is 0"}},
      {"multiplier of 300 decades",
       in("startup", "PMU:              5.0", "PMU:              1e300"),
       {"startup", "the Lagrange value 1E+300 is no log10 of a multiplier"}},
      {"number with a letter",
       in("startup", "MAX ITER:         20", "MAX ITER:         2O"),
       {"line 6", "'2O' is not a number"}},
      {"model file elsewhere", in("startup", "inmodel", "../inmodel"), {"../inmodel", "outside"}},
      {"data file elsewhere", in("startup", "occamdat", "/tmp/occamdat"), {"/tmp/occamdat", "outside"}},
      {"no model file named", in("startup", "inmodel", ""), {"names no model file"}},
      {"model file missing", in("startup", "inmodel", "gone"), {"gone"}},
      {"data file missing", in("startup", "occamdat", "gone"), {"gone"}},
      {"mesh missing",
       in("inmodel", "MESH FILE:        mesh", "MESH FILE:        gone"),
       {"inmodel", "mesh file"}},
      {"statics missing",
       in("inmodel", "STATICS FILE:     none", "STATICS FILE:     gone"),
       {"statics file gone is not there"}},
      {"statics of another kind",
       [&] {
         in("inmodel", "STATICS FILE:     none", "STATICS FILE:     statics")();
         file("statics", "rub")();
       },
       {"^statics: The file does not have the correct format"}},
      {"statics of a constraint that is no number",
       [&] {
         in("inmodel", "STATICS FILE:     none", "STATICS FILE:     statics")();
         file("statics", "OCCAM2MTSHIFT_1.0\n\n\nTYPE: all\nERROR: 0.1\nNUMBER: 0\n\n")();
       },
       {"^statics: 'all' is not a number"}},
      {"prejudice of another kind",
       [&] {
         in("inmodel", "PREJUDICE FILE:   none", "PREJUDICE FILE:   prior")();
         file("prior", "rub")();
       },
       {"^prior: "}},
      {"prejudice count no number",
       [&] {
         in("inmodel", "PREJUDICE FILE:   none", "PREJUDICE FILE:   prior")();
         file("prior", "OCCAM2MTPREJ_2.0\nCOUNT: x\n1 2.0 1.0\n")();
       },
       {"^prior: 'x' is not a number"}},
      {"empty mesh", file("mesh", ""), {"^mesh: the file ends behind line 0"}},
      {"mesh without cells", in("mesh", " 0 17 9", " 0 1 1"), {"^mesh: the mesh has no cells"}},
      {"mesh of another type", in("mesh", " 0 17 9", " 1 17 9"), {"^mesh: The specified mesh type"}},
      {"count of exceptions no number",
       in("inmodel", exceptions, "NO. EXCEPTIONS:   two"),
       {"^inmodel: 'two' is not a number"}},
      {"prejudice missing", in("inmodel", "PREJUDICE FILE:   none", "PREJUDICE FILE:   gone"), {"gone"}},
      {"exception of a block that there is not",
       in("inmodel", exceptions, "NO. EXCEPTIONS:   1\n1 7 2 2 0.5"),
       {"block 7 of layer 1"}},
      {"exception of a parameter that there is not",
       in("inmodel", exceptions, "NO. EXCEPTIONS   -1\n1 37 0.5"),
       {"parameter 37 of 36"}},
      {"exceptions cut off",
       in("inmodel", exceptions, "NO. EXCEPTIONS:   2\n1 1 2 2 0.5"),
       {"ends in its exceptions"}},
      {"fixed block in an exception",
       [&] {
         std::string mesh = file_contents(folder.path("mesh"));
         mesh = replaced(mesh, " 0 17 9 0 0 2\n", " 0 17 9 1 0 2\n 100.0\n");
         for (std::size_t line = 0, at = mesh.find("????"); line < 8; ++line, at += 17) {
           mesh.replace(at, 4, "1111");
         }
         static_cast<void>(folder.write("mesh", mesh));
         static_cast<void>(folder.write("startup", made::inverted_start("1", "1", 35)));
         change("inmodel", exceptions, "NO. EXCEPTIONS:   1\n1 1 2 2 0.5");
       },
       {"block 1 of layer 1, which is fixed"}},
      {"mesh code beyond its list", in("mesh", "????", "5???"), {"code \"5\""}},
      {"empty data file", file("occamdat", ""), {"occamdat"}},
      {"binary data file",
       file("occamdat", std::string("\x7f"
                                    "ELF\x01\0\0\0\xff\xfe\0\0\0\0",
                                    14)),
       {"occamdat"}},
      {"start file of another kind",
       in("startup", "OCCAMITER_1.0", "OCCAM2MTMOD_1.0"),
       {"another kind of file"}},
      {"huge count",
       in("startup", "NO. PARMS:        36", "NO. PARMS:        2000000000"),
       {"can't be 2000000000 parameters"}},
  };
  std::map<std::string, std::string> sound;
  for (const char* name : {"startup", "inmodel", "occamdat", "mesh"}) {
    sound[name] = file_contents(folder.path(name));
  }
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    each.spoil();
    const std::string reason = refusal();
    EXPECT_FALSE(reason.empty());
    for (const std::string& word : each.words) {
      const bool begins = word.starts_with('^') && reason.starts_with(word.substr(1));
      EXPECT_TRUE(begins || reason.find(word) != std::string::npos) << reason << "\nlacks: " << word;
    }
    for (const auto& [name, text] : sound) {
      static_cast<void>(folder.write(name, text));
    }
  }
  InversionOptions options;
  options.iterations = 0;
  EXPECT_EQ(refusal(options), "");  // what was spoilt was the reason
}

TEST_F(Refusals, Of_prejudices_of_parameters_that_there_are_not) {
  change("inmodel", "PREJUDICE FILE:   none", "PREJUDICE FILE:   prior");
  InversionOptions options;
  options.iterations = 0;
  for (const int parameter : {0, 1, 36, 37}) {
    const std::string number = std::to_string(parameter);
    options.may_move_earlier = true;
    static_cast<void>(folder.write("prior", "OCCAM2MTPREJ_2.0\nCOUNT: 1\n" + number + " 2.0 1.0\n"));
    EXPECT_EQ(refusal(options),
              parameter == 1 || parameter == 36 ? "" : "a prejudice names parameter " + number + " of 36");
  }
}

TEST_F(Refusals, Of_options_and_of_iteration_files) {
  InversionOptions options;
  options.from = "/etc/passwd";
  EXPECT_NE(refusal(options).find("the folder of the run"), std::string::npos);
  options.from = "gone";
  EXPECT_NE(refusal(options).find("gone"), std::string::npos);
  options = {};
  options.roughness_type = 200;
  EXPECT_NE(refusal(options).find("roughness type 200"), std::string::npos);
  options = {};
  options.static_shift = -0.1;
  EXPECT_NE(refusal(options).find("above 0"), std::string::npos);

  // What an earlier inversion has left is named by its first and its last iteration.
  options = {};
  options.iterations = 1;
  (void)run_inversion(folder.folder(), options, {});
  EXPECT_TRUE(refusal(options).starts_with("An earlier inversion has left ITER00.iter to ITER01.iter in "))
      << refusal(options);

  // An iteration file of which a crash of another program has left a part, after whole ones: nothing moves.
  const std::string whole = file_contents(folder.path("ITER01.iter"));
  options.go_on = true;
  for (const double part : {0.0, 0.3, 0.9}) {
    static_cast<void>(folder.write(
        "ITER02.iter", whole.substr(0, static_cast<std::size_t>(part * static_cast<double>(whole.size())))));
    EXPECT_TRUE(refusal(options).starts_with("ITER02.iter"));
    EXPECT_TRUE(refusal(options).ends_with("; move it away to go on from ITER01.iter"));
  }
  fs::remove(folder.path("ITER02.iter"));
  static_cast<void>(folder.write("SHIFT01.shift", "rub"));
  EXPECT_EQ(refusal(options), "SHIFT01.shift: The file does not have the correct format");
  EXPECT_THROW((void)run_inversion(folder.path("gone"), {}, {}), std::runtime_error);
}
