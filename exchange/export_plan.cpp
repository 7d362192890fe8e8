#include "exchange/export_plan.h"

#include <algorithm>
#include <utility>

#include "core/number_text.h"
#include "core/trap_errors.h"
#include "core/user_interface.h"
#include "exchange/plan_rows.h"
#include "exchange/site_names.h"
#include "exchange/site_places.h"
#include "reduction/each_item.h"

namespace Module_exchange {

namespace {

/// Adds the rows of all lines. @param add_line  0, or -1 after a message
template <class AddLine>
int each_line(const ExportChoices& choices, const std::function<bool(double)>& progress, ExportPlan& plan,
              const AddLine& add_line) {
  const std::size_t count = choices.lines.size();
  for (std::size_t index = 0; index < count; ++index) {
    if (progress && !progress(static_cast<double>(index) / static_cast<double>(count))) {
      plan.stopped = true;
      return 0;
    }
    if (add_line(index) != 0) {
      return -1;
    }
  }
  return 0;
}

void append(std::vector<ExportRow> rows, ExportPlan& plan) {
  std::ranges::move(rows, std::back_inserter(plan.rows));
}

/// Names the files of stations: different within the folder, whatever line they are of.
void name_files(ExportFormat format, const std::vector<std::string>& names, ExportPlan& plan) {
  std::vector<std::string> given;
  std::ranges::copy_if(names, std::back_inserter(given),
                       [](const std::string& name) { return !name.empty(); });
  const std::vector<std::string> ids = unique_ids(given);
  auto id = ids.begin();
  for (std::size_t row = 0; row < plan.rows.size(); ++row) {
    if (!names[row].empty()) {
      plan.rows[row].file = *id++ + (format == ExportFormat::edi ? ".edi" : ".xml");
    }
  }
}

/// A line that gives no file at all, with its reason.
ExportRow row_of_line(const Module_tensor::LineChoice& choice, std::size_t choice_index,
                      const std::string& what) {
  ExportRow row;
  row.choice_index = choice_index;
  row.line = choice.line;
  row.remarks = {"Line " + choice.line + " has no " + what + " with reference type " +
                 plain_text(choice.reference_type) + " and dipole " + plain_text(choice.dipole)};
  return row;
}

int plan_sites(const ExportChoices& choices, const std::function<bool(double)>& progress, ExportPlan& plan) {
  std::vector<std::string> names;
  const int status = each_line(choices, progress, plan, [&](std::size_t index) {
    LineContents line;
    if (load_line(choices, index, line) != 0) {
      return -1;
    }
    std::vector<ExportRow> rows = site_rows(choices, line, index, names);
    if (rows.empty()) {
      rows.push_back(row_of_line(line.choice, index, "readings of a tensor element or tipper"));
      names.emplace_back();
    }
    append(std::move(rows), plan);
    return 0;
  });
  name_files(choices.format, names, plan);
  return status;
}

int plan_tables(const ExportChoices& choices, const std::function<bool(double)>& progress, ExportPlan& plan) {
  const std::vector<std::string> ids = line_ids(choices);
  return each_line(choices, progress, plan, [&](std::size_t index) {
    LineTables tables;
    if (load_tables(choices, index, tables) != 0) {
      return -1;
    }
    std::vector<ExportRow> rows = table_rows(tables, ids[index], index);
    if (rows.empty()) {
      rows.push_back(row_of_line(tables.line.choice, index, "curves of this kind"));
    }
    append(std::move(rows), plan);
    return 0;
  });
}

void plan_places(const ExportChoices& choices, ExportPlan& plan) {
  ExportRow row = places_row(choices);
  if (row.file.empty()) {
    plan.fault = "There are no places to write: " + why_no_places();
  }
  plan.rows.push_back(std::move(row));
}

}  // namespace

int ExportPlan::file_count() const {
  return static_cast<int>(
      std::ranges::count_if(rows, [](const ExportRow& row) { return !row.file.empty(); }));
}

int build_plan(const ExportChoices& choices, const std::function<bool(double)>& progress, ExportPlan& plan) {
  plan = {};
  plan.fault = fault_of(choices);
  if (!plan.fault.empty()) {
    return 0;
  }
  int status = 0;
  switch (choices.format) {
    case ExportFormat::edi:
    case ExportFormat::emtf_xml:
      status = plan_sites(choices, progress, plan);
      break;
    case ExportFormat::csv:
      status = plan_tables(choices, progress, plan);
      break;
    case ExportFormat::geojson:
    case ExportFormat::kml:
      plan_places(choices, plan);
      break;
  }
  if (status == 0 && plan.fault.empty() && !plan.stopped && plan.file_count() == 0) {
    plan.fault = "There is nothing to write";
  }
  return status;
}

int make_export_plan(const ExportChoices& choices, ExportPlan& plan) {
  return trap_errors("An error occurred while looking at what would be written: ", [&] {
    Module_averaged_data::WorkProgress progress("Looking at the curves", 1);
    return build_plan(
        choices,
        [&](double share) {
          progress.show(0, share);
          return !user_interface().stop_requested();
        },
        plan);
  });
}

}  // namespace Module_exchange
