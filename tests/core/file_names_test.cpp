#include "core/file_names.h"

#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;

TEST(File_names, Take_paths_apart) {
  struct Case {
    const char* path;
    const char* name;
    const char* directory;
    const char* extension;
    const char* stripped;
  };
  const Case cases[] = {{"C:\\data\\a.b.edi", "a.b.edi", "C:\\data\\", "edi", "C:\\data\\a.b"},
                        {"/data.d/file", "file", "/data.d/", "", "/data.d/file"},
                        {"a.edi", "a.edi", "", "edi", "a"},
                        {"C:\\x/y\\z.", "z.", "C:\\x/y\\", "", "C:\\x/y\\z"},
                        {"/folder/", "", "/folder/", "", "/folder/"},
                        {"", "", "", "", ""}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    EXPECT_EQ(Module_util::file_name_only(c.path), c.name);
    EXPECT_EQ(Module_util::directory_of(c.path), c.directory);
    EXPECT_EQ(Module_util::file_extension(c.path), c.extension);
    EXPECT_EQ(Module_util::strip_extension(c.path), c.stripped);
  }
  EXPECT_EQ(Module_util::file_stem(" a.b.edi "), "a.b");
  EXPECT_EQ(Module_util::file_stem(" plain "), "plain");
  EXPECT_EQ(Module_util::file_name_only(std::string("/a/ b.edi \0", 11)), "b.edi");
}

TEST(Select_output_file, Suggests_a_name_without_colons_and_asks_before_overwriting) {
  const TemporaryFolder folder;
  RecordingInterface interface;
  interface->path_answers = {"/out/chosen.avg"};
  std::string name = "C:\\out\\200:E.avg";
  EXPECT_EQ(Module_util::select_output_file(name, "Title", "Filter"), 0);
  EXPECT_EQ(name, "/out/chosen.avg");
  const FileDialogRequest request = interface->file_dialogs.at(0);
  EXPECT_EQ(request.directory, "C:\\out\\");
  EXPECT_EQ(request.suggested_name, "200_E.avg");
  EXPECT_EQ(request.default_extension, "*.avg");
  EXPECT_TRUE(interface->questions.empty());

  const std::string present = folder.write("present.avg", "kept");
  interface->path_answers = {present, present, ""};
  interface->yes_no_answers = {false, true};
  for (const std::string& expected : {std::string(), present, std::string()}) {
    EXPECT_EQ(Module_util::select_output_file(name, "Title", "Filter"), 0);
    EXPECT_EQ(name, expected);
  }
  EXPECT_EQ(interface->questions.size(), 2U);
}

namespace {

std::vector<std::string> names_found(const std::string& pattern, const fs::path& folder) {
  std::vector<std::string> names;
  for (const std::string& file : Module_util::scan_directory(pattern, folder.string())) {
    names.push_back(fs::path(file).lexically_relative(folder).generic_string());
  }
  std::ranges::sort(names);
  return names;
}

using Names = std::vector<std::string>;

}  // namespace

TEST(Scan_directory, Finds_the_matching_files_of_a_tree) {
  const TemporaryFolder folder;
  for (const char* name : {"a.edi", "sub/B.EDI", "sub/deep/c.edi", "c.edix", "noext", "sub.edi/d.dat"}) {
    static_cast<void>(folder.write(name, "x"));
  }
  RecordingInterface interface;
  for (const char* pattern : {"edi", "*.edi", ".edi", "*.EDI", "*.?d*i"}) {
    SCOPED_TRACE(pattern);
    EXPECT_EQ(names_found(pattern, folder.folder()), (Names{"a.edi", "sub/B.EDI", "sub/deep/c.edi"}));
  }
  EXPECT_EQ(names_found("", folder.folder()).size(), 6U);
  EXPECT_EQ(names_found("*.*", folder.folder()).size(), 6U);
  EXPECT_EQ(names_found("?.ed?", folder.folder()), (Names{"a.edi", "sub/B.EDI", "sub/deep/c.edi"}));
  EXPECT_EQ(names_found("edi", folder.folder() / "missing"), Names{});
  EXPECT_EQ(fs::path(Module_util::scan_directory("edi", folder.folder().string()).front()).filename(),
            "a.edi");
}

TEST(Scan_directory, Ends_on_cycles_of_links_and_passes_unreadable_folders) {
  const TemporaryFolder folder;
  static_cast<void>(folder.write("sub/a.edi", "x"));
  static_cast<void>(folder.write("closed/b.edi", "x"));
  fs::create_directory_symlink(folder.folder(), folder.folder() / "sub" / "up");
  fs::create_directory_symlink("missing", folder.folder() / "dangling");
  fs::permissions(folder.folder() / "closed", fs::perms::none);
  std::error_code unreadable;
  const bool closed =
      fs::directory_iterator(folder.folder() / "closed", unreadable) == fs::directory_iterator();
  RecordingInterface interface;
  EXPECT_EQ(names_found("edi", folder.folder()),
            closed ? Names{"sub/a.edi"} : (Names{"closed/b.edi", "sub/a.edi"}));
  fs::permissions(folder.folder() / "closed", fs::perms::owner_all);
}

// Whoever reads them says why they are not read.
TEST(Scan_directory, Finds_pipes_too) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo(folder.path("a.edi").c_str(), 0600), 0);
  RecordingInterface interface;
  EXPECT_EQ(names_found("edi", folder.folder()), Names{"a.edi"});
}

TEST(Scan_directory, Stops_when_asked) {
  const TemporaryFolder folder;
  static_cast<void>(folder.write("a.edi", "x"));
  static_cast<void>(folder.write("sub/b.edi", "x"));
  RecordingInterface interface;
  interface->stop = [] { return true; };
  EXPECT_EQ(names_found("edi", folder.folder()), Names{"a.edi"});
}

TEST(Phase_difference, Takes_the_short_way_round) {
  EXPECT_NEAR(Module_util::phase_difference(3000, -3000), -283.185F, 1e-3F);
  EXPECT_NEAR(Module_util::phase_difference(-3000, 3000), 283.185F, 1e-3F);
  EXPECT_EQ(Module_util::phase_difference(500, -500), 1000.0F);
  EXPECT_EQ(Module_util::phase_difference(100, -1600), 1700.0F);
  EXPECT_EQ(Module_util::phase_difference(3000, 1000), 2000.0F);
}
