// Positions by distance through the batch program: taken, offered where station numbers are none, and
// refused.
#include <filesystem>
#include <tuple>

#include "core/session_state.h"
#include "database/sites.h"
#include "database/survey_database.h"
#include "occam/occam_files.h"
#include "tests/batch/batch_program.h"
#include "tests/support/recording_interface.h"

namespace {

const std::vector<std::string> create{"occam",       "survey.mdb",  "--line",   "200E", "--reference", "0",
                                      "--data-type", "ExHy",        "--dipole", "100",  "--directory", "run",
                                      "--overwrite", "--no-rhoplus"};

class Batch_positions : public Batch_program {
 protected:
  /// Stations 100, 200, ... of line 200E at these degrees of latitude and longitude.
  void store_sites(const std::vector<std::pair<double, double>>& places) const {
    const std::filesystem::path started_in = std::filesystem::current_path();
    const RecordingInterface interface;
    reset_session_state();
    session().database_file = folder_.path("survey.mdb");
    ASSERT_EQ(Module_database::open_database(), 0);
    Module_database::open_survey().database.execute("DELETE FROM SitesTable");
    for (std::size_t i = 0; i < places.size(); ++i) {
      Module_database::Site site;
      site.line = "200E";
      site.station = 100.0 * static_cast<double>(i + 1);
      site.latitude = places[i].first;
      site.longitude = places[i].second;
      site.SurveyFile = "a.edi";
      std::ignore = Module_database::keep_site(site);
    }
    ASSERT_EQ(Module_database::close_database(), 0);
    std::filesystem::current_path(started_in);
  }

  static std::vector<std::string> with(std::vector<std::string> arguments, const std::string& option) {
    arguments.push_back(option);
    return arguments;
  }
};

TEST_F(Batch_positions, Are_distances_where_the_sites_are_on_a_line) {
  write_field_files(4);
  import_field_files();
  const auto offsets = [this] {
    Module_occam::OccamData data;
    EXPECT_EQ(Module_occam::read_occam_data_file(folder_.path("run/occamdat"), data), 0);
    EXPECT_EQ(data.site_names.back(), "station_400.0");
    return data.site_offsets;
  };
  store_sites({});
  EXPECT_EQ(run(create).errors.find("numbers"), std::string::npos);
  EXPECT_EQ(run(with(create, "--by-distance")).status, 0);
  EXPECT_EQ(offsets(), (std::vector<float>{0, 100, 200, 300}));  // from the map places of the files

  store_sites({{-25.0, 141.0}, {-25.01, 141.0}, {-25.02, 141.0}, {-25.03, 141.0}});
  const std::string warning = "The stations of line 200E are 100 m apart by their numbers, its sites 1.1 km";
  EXPECT_TRUE(run(create).errors.starts_with(warning + ": see --by-distance\n"));
  Outcome outcome = run(with(create, "--by-distance"));
  ASSERT_EQ(outcome.status, 0) << outcome.errors;
  EXPECT_EQ(outcome.errors.find("numbers"), std::string::npos);
  EXPECT_NEAR(offsets().at(3), 3.0 * 0.9996 * 1107.8, 1.0);  // a degree of latitude has 110 776 m

  store_sites({{-25.0, 141.0}, {-25.01, 141.01}, {-25.02, 141.0}, {-25.0, 141.02}});
  const std::string no_line = "The sites of line 200E lie on no straight line";
  outcome = run(with(create, "--by-distance"));
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(outcome.errors.starts_with(no_line)) << outcome.errors;
  EXPECT_TRUE(outcome.errors.ends_with("so distances along it mean nothing\n")) << outcome.errors;
  outcome = run(create);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.errors.find("and its station numbers are no distances\n"), std::string::npos);
  if (!program_draws) {
    return;
  }
  const std::vector<std::string> plots{"plots", "survey.mdb", "--line", "200e", "--output", "line.pdf"};
  outcome = run(with(plots, "--by-distance"));
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.errors.find(no_line), std::string::npos) << outcome.errors;
  EXPECT_FALSE(std::filesystem::exists(folder_.path("line.pdf")));
  store_sites({{-25.0, 141.0}, {-25.01, 141.0}, {-25.02, 141.0}, {-25.03, 141.0}});
  EXPECT_EQ(run(with(plots, "--by-distance")).status, 0);
  EXPECT_TRUE(std::filesystem::exists(folder_.path("line.pdf")));
}

}  // namespace
