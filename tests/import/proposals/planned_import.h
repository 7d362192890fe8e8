// planned_import.h: a survey, field files of sites at made-up places, and what they propose.
#pragma once
#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "import/proposals/plan_maker.h"
#include "import/proposals/proposals.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/import/import_fixture.h"

class PlannedImport : public ImportRun {
 protected:
  /// A file of one section, by its path in the test's folder; without a place if latitude is empty.
  std::string site(const std::string& file, const std::string& sectid, const std::string& latitude = "",
                   const std::string& longitude = "") const {
    const std::string place = latitude.empty() ? "" : "  LAT=" + latitude + "\n  LONG=" + longitude + "\n";
    return folder.write(file, replaced(made_edi({MadeSection{.sectid = "\"" + sectid + "\""}}), "  UNITS=M\n",
                                       "  UNITS=M\n" + place));
  }

  static std::vector<Module_data_file::ScannedFile> scanned(const std::vector<std::string>& files) {
    std::vector<Module_data_file::ScannedFile> found;
    std::ranges::transform(files, std::back_inserter(found), Module_data_file::scan_field_file);
    return found;
  }

  static Module_data_file::Proposals proposals_for(const std::vector<std::string>& files) {
    Module_data_file::PlanMaker maker;
    return propose(scanned(files), maker);
  }

  static Module_data_file::ImportPlan plan_for(const std::vector<std::string>& files,
                                               const Module_data_file::ImportChoices& chosen,
                                               const std::vector<Module_data_file::PlannedEdit>& edits = {}) {
    return Module_data_file::PlanMaker().plan(scanned(files), chosen, edits);
  }

  /// The stations of a plan in the order of its rows.
  static std::vector<double> planned_stations(const Module_data_file::ImportPlan& plan) {
    std::vector<double> values;
    std::ranges::transform(plan.sections, std::back_inserter(values),
                           &Module_data_file::PlannedSection::station);
    return values;
  }

  static bool has(const Module_data_file::PlannedSection& row, Module_data_file::PlanProblem problem) {
    return std::ranges::find(row.problems, problem) != row.problems.end();
  }
};
