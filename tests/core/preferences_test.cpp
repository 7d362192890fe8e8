#include "core/preferences.h"

#include <array>
#include <filesystem>

#include <gtest/gtest.h>

#include "core/session_state.h"
#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;
using namespace Module_Brenlox;

namespace {

/// Each test works in a folder of its own, as the program does at its start.
class Preferences : public testing::Test {
 public:
  Preferences(const Preferences&) = delete;
  Preferences& operator=(const Preferences&) = delete;
  ~Preferences() override {
    fs::current_path(earlier_);
    reset_session_state();
  }

 protected:
  Preferences() {
    fs::current_path(folder_.folder());
    reset_session_state();
  }
  void read(std::string_view contents) {
    static_cast<void>(folder_.write("Brenlox.prf", contents));
    read_preferences();
  }
  [[nodiscard]] std::string written() const { return file_contents(folder_.path("Brenlox.prf")); }

  fs::path earlier_ = fs::current_path();
  TemporaryFolder folder_;
  RecordingInterface interface_;
};

using Files = std::array<std::string, 6>;

/// A file with a value of its own for every key.
constexpr std::string_view complete_file =
    "Brenlox user preferences\n\n"
    "File 1: C:\\one.mdb\nFile 2: /data/two.mdb\nFile 3: \nFile 4: \nFile 5: \nFile 6: \n\n"
    "Opening picture: /pictures/a: b.png\n\nForm Width : 1200\nForm Height : 801\n"
    "Auto-scale Spectral Resistivity : yes\nMin Real Resistivity : 1.5\nMax Real Resistivity : 2\n"
    "Min Imag Resistivity : -3\nMax Imag Resistivity : 0.1\n"
    "Auto-scale Spectral E-Field : no\nMin Real E-Field : 5\nMax Real E-Field : 6\nMin Imag E-Field : 7\n"
    "Max Imag E-Field : 3428.5715\nAuto-scale Spectral H-Field : yes\nMin Real H-Field : 9\n"
    "Max Real H-Field : 10\nMin Imag H-Field : 1E-05\nMax Imag H-Field : 12\nAuto-scale Phase : no\n"
    "Min Phase : 13\nMax Phase : 14\nAuto-scale Cagniard : yes\nMin Cagniard : 15\nMax Cagniard : 1E+20\n"
    "Auto-scale E-Phase : no\nMin E-Phase : 17\nMax E-Phase : 18\nAuto-scale H-Phase : no\n"
    "Min H-Phase : 19\nMax H-Phase : 20\nAuto-scale E-Mag : yes\nMin E-Mag : 21\nMax E-Mag : 22\n"
    "Auto-scale H-Mag : yes\nMin H-Mag : 23\nMax H-Mag : 24\nSpectral Plot : yes\nPlot E-PHase : yes\n"
    "Plot H-PHase : yes\n";

std::string with_crlf(std::string_view text) {
  std::string result;
  for (const char c : text) {
    result += c == '\n' ? std::string("\r\n") : std::string(1, c);
  }
  return result;
}

}  // namespace

TEST_F(Preferences, Every_key_survives_reading_and_writing) {
  for (const std::string& contents : {std::string(complete_file), with_crlf(complete_file)}) {
    read(contents);
    EXPECT_EQ(session().form_width, 1200.0F);
    EXPECT_EQ(session().form_height, 801.0F);
    EXPECT_EQ(session().opening_picture, "/pictures/a: b.png");
    EXPECT_EQ(session().recent_files, (Files{"C:\\one.mdb", "/data/two.mdb"}));
    write_preferences();
    EXPECT_EQ(written(), complete_file);
  }
  EXPECT_TRUE(interface_.take_messages().empty());
}

TEST_F(Preferences, First_start_writes_the_short_file_and_the_next_write_the_whole) {
  read_preferences();
  const std::string head =
      "Brenlox user preferences\n\nFile 1: \nFile 2: \nFile 3: \nFile 4: \nFile 5: \nFile 6: \n\n"
      "Opening picture: \n\n";
  EXPECT_EQ(written(), head + "Output Value: Mean\n\nPlot Skipped Records : yes\n");
  EXPECT_EQ(session().form_width, 0.0F);
  const TemporaryFolder survey;
  fs::current_path(survey.folder());  // as opening a survey does
  write_preferences();
  EXPECT_TRUE(written().starts_with(head + "Form Width : 0\nForm Height : 0\nAuto-scale Spectral"));
  EXPECT_NE(written().find("\nAuto-scale E-Phase : yes\nMin E-Phase : 0\nMax E-Phase : 50\n"),
            std::string::npos);
  EXPECT_TRUE(fs::is_empty(survey.folder()));
  fs::current_path(folder_.folder());
}

TEST_F(Preferences, Are_looked_for_in_their_places_in_order) {
  const TemporaryFolder program;
  const TemporaryFolder configuration;
  session().environment.program_directory = program.folder().string();
  session().environment.windows_directory = configuration.folder().string();
  const std::string head = "Brenlox user preferences\n\n\nForm Width : ";
  (void)configuration.write("Brenlox.prf", head + "3");
  read_preferences();
  EXPECT_EQ(session().form_width, 3.0F);
  (void)program.write("Brenlox.prf", head + "2");
  read_preferences();
  EXPECT_EQ(session().form_width, 2.0F);
  read(head + "1");
  EXPECT_EQ(session().form_width, 1.0F);
  session().form_width = 4.0F;
  write_preferences();
  EXPECT_NE(written().find("Form Width : 4"), std::string::npos);
  EXPECT_EQ(file_contents(program.path("Brenlox.prf")), head + "2");
}

TEST_F(Preferences, A_file_of_another_kind_gives_the_defaults_and_is_told) {
  for (const char* contents :
       {"", "Brenlox user preference\n\nFile 1: a\n", "\nBrenlox user preferences\n"}) {
    SCOPED_TRACE(contents);
    session().form_width = 9.0F;
    read(contents);
    EXPECT_EQ(interface_.take_messages(), std::vector<std::string>{"Preference file is invalid"});
    EXPECT_EQ(session().form_width, 0.0F);
    EXPECT_EQ(session().recent_files, Files{});
    write_preferences();
    EXPECT_NE(written().find("\nAuto-scale Phase : yes\n"), std::string::npos);
    read("Brenlox user preferences\n\n\nAuto-scale Phase : no\n");
  }
  read(" Brenlox user preferences ");
  EXPECT_TRUE(interface_.take_messages().empty());
  write_preferences();
  EXPECT_NE(written().find("\nMax H-Phase : 50\n"), std::string::npos);
}

TEST_F(Preferences, The_list_of_recent_files_ends_at_a_blank) {
  struct Case {
    const char* name;
    const char* list;
    Files files;
    float form_width;
  };
  const Case cases[] = {
      {"blank first entry", "File 1: \nFile 2: b\nFile 3: c\n\n\n\nForm Width : 5\n", {}, 5.0F},
      {"blank line in the list", "File 1: a\n  \nFile 3: c\nForm Width : 5\n", {"a", "c"}, 5.0F},
      {"blank lines before the list",
       "\n\nFile 1: a\n\n File 2: b\nForm Width : 5\nFile 3: ",
       {"a", "b"},
       5.0F},
      {"more than there is room for",
       "\nFile 1: a\nFile 1: b\nFile 1: c\nFile 1: d\nFile 1: e\nFile 6: f\nFile 6: g\nFile 7: h\n",
       {"a", "b", "c", "d", "e", "f"},
       0.0F},
      {"a key within a path of the list",
       "File 1: /Form Width : 7\n\nForm Width : 5\n",
       {"/Form Width : 7"},
       5},
      {"a key within a path elsewhere", "\nnote /Form Width : 7\n", {}, 7.0F},
      {"cut in the list", "File 1: a\nFile", {"a"}, 0.0F},
      {"value without a number", "\nForm Width : wide\n", {}, 0.0F},
      {"value beyond a single", "\nForm Width : 1e300\n", {}, 0.0F}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    read("Brenlox user preferences\n\n" + std::string(c.list));
    EXPECT_EQ(session().recent_files, c.files);
    EXPECT_EQ(session().form_width, c.form_width);
  }
}

TEST_F(Preferences, Recent_files_move_to_the_head) {
  read_preferences();
  for (const char* path : {"1", "2", "3", "4", "5", "6", "7", "", "a\nb"}) {
    add_recent_file(path);
  }
  EXPECT_EQ(session().recent_files, (Files{"7", "6", "5", "4", "3", "2"}));
  EXPECT_EQ(session().recent_count, 6);
  session().recent_files = {"x", "/B.mdb", "c"};
  add_recent_file(" /b.MDB ");
  EXPECT_EQ(session().recent_files, (Files{"/b.MDB", "x", "c"}));
  add_recent_file("/B.mdb");  // already at the head: left alone
  EXPECT_EQ(session().recent_files, (Files{"/b.MDB", "x", "c"}));
  EXPECT_EQ(session().recent_count, 3);
  EXPECT_EQ(written().find("x\n"), std::string::npos);
  refresh_recent_file_menu();
  EXPECT_NE(written().find("File 1: /b.MDB\nFile 2: x\nFile 3: c\nFile 4: \n"), std::string::npos);
}

TEST_F(Preferences, A_failed_write_leaves_the_file) {
  read(complete_file);
  fs::create_directory(folder_.path("Brenlox.prf.writing"));  // where the new file would be written
  session().form_width = 1.0F;
  write_preferences();
  EXPECT_EQ(written(), complete_file);
}

TEST_F(Preferences, A_new_file_takes_the_place_of_the_earlier_one_when_it_is_whole) {
  read(complete_file);
  fs::create_hard_link(folder_.path("Brenlox.prf"), folder_.path("earlier"));
  session().form_width = 1.0F;
  write_preferences();
  EXPECT_NE(written().find("Form Width : 1\n"), std::string::npos);
  EXPECT_EQ(file_contents(folder_.path("earlier")), complete_file);
}

TEST_F(Preferences, The_opening_picture_is_found_wherever_the_program_works) {
  read("Brenlox user preferences\n\n\nOpening picture: camp.png\n");
  const TemporaryFolder survey;
  fs::current_path(survey.folder());
  EXPECT_EQ(fs::path(opening_picture_file()), fs::canonical(folder_.folder()) / "camp.png");
  write_preferences();
  EXPECT_NE(written().find("Opening picture: camp.png\n"), std::string::npos);
  fs::current_path(folder_.folder());
  read("Brenlox user preferences\n\n\nOpening picture: /pictures/camp.png\n");
  EXPECT_EQ(opening_picture_file(), "/pictures/camp.png");
  read("Brenlox user preferences\n");
  EXPECT_EQ(opening_picture_file(), "");
}

TEST_F(Preferences, Old_files_with_other_letters_are_understood) {
  read("Brenlox user preferences\n\nFile 1: C:\\M\xE9xico.mdb\n");
  EXPECT_EQ(session().recent_files[0], "C:\\M\xC3\xA9xico.mdb");
}
