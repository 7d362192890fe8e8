// What "brenlox_batch export" writes, and what becomes of it in another survey.
#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <tuple>

#include "core/text_fields.h"
#include "tests/batch/batch_program.h"

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

class Batch_export : public Batch_program {
 protected:
  [[nodiscard]] Outcome exported(const std::string& format, const std::string& directory,
                                 const Arguments& rest = {}, const std::string& survey = "survey.mdb") const {
    Arguments arguments{"export", survey, "--format", format, "--directory", directory};
    arguments.insert(arguments.end(), rest.begin(), rest.end());
    return run(arguments);
  }
  [[nodiscard]] std::set<std::string> files_in(const std::string& directory) const {
    std::set<std::string> files;
    for (const auto& entry : fs::directory_iterator(folder_.path(directory))) {
      files.insert(entry.path().filename().string());
    }
    return files;
  }
};

using Files = std::set<std::string>;

/// The cells of a table by all that names its points; columns that a second survey has its own way with, as
/// the number of the event, are left out.
std::map<std::string, std::string> points_of(const std::string& table) {
  const std::set<std::string> left_out{"event", "site"};
  std::map<std::string, std::string> points;
  std::vector<std::string> names;
  std::string_view rest = table;
  for (std::string_view line; take_line(rest, line);) {
    std::vector<std::string> cells(1);
    for (const char c : line) {
      c == ',' ? cells.emplace_back() : cells.back() += c;
    }
    if (names.empty()) {
      names = cells;
      continue;
    }
    std::string key;
    std::string values;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const bool is_value = names[i].starts_with("resistivity") || names[i].starts_with("phase") ||
                            names[i].starts_with("masked");
      if (!left_out.contains(names[i])) {
        (is_value ? values : key) += names[i] + "=" + cells[i] + " ";
      }
    }
    // Repeats differ in their values only.
    for (int repeat = 0; !points.emplace(key + std::to_string(repeat), values).second; ++repeat) {
    }
  }
  return points;
}

}  // namespace

TEST_F(Batch_export, Writes_each_format_and_asks_before_it_replaces) {
  write_field_files(2);
  import_field_files();
  const Outcome edi = exported("edi", "edi", {"--line", "200e"});
  EXPECT_EQ(edi.status, 0) << edi.errors;
  EXPECT_EQ(edi.output, "2 files written to " + folder_.path("edi") + "\n");
  const Files names = files_in("edi");
  EXPECT_EQ(names.size(), 2U);
  EXPECT_TRUE(names.contains("100A.edi")) << *names.begin();

  const Outcome declined = exported("edi", "edi");
  EXPECT_EQ(declined.status, 1);
  EXPECT_EQ(declined.output, "");
  EXPECT_NE(declined.errors.find("2 files already exist, overwrite? "), std::string::npos) << declined.errors;
  EXPECT_EQ(exported("EDI", "edi", {"--overwrite", "--rotate", "30"}).status, 0);

  EXPECT_EQ(exported("emtfxml", "xml").status, 0);
  EXPECT_TRUE(files_in("xml").contains("100A.xml"));
  EXPECT_EQ(exported("geojson", "maps", {"--plot-link", "{name}.pdf"}).status, 0);
  EXPECT_EQ(exported("kml", "maps").status, 0);
  EXPECT_EQ(files_in("maps"), (Files{"survey.geojson", "survey.kml"}));
  const auto map = nlohmann::json::parse(file_contents(folder_.path("maps/survey.geojson")), nullptr, false);
  EXPECT_EQ(map["features"].size(), 3U) << "two stations and their line";
  EXPECT_NE(file_contents(folder_.path("maps/survey.geojson")).find("100A.pdf"), std::string::npos);

  const Outcome csv = exported("csv", "csv", {"--rhoplus", "--floor", "5"});
  EXPECT_EQ(csv.status, 0) << csv.errors;
  EXPECT_EQ(files_in("csv"),
            (Files{"200E_curves.csv", "200E_parameters.csv", "200E_rhoplus.csv", "200E_tensors.csv"}));
}

TEST_F(Batch_export, Wrong_options_are_refused_before_anything_is_made) {
  write_field_files(1);
  import_field_files();
  const std::tuple<const char*, Arguments, int, const char*> cases[] = {
      {"gpkg", {}, 2, "gpkg"},
      {"edi", {"--rotate", "400"}, 2, "400"},
      {"edi", {"--reduction", "1"}, 2, "Raw and averaged curves are written to CSV only"},
      {"csv", {"--reduction", "3"}, 2, "3"},
      {"csv", {"--reduction", "0", "--rotate", "30"}, 2, "Only merged curves can be rotated"},
      {"xml", {}, 2, "xml"},
      {"edi", {"--rhoplus"}, 2, "Results of Rho+ are written to CSV only"},
      {"edi", {"--floor", "5"}, 2, "--floor and the other settings of Rho+ are for csv with --rhoplus only"},
      {"csv", {"--plot-link", "a"}, 2, "--plot-link is for geojson and kml only"},
      {"edi", {"--line", "900E"}, 2, "The survey has no line 900E; it has 200E"}};
  for (const auto& [format, rest, status, words] : cases) {
    const Outcome outcome = exported(format, "out", rest);
    EXPECT_EQ(outcome.status, status) << words;
    EXPECT_NE(outcome.errors.find(words), std::string::npos) << outcome.errors;
  }
  EXPECT_EQ(exported("edi", "survey.mdb").status, 1) << "a file is no folder";
  EXPECT_FALSE(fs::exists(folder_.path("out")));
}

TEST_F(Batch_export, A_table_of_curves_comes_back_from_another_survey_as_it_was) {
  write_field_files(3);
  import_field_files();
  ASSERT_EQ(run({"new", "second.mdb"}).status, 0);
  ASSERT_EQ(exported("csv", "first", {"--reduction", "0"}).status, 0);
  const Outcome imported = run({"import", "second.mdb", "first/200E_curves.csv", "--auto"});
  ASSERT_EQ(imported.status, 0) << imported.errors << imported.output;
  const Outcome again = exported("csv", "second", {"--reduction", "0"}, "second.mdb");
  ASSERT_EQ(again.status, 0) << again.errors;
  const auto before = points_of(file_contents(folder_.path("first/200E_curves.csv")));
  const auto after = points_of(file_contents(folder_.path("second/200E_curves.csv")));
  EXPECT_EQ(before.size(), 3U * 3U * (17U + 21U) * 4U);
  std::size_t differences = 0;
  for (const auto& [key, values] : before) {
    const auto found = after.find(key);
    if ((found == after.end() || found->second != values) && ++differences <= 3) {
      ADD_FAILURE() << key << "\n" << values << "\n" << (found == after.end() ? "missing" : found->second);
    }
  }
  EXPECT_EQ(differences, 0U);
  EXPECT_EQ(after.size(), before.size());
}
