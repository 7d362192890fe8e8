// An import that chooses for itself: "import --auto", and what it would store.
#include <filesystem>

#include <gtest/gtest.h>

#include "tests/batch/batch_program.h"
#include "tests/formats/edi/made_edi.h"

namespace {

using Json = nlohmann::json;

class Auto_import : public Batch_program {
 protected:
  Auto_import() {
    std::filesystem::create_directories(folder_.path("field/300N"));
    // 0.01 degrees of latitude are 1.1 km; the phases of YX say that Ey is turned.
    for (const char* const place : {"1", "2", "3"}) {
      const std::string text =
          made_edi({MadeSection{.sectid = "\"ET" + std::string(place) + "\"",
                                .blocks = ">RHOYX //3\n1 2 3\n>PHSYX //3\n-100 -120 -140\n"}});
      (void)folder_.write(
          "field/300N/" + std::string(place) + ".EDI",
          replaced(text, "  UNITS=M\n", "  UNITS=M\n  LAT=-30.0" + std::string(place) + "\n  LONG=139.5\n"));
    }
    (void)folder_.write("field/300N/1d.dat",
                        "Frequency Domain EM Data, version 1\nline 400E survey\n"
                        "Station no. 7000 5001.5 7002.5 88 1\n 100  both  0 0 12.5 3.5 9 0.1 0.2\n");
    (void)folder_.write("field/notes.txt", "Recorded on DC batteries\n");
    (void)folder_.write("field/picture.png", std::string("\x89PNG\r\n\x1a\n\0\0", 10));
    EXPECT_EQ(run({"new", "survey.mdb"}).status, 0);
  }
};

}  // namespace

TEST_F(Auto_import, Says_what_it_would_store_and_then_stores_it) {
  const std::string before = file_contents(folder_.path("survey.mdb"));
  const Outcome dry = run({"import", "survey.mdb", "field", "--auto", "--dry-run"});
  EXPECT_EQ(dry.status, 0) << dry.errors;
  for (const char* const text : {"Reference: Remote (all 3 files have remote channels)\n",
                                 "Line: 300N (the digits of the folder's name)\n", "Rate: 400 (four times",
                                 "Turn Ey: where needed (all 3 files have YX phases in -180..-90)\n",
                                 "Stations: distance along the line (the sites lie on a line of 2.2 km)\n",
                                 "Left out, no field files: 2\n", "1.EDI   ET1   300N  0 ",
                                 "4 files, 4 stations on 2 lines; nothing is stored\n"}) {
    EXPECT_NE(dry.output.find(text), std::string::npos) << text << "in\n" << dry.output;
  }
  const Json plan = run_for_json({"import", "survey.mdb", "field", "--auto", "--dry-run", "--json"});
  EXPECT_EQ(file_contents(folder_.path("survey.mdb")), before);
  EXPECT_FALSE(std::filesystem::exists(folder_.path("survey.bak")));
  EXPECT_EQ(plan["files_left_out"], 2);
  EXPECT_EQ(plan["proposals"][0]["value"], "Remote");
  ASSERT_EQ(plan["rows"].size(), 4U);
  EXPECT_EQ(plan["rows"][0]["turn_ey"], true);

  const Outcome imported = run({"import", "survey.mdb", "field", "--auto"});
  EXPECT_EQ(imported.status, 0) << imported.errors;
  EXPECT_NE(imported.output.find("Line: 300N (the digits"), std::string::npos);
  EXPECT_NE(imported.output.find("4 files, 13 readings stored"), std::string::npos);
  const Json info = run_for_json({"info", "survey.mdb", "--json"});
  std::vector<double> planned;
  for (const Json& row : plan["rows"]) {
    if (row["line"] == "300N") {
      planned.push_back(row["station"]);
    }
  }
  const Json& line = info["lines"][0]["line"] == "300N" ? info["lines"][0] : info["lines"][1];
  EXPECT_EQ(line["stations"].get<std::vector<double>>(), planned);
  EXPECT_EQ(info["scan_rates"], Json::parse("[400.0]"));
  EXPECT_EQ(info["reference_types"], Json::parse("[1]"));
}

TEST_F(Auto_import, Each_option_wins_over_its_proposal) {
  const Json plan = run_for_json({"import", "survey.mdb", "field", "--auto", "--dry-run", "--json", "--line",
                                  "7W", "--reference", "0", "--rate", "64", "--turn-ey=never",
                                  "--start-station", "50", "--station-step", "25", "--extension", "edi"});
  ASSERT_EQ(plan["rows"].size(), 3U);
  for (std::size_t row = 0; row < 3; ++row) {
    EXPECT_EQ(plan["rows"][row]["line"], "7W");
    EXPECT_EQ(plan["rows"][row]["station"], 50 + 25 * static_cast<int>(row));
    EXPECT_EQ(plan["rows"][row]["rate"], 64);
    EXPECT_EQ(plan["rows"][row]["turn_ey"], false);
  }
  for (const Json& proposal : plan["proposals"]) {
    EXPECT_TRUE(proposal["what"] == "Reduction" || proposal["what"] == "Event" ||
                proposal["what"] == "Projection")
        << proposal;
  }
  std::filesystem::rename(folder_.path("field/300N"), folder_.path("field/plain"));
  const Json north = run_for_json({"import", "survey.mdb", "field", "--auto", "--dry-run", "--json",
                                   "--line-direction", "NE", "--extension", "edi"});
  EXPECT_EQ(north["rows"][0]["line"], "100N");
  // Without --auto the dry run has what is given, and no proposals.
  const Json given = run_for_json({"import", "survey.mdb", "field", "--dry-run", "--json", "--line", "7W",
                                   "--reference", "0", "--rate", "64", "--event", "0"});
  EXPECT_TRUE(given["proposals"].empty());
  EXPECT_EQ(given["rows"].size(), 3U);
}

TEST_F(Auto_import, Refuses_what_makes_no_sense) {
  EXPECT_EQ(run({"import", "survey.mdb", "field", "--auto", "--json"}).status, 2);
  EXPECT_EQ(run({"import", "survey.mdb", "field", "--auto", "--dry-run", "--scan"}).status, 2);
  EXPECT_EQ(run({"import", "survey.mdb", "field", "--auto", "--line", "200X"}).status, 2);
  EXPECT_EQ(run({"import", "survey.mdb", "field", "--auto", "--dry-run", "--report", "r.json"}).status, 2);
  EXPECT_EQ(run({"import", "none.mdb", "field", "--auto", "--dry-run"}).status, 1);
  std::filesystem::create_directory(folder_.path("empty"));
  (void)folder_.write("empty/notes.txt", "nothing\n");
  const Outcome empty = run({"import", "survey.mdb", "empty", "--auto"});
  EXPECT_EQ(empty.status, 1);
  EXPECT_NE(empty.errors.find("There is no field file in empty"), std::string::npos);
}

TEST_F(Auto_import, Says_why_when_nothing_can_be_read) {
  (void)folder_.write("cut.xml", "<EM_TF>\n<Site>");
  for (const bool dry : {false, true}) {
    std::vector<std::string> command{"import", "survey.mdb", "cut.xml", "--auto"};
    if (dry) {
      command.emplace_back("--dry-run");
    }
    const Outcome outcome = run(command);
    EXPECT_NE((outcome.output + outcome.errors).find("cut.xml"), std::string::npos);
    EXPECT_EQ((outcome.output + outcome.errors).find("Sample Rate"), std::string::npos);
    EXPECT_EQ(outcome.status, dry ? 0 : 1);
  }
}

TEST_F(Auto_import, Says_nothing_of_the_copy_that_a_dry_run_works_on) {
  const std::string old_survey = BRENLOX_FIELD_DATA "/legacy_jet/survey_jet4.mdb";
  if (!std::filesystem::exists(old_survey)) {
    GTEST_SKIP() << "no field data beside the checkout";
  }
  std::filesystem::copy_file(old_survey, folder_.path("old.mdb"));
  const Outcome dry = run({"import", "old.mdb", "field", "--auto", "--dry-run"});
  EXPECT_EQ(dry.status, 0);
  EXPECT_EQ(dry.errors + dry.output.substr(0, 10), "Reference:") << "it has been converted nowhere";
  EXPECT_EQ(file_contents(folder_.path("old.mdb")), file_contents(old_survey));
  (void)folder_.write("cut.mdb", file_contents(old_survey).substr(0, 5000));
  EXPECT_NE(run({"import", "cut.mdb", "field", "--auto", "--dry-run"}).errors, "") << "but why it can't open";
}
