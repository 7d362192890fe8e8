// What field files propose for their import, and why.
#include <cmath>

#include "import/field_files.h"
#include "import/proposals/line_proposals.h"
#include "projections/survey_projection.h"
#include "tests/import/made_site_files.h"
#include "tests/import/proposals/planned_import.h"
#include "tests/import/readers/made_fields.h"

using namespace Module_data_file;

namespace {

std::string why(const Proposals& proposals, ProposedChoice choice) {
  const Proposal* const proposal = proposals.find(choice);
  return proposal == nullptr ? "" : proposal->value + ": " + proposal->why;
}

}  // namespace

TEST(LineInName, Is_its_digits_with_the_letter_behind_them) {
  const std::vector<std::pair<std::string, std::string>> names{
      {"200E", "200E"},   {"line_0200s", "200S"}, {"survey3", "3E"},  {"2019 line 12", "12E"},
      {"05n_2020", "5N"}, {"12east", "12E"},      {"L7west 2", "2E"}, {"tensor_line_b", ""},
      {"", ""},           {"line-300 N", "300E"}, {"007W.new", "7W"}};
  for (const auto& [name, line] : names) {
    EXPECT_EQ(line_in_name(name, LineDirection::local_east).value_or(""), line) << name;
  }
  EXPECT_EQ(line_in_name("survey3", LineDirection::local_north), "3N");
  EXPECT_EQ(line_in_name(std::string(40, '9'), LineDirection::local_east), std::nullopt);
}

// 0.01 degrees of longitude at 30 S are 965 m; the last file is nearer to the western end.
TEST_F(PlannedImport, Sites_on_a_line_get_their_distance_along_it) {
  const std::vector<std::string> files{
      site("run/c.edi", "ET1", "-30.0", "139.02"), site("run/a.edi", "ET2", "-30.0001", "139.00"),
      site("run/d.edi", "ET3", "-30.0002", "139.06"), site("run/b.edi", "ET4", "-30.0", "139.01")};
  const Proposals proposals = proposals_for(files);
  EXPECT_EQ(proposals.choices.stations_by, StationsBy::distance);
  EXPECT_EQ(why(proposals, ProposedChoice::stations),
            "distance along the line: the sites lie on a line of 5.8 km");
  EXPECT_EQ(why(proposals, ProposedChoice::line), "100E: the lowest hundred that the survey hasn't");
  EXPECT_EQ(why(proposals, ProposedChoice::rate),
            "400: four times the highest frequency of all files, 100 Hz");
  EXPECT_EQ(why(proposals, ProposedChoice::reference), "Remote: all 4 files have remote channels");
  EXPECT_EQ(proposals.choices.ReferenceType, 1);
  EXPECT_EQ(why(proposals, ProposedChoice::projection),
            "UTM 54S | WGS 84: all 4 files have latitude and longitude; the zone of the median longitude");
  EXPECT_EQ(proposals.find(ProposedChoice::turn_ey), nullptr);
  const std::vector<double> stations = planned_stations(plan_for(files, proposals.choices));
  EXPECT_EQ(stations[1], 0);  // the western end is nearer to the first file
  EXPECT_NEAR(stations[3], 964.5, 2);
  EXPECT_NEAR(stations[0], 1929, 3);
  EXPECT_NEAR(stations[2], 5787, 6);

  ASSERT_EQ(run_import(proposals.choices, files, ImportMode::import, report), 0);
  EXPECT_EQ(ImportRun::stations(), stations) << "an import by distance needs no plan of the caller";
  EXPECT_EQ(rows_in("[Projection Defintion Table]"), 1);
  EXPECT_EQ(Module_projections::current_coord_system().zone_number, 54);
}

// Whatever the format, a site is a site: on one line, with distances, and each Ey turned where it needs it.
TEST_F(PlannedImport, Sites_of_all_formats_lie_on_one_line) {
  const auto at = [](const char* name, const char* longitude, bool turned = false) {
    return MadeSite{.name = name, .latitude = "-30.0", .longitude = longitude, .turned = turned};
  };
  (void)folder.write("run/a.xml", made_emtf_xml(at("MT1", "139.00")));
  (void)folder.write("run/b.zrr", made_z_file(at("MT2", "139.01", true)));
  (void)folder.write("run/c.txt", made_j(at("MT3", "139.02")));
  (void)site("run/d.edi", "MT4", "-30.0", "139.03");
  (void)folder.write("run/notes.txt", "Transfer functions in four formats\n");
  (void)folder.write("run/c.stn", made_j());
  (void)folder.write("run/c.1n1.rf", "1.0 2.0 3.0 4.0\n");
  (void)folder.write("run/cut.xml", "<EM_TF>\n<Site>");
  std::vector<std::string> files = field_files_of({folder.path("run")});
  ASSERT_EQ(files.size(), 5U) << "with the cut one, which its table tells of";
  std::erase(files, folder.path("run/cut.xml"));
  const Proposals proposals = proposals_for(files);
  EXPECT_EQ(why(proposals, ProposedChoice::stations),
            "distance along the line: the sites lie on a line of 2.9 km");
  EXPECT_EQ(why(proposals, ProposedChoice::turn_ey),
            "where needed: 2 of 4 files have YX phases in -180..-90");
  EXPECT_EQ(why(proposals, ProposedChoice::reference), "Not Remote: 1 of 4 files have remote channels");
  EXPECT_EQ(proposals.choices.ReferenceType, 0);
  EXPECT_EQ(proposals.find(ProposedChoice::from_impedance), nullptr) << "curves follow without being asked";
  const ImportPlan plan = plan_for(files, proposals.choices);
  ASSERT_EQ(plan.sections.size(), 4U);
  const std::vector<std::string> names{"MT1", "MT2", "MT3", "MT4"};
  for (std::size_t index = 0; index < 4; ++index) {
    const PlannedSection& row = plan.sections[index];
    EXPECT_EQ(row.site, names[index]);
    EXPECT_EQ(row.place, "30.0000 S, 139.0" + std::to_string(index) + "00 E");
    EXPECT_NEAR(row.station, 964.5 * static_cast<double>(index), 4.0);
    EXPECT_EQ(row.turn_ey, index == 0 || index == 2);
    EXPECT_EQ(row.frequencies, index == 3 ? 3 : 2);
    EXPECT_TRUE(row.problems.empty()) << row.file;
    EXPECT_EQ(row.can_edit(PlanCell::station), true);
    EXPECT_EQ(row.can_edit(PlanCell::from_impedance), false);
  }
  ASSERT_EQ(run_import(proposals.choices, files, ImportMode::import, report), 0);
  EXPECT_EQ(ImportRun::stations(), planned_stations(plan));
  // Without places the names tell them apart.
  std::vector<std::string> placeless;
  for (const char* const name : {"A7", "B8"}) {
    placeless.push_back(folder.write(std::string(name) + ".j", replaced(made_j(at(name, "")), "-30.0", "")));
  }
  const Proposals by_name = proposals_for(placeless);
  EXPECT_EQ(by_name.choices.stations_by, StationsBy::sectid_digits);
  EXPECT_EQ(why(by_name, ProposedChoice::stations),
            "digits of the site name: 2 files have no latitude and longitude; the site name has letters: its "
            "last digits");
  EXPECT_EQ(why(by_name, ProposedChoice::reference), "Not Remote: no file shows remote channels");
  // Two files of one site are averaged, which the user has to know.
  std::vector<std::string> twice;
  for (const char* const name : {"twice/a.xml", "twice/b.xml"}) {
    twice.push_back(folder.write(name, made_emtf_xml(at("MT9", "139.00"))));
  }
  const ImportPlan both = plan_for(twice, proposals_for(twice).choices);
  EXPECT_EQ(both.sections.at(0).remarks,
            std::vector<std::string>{"site MT9 is in b.xml, too: both are taken as one site, and averaged"});
}

// Zone 54 begins at 138 E. Taken in two zones, the sites would be half a million metres apart.
TEST_F(PlannedImport, A_line_across_a_border_of_zones_stays_one) {
  std::vector<std::string> files;
  for (const char* const longitude : {"137.97", "137.98", "137.99", "138.00", "138.01", "138.02"}) {
    files.push_back(site(std::string(longitude) + ".edi", longitude, "10.0", longitude));
  }
  const Proposals proposals = proposals_for(files);
  ASSERT_EQ(proposals.choices.stations_by, StationsBy::distance);
  EXPECT_EQ(proposals.choices.projection->name, "UTM 54N | WGS 84");
  const std::vector<double> stations = planned_stations(plan_for(files, proposals.choices));
  for (std::size_t index = 1; index < stations.size(); ++index) {
    EXPECT_NEAR(stations[index] - stations[index - 1], 1096, 3);
  }
}

TEST_F(PlannedImport, A_line_that_has_sites_keeps_its_zero_and_direction) {
  const std::vector<std::string> first{site("7E/a.edi", "A", "-30", "139.03"),
                                       site("7E/b.edi", "B", "-30.0003", "139.04"),
                                       site("7E/c.edi", "C", "-30", "139.06")};
  const std::vector<std::string> second{site("7E/d.edi", "D", "-30", "139.00"),
                                        site("7E/e.edi", "E", "-30", "139.09")};
  const ImportChoices chosen = proposals_for(first).choices;
  const ImportPlan plan = plan_for(first, chosen);
  ASSERT_EQ(run_import(chosen, first, ImportMode::import, report), 0);
  const Proposals again = proposals_for(first);
  EXPECT_EQ(why(again, ProposedChoice::line), "7E: the survey has these files on it");
  EXPECT_EQ(planned_stations(plan_for(first, again.choices)), planned_stations(plan));

  const Proposals more = proposals_for(second);
  EXPECT_EQ(why(more, ProposedChoice::stations),
            "distance along the line: the sites lie on a line of 8.7 km, which keeps its zero and direction");
  const std::vector<double> stations = planned_stations(plan_for(second, more.choices));
  EXPECT_NEAR(stations[0], -2894, 4);
  EXPECT_NEAR(stations[1], 5787, 6);
  EXPECT_EQ(proposals_for({second[0]}).choices.stations_by, StationsBy::distance) << "one file joins it, too";
}

TEST_F(PlannedImport, Stations_are_what_tells_the_sites_apart) {
  struct Case {
    std::vector<std::string> sectids;
    StationsBy rule;
    std::vector<double> stations;
    const char* why;
  };
  const std::vector<Case> cases{
      {{"ET003", "ET002", "ET001"},
       StationsBy::sectid_digits,
       {3, 2, 1},
       "SECTID has letters: its last digits"},
      {{"30", "-20", "10"}, StationsBy::sectid, {30, -20, 10}, "SECTID is a number"},
      {{"A7", "B7", "C8"}, StationsBy::count, {100, 200, 300}, "the digits of SECTID don't tell"},
      {{"north", "7", "8"}, StationsBy::count, {100, 200, 300}, "the digits of SECTID don't tell"},
      {{"12.5", "12.7", "13"}, StationsBy::count, {100, 200, 300}, "the whole numbers of SECTID don't tell"},
      {{"A7", "B7", "a7"}, StationsBy::count, {100, 200, 100}, "the digits of SECTID don't tell"},
      {{"MT7", "MT7", "MT9"}, StationsBy::sectid_digits, {7, 7, 9}, "last digits"}};  // repeats of one site
  for (const Case& each : cases) {
    SCOPED_TRACE(each.sectids.front());
    std::vector<std::string> files;
    for (const std::string& sectid : each.sectids) {
      files.push_back(site(sectid + std::to_string(files.size()) + ".edi", sectid));
    }
    const Proposals proposals = proposals_for(files);
    EXPECT_EQ(proposals.choices.stations_by, each.rule);
    EXPECT_NE(why(proposals, ProposedChoice::stations).find(each.why), std::string::npos);
    EXPECT_NE(why(proposals, ProposedChoice::stations).find("3 files have no latitude and longitude"),
              std::string::npos);
    EXPECT_EQ(planned_stations(plan_for(files, proposals.choices)), each.stations);
    EXPECT_EQ(proposals.find(ProposedChoice::projection), nullptr);
  }
  // One name for sites at two places, a single file, and none.
  const Proposals two =
      proposals_for({site("p.edi", "MT7", "-30", "139"), site("q.edi", "MT7", "-30.4", "139.1"),
                     site("r.edi", "MT8", "-30.1", "139.4")});
  EXPECT_EQ(two.choices.stations_by, StationsBy::count);
  EXPECT_EQ(proposals_for({site("s.edi", "ET9", "-30", "139")}).choices.stations_by,
            StationsBy::sectid_digits);
  EXPECT_EQ(proposals_for({}).choices.decode[decode_line_number].specified, "100E");
}

TEST_F(PlannedImport, Folders_give_lines_and_each_line_its_distances) {
  std::vector<std::string> files;
  for (const char* const line : {"100N", "200N"}) {
    for (const char* const place : {"0", "1", "2"}) {
      files.push_back(site(std::string(line) + "/" + place + ".edi", place,
                           std::string("-30.") + line[0] + place, std::string("139.0") + line[0]));
    }
  }
  const Proposals proposals = proposals_for(files);
  EXPECT_EQ(why(proposals, ProposedChoice::line), "100N, 200N: the digits of the folders' names");
  EXPECT_EQ(proposals.choices.stations_by, StationsBy::distance);
  const ImportPlan plan = plan_for(files, proposals.choices);
  EXPECT_EQ(plan.sections[2].line, "100N");
  EXPECT_EQ(plan.sections[3].line, "200N");
  EXPECT_EQ(plan.sections[3].station, 0) << "each line has its own zero";
  EXPECT_EQ(plan.summary(), "6 files, 6 stations on 2 lines; 6 rows with problems") << "all have namesakes";
  ASSERT_EQ(run_import(proposals.choices, files, ImportMode::import, report, {}, SharedStations::tell, &plan),
            0);
  EXPECT_EQ(rows_in("StationsTable WHERE SurveyLine = '200N'"), 3);
  // An area whose digits are taken goes on above the line's stations.
  ImportChoices chosen = proposals.choices;
  chosen.folder_lines.clear();
  chosen.decode[decode_line_number].specified = "200N";
  const std::vector<std::string> area{site("x.edi", "A1", "-31", "139"),
                                      site("y.edi", "B1", "-31.5", "139.4"),
                                      site("z.edi", "C1", "-31", "139.8")};
  PlanMaker maker;
  (void)propose_stations(scanned(area), chosen, maker);
  EXPECT_EQ(planned_stations(plan_for(area, chosen)), (std::vector<double>{2300, 2400, 2500}));
}

TEST_F(PlannedImport, Tensors_and_rates_are_proposed_where_the_files_need_them) {
  const std::string impedances = ">ZYXR //3\n-1 -2 -3\n>ZYXI //3\n-1 -2 -3\n";
  const std::vector<std::string> files{
      folder.write("z.edi", made_edi({MadeSection{.sectid = "1", .blocks = impedances}})),
      site("plain.edi", "2"),
      folder.write("f.res", made_fixed_columns({{16.0, 0.25, {1e-4, 2e-4}, {}}, {1024.0, 0.5, {}, {}}})),
      folder.write("junk.txt", "some notes\n")};
  const Proposals proposals = proposals_for(files);
  EXPECT_EQ(why(proposals, ProposedChoice::turn_ey),
            "where needed: 1 of 2 files have YX phases in -180..-90");
  EXPECT_EQ(why(proposals, ProposedChoice::from_impedance),
            "computed: 1 of 2 files have impedances without curves");
  EXPECT_EQ(why(proposals, ProposedChoice::rate),
            "4096: four times the highest frequency of all files, 1024 Hz; files of fixed columns have four "
            "times their own last one");
  ImportChoices chosen = proposals.choices;
  chosen.decode[decode_sample_rate].specified = "512";
  const ImportPlan plan = plan_for(files, chosen);
  EXPECT_TRUE(plan.sections[0].turn_ey && plan.sections[0].from_impedance);
  EXPECT_FALSE(plan.sections[1].turn_ey || plan.sections[1].from_impedance);
  EXPECT_EQ(plan.sections[1].rate, 512);
  EXPECT_EQ(plan.sections[2].rate, 4096);
  EXPECT_TRUE(has(plan.sections[3], PlanProblem::not_readable));
}

// Without places, whose digits don't tell them apart.
TEST_F(PlannedImport, Sites_in_order_keep_their_stations) {
  const std::vector<std::string> first{site("7E/b.edi", "B7"), site("7E/c.edi", "C7"),
                                       site("7E/again.edi", "B7")};
  const Proposals proposals = proposals_for(first);
  ASSERT_EQ(run_import(proposals.choices, first, ImportMode::import, report), 0);
  EXPECT_EQ(ImportRun::stations(), (std::vector<double>{100, 200})) << "the repeat is at the site's station";
  const std::vector<std::string> more{
      site("7E/a.edi", "A7"), first[0], first[1], first[2], site("7E/d.edi", "D7"), site("7E/c2.edi", "C7")};
  const ImportPlan plan = plan_for(more, proposals_for(more).choices);
  EXPECT_EQ(planned_stations(plan), (std::vector<double>{300, 100, 200, 100, 400, 200}));
  EXPECT_EQ(plan.summary(), "6 files, 4 stations on line 7E");
  ImportPlan without_line;
  without_line.sections.resize(1);
  without_line.sections[0].is_stored = true;
  EXPECT_EQ(without_line.summary(), "1 file, 1 station");
  // One name at two places is two sites, which go above what the file of fixed columns holds.
  const std::vector<std::string> placed{
      folder.write("8E/f.res", made_fixed_columns({{16.0, 0.25, {1e-4, 2e-4}, {}}, {1024.0, 0.5, {}, {}}})),
      site("8E/p.edi", "MT7", "-30", "139"), site("8E/q.edi", "MT7", "-30.4", "139.1"),
      site("8E/r.edi", "MT8", "-30.1", "139.4"), site("8E/s.edi", "MT7", "-30.40003", "139.1")};
  const std::vector<double> stations = planned_stations(plan_for(placed, proposals_for(placed).choices));
  const double above = 100 * (std::floor(std::max(stations[0], 0.0) / 100) + 1);
  EXPECT_EQ(stations, (std::vector<double>{stations[0], above, above + 100, above + 200, above + 100}));
  EXPECT_GT(stations[0], 100) << "else it says nothing";
}

// 0.00004 degrees of longitude at 30 S are 4 m, which is what two fixes of one site differ by.
TEST_F(PlannedImport, Repeats_of_a_site_share_its_distance) {
  const auto at = [&](const char* file, const char* name, const char* longitude) {
    return site(std::string("7E/") + file + ".edi", name, "-30", longitude);
  };
  const std::vector<std::string> first{at("a", "A", "139"), at("b", "B", "139.01"), at("c", "C", "139.03"),
                                       at("b2", "B", "139.01004")};
  const Proposals proposals = proposals_for(first);
  ASSERT_EQ(proposals.choices.stations_by, StationsBy::distance);
  const std::vector<double> stations = planned_stations(plan_for(first, proposals.choices));
  EXPECT_EQ(stations[3], stations[1]);
  ASSERT_EQ(run_import(proposals.choices, first, ImportMode::import, report), 0);
  const std::vector<std::string> second{at("c3", "c", "139.02996"), at("d", "D", "139.04")};
  EXPECT_EQ(planned_stations(plan_for(second, proposals_for(second).choices))[0], stations[2]);
}

TEST_F(PlannedImport, Two_parallel_lines_are_no_distances) {
  std::vector<std::string> files;
  for (const std::string place : {"0", "1", "2", "3", "4"}) {
    files.push_back(site("run/" + place + "a.edi", place + "00A", "-30.000", "139.0" + place));
    files.push_back(site("run/" + place + "b.edi", place + "00B", "-30.002", "139.0" + place));
  }
  const Proposals proposals = proposals_for(files);
  EXPECT_EQ(why(proposals, ProposedChoice::stations)
                .find("order of the files: the sites of line 100E lie on two parallel lines, 2"),
            0U)
      << why(proposals, ProposedChoice::stations);
  EXPECT_EQ(planned_stations(plan_for(files, proposals.choices)),
            (std::vector<double>{100, 200, 300, 400, 500, 600, 700, 800, 900, 1000}));

  ImportChoices without_line = proposals.choices;  // as when its columns are still being typed
  without_line.decode[decode_line_number].use_file_name = true;
  for (const PlannedSection& row : plan_for(files, without_line).sections) {
    for (const std::string& remark : row.remarks) {
      EXPECT_EQ(remark.find("two parallel lines"), std::string::npos) << remark;
    }
  }
}

// Which of two sites belongs to which line is nothing that their places say.
TEST_F(PlannedImport, Crossing_lines_are_no_distances_and_the_plan_says_what_parts_them) {
  std::vector<std::string> files;
  for (const std::string place : {"0", "1", "2", "3", "4"}) {
    files.push_back(site("run/" + place + "a.edi", place + "00A", "-30.02", "139.0" + place));
    files.push_back(site("run/" + place + "b.edi", place + "00B", "-30.0" + place, "139.02"));
  }
  const Proposals proposals = proposals_for(files);
  EXPECT_EQ(why(proposals, ProposedChoice::stations)
                .find("order of the files: the sites of line 100E don't lie on a line; "),
            0U)
      << why(proposals, ProposedChoice::stations);
  const ImportPlan plan = plan_for(files, proposals.choices);
  const auto advises = [](const PlannedSection& row) {
    return std::ranges::any_of(row.remarks, [](const std::string& remark) {
      return remark.ends_with("if they are of several, a folder for each makes lines of them");
    });
  };
  EXPECT_EQ(std::ranges::count_if(plan.sections, advises), 1) << "once for the line";
  const std::vector<std::string> corners{site("three/a.edi", "A", "-30.00", "139.00"),
                                         site("three/b.edi", "B", "-30.05", "139.03"),
                                         site("three/c.edi", "C", "-30.00", "139.06")};
  const ImportPlan area = plan_for(corners, proposals_for(corners).choices);
  EXPECT_EQ(std::ranges::count_if(area.sections, advises), 1);
}

TEST_F(PlannedImport, Tables_in_one_folder_that_cannot_be_one_line_get_lines_of_their_own) {
  const std::string avg =
      "skp Station Freq Comp Resistivity Phase\n 2 100 1 ExHy 10 500\n 2 150 1 ExHy 10 500\n";
  const auto line = [&](const std::string& a, const std::string& of_a, const std::string& b,
                        const std::string& of_b) {
    std::vector<std::string> files;
    for (const auto& [file, stn] : {std::pair{a, of_a}, std::pair{b, of_b}}) {
      files.push_back(folder.write(file + ".avg", avg));
      if (!stn.empty()) {
        (void)folder.write(file + ".stn", stn);
      }
    }
    const Proposals proposals = proposals_for(files);
    const ImportPlan plan = plan_for(files, proposals.choices);
    EXPECT_EQ(plan.sections.size(), 2U);
    EXPECT_EQ(why(proposals, ProposedChoice::line).find("in common") != std::string::npos,
              plan.sections[0].line != plan.sections[1].line)
        << why(proposals, ProposedChoice::line);
    return plan.sections[0].line + " " + plan.sections[1].line;
  };
  const std::string here = "100 1000 2000\n150 1050 2000\n";
  const std::string there = "100 1000 2300\n150 1050 2400\n";
  EXPECT_EQ(line("x/L200N", here, "x/L300N", there), "200N 300N");
  EXPECT_EQ(line("y500/a", here, "y500/b", there), "500E 100E");
  EXPECT_EQ(line("z/1te", here, "z/1tm", here), "100E 100E") << "two tables of one line";
  EXPECT_EQ(line("u/L200N", "", "u/L300N", ""), "200N 300N");
  EXPECT_EQ(line("v/a", "", "v/b", ""), "100E 100E") << "nothing tells";
}

TEST_F(PlannedImport, A_line_goes_on_however_it_is_typed) {
  const std::vector<std::string> first{site("7E/a.edi", "A", "-30", "139.03"),
                                       site("7E/b.edi", "B", "-30", "139.06")};
  ASSERT_EQ(run_import(proposals_for(first).choices, first, ImportMode::import, report), 0);
  const std::vector<std::string> second{site("new/d.edi", "D", "-30", "139.09")};
  PlanMaker maker;
  Proposals north = propose(scanned(second), maker, LineDirection::local_north);
  EXPECT_EQ(why(north, ProposedChoice::line), "100N: the lowest hundred that the survey hasn't");
  for (const char* const line : {"7", "7e", "7E"}) {
    ImportChoices chosen = proposals_for(second).choices;
    chosen.decode[decode_line_number].specified = line;
    EXPECT_NE(propose_stations(scanned(second), chosen, maker).why.find("keeps its zero"), std::string::npos)
        << line;
    EXPECT_EQ(chosen.decode[decode_line_number].specified, line) << "the user may still be typing";
    EXPECT_EQ(chosen.stations_by, StationsBy::distance) << line;
  }
}

TEST_F(PlannedImport, Changed_choices_take_what_was_proposed_with_them) {
  const std::vector<std::string> first{site("7N/a.edi", "A", "-30.03", "139"),
                                       site("7N/b.edi", "B", "-30.06", "139")};
  ASSERT_EQ(run_import(proposals_for(first).choices, first, ImportMode::import, report), 0);
  const std::vector<ScannedFile> files = scanned({site("new/d.edi", "5", "-30.09", "139")});
  PlanMaker maker;
  Proposals proposals = propose(files, maker);
  ImportChoices chosen = proposals.choices;
  const auto line = [&] { return chosen.decode[decode_line_number].specified; };
  EXPECT_EQ(why(proposals, ProposedChoice::stations), "SECTID: line 100E has one place; SECTID is a number");

  chosen.line_direction = LineDirection::local_north;
  follow_choices(files, maker, ChosenStations::by_proposal, chosen, proposals);
  EXPECT_EQ(line(), "100N");
  EXPECT_EQ(why(proposals, ProposedChoice::line), "100N: the lowest hundred that the survey hasn't");
  EXPECT_EQ(why(proposals, ProposedChoice::stations), "SECTID: line 100N has one place; SECTID is a number");

  chosen.decode[decode_line_number].specified = "7N";
  follow_choices(files, maker, ChosenStations::by_proposal, chosen, proposals);
  EXPECT_EQ(chosen.stations_by, StationsBy::distance) << "the line has its zero";
  EXPECT_EQ(proposals.choices.stations_by, StationsBy::distance);

  chosen.line_direction = LineDirection::local_east;
  chosen.stations_by = StationsBy::sectid;
  follow_choices(files, maker, ChosenStations::by_hand, chosen, proposals);
  EXPECT_EQ(line(), "7N") << "typed";
  EXPECT_EQ(chosen.stations_by, StationsBy::sectid) << "chosen by hand";
}
