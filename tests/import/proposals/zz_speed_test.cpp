#include <chrono>
#include <iostream>
#include "import/survey_file_names.h"
#include "import/proposals/plan_run.h"
#include "import/proposals/plan_problems.h"
#include "import/proposals/survey_before.h"
#include "tests/import/proposals/planned_import.h"
using namespace Module_data_file;
TEST_F(PlannedImport, ZZ_speed) {
  std::vector<std::string> files;
  for (int i = 0; i < 1000; ++i) {
    files.push_back(site("f" + std::to_string(i) + ".edi", "ET" + std::to_string(i), "-30.0" + std::to_string(i), "139." + std::to_string(100 + i)));
  }
  const auto looked = scanned(files);
  PlanMaker maker;
  const auto now = [] { return std::chrono::steady_clock::now(); };
  auto t = now();
  const auto told = [&](const char* what) { std::cout << what << ' ' << std::chrono::duration<double, std::milli>(now() - t).count() << " ms\n"; t = now(); };
  auto p = propose(looked, maker); told("propose");
  for (int k = 0; k < 3; ++k) { auto plan = maker.plan(looked, p.choices); told("plan"); }
  told("x"); survey_file_names(files); told("names"); for (auto& f : files) path_tails(f); told("tails");
  SurveyBefore before; told("before"); PlanRun run(looked, p.choices, {}, before); told("ctor"); auto rows = run.rows(); told("rows"); find_problems(rows, looked, run, before); told("problems");
  p.choices.stations_by = StationsBy::sectid_digits;
  for (int k = 0; k < 3; ++k) { auto plan = maker.plan(looked, p.choices); told("plan digits"); }
  ASSERT_EQ(run_import(p.choices, {files.begin(), files.begin() + 100}, ImportMode::import, report), 0);
  PlanMaker second;
  t = now();
  for (int k = 0; k < 3; ++k) { auto plan = second.plan(looked, p.choices); told("plan with a survey"); }
}
