#include "batch/import_proposals.h"

#include <iostream>

#include "core/user_interface.h"
#include "import/proposals/plan_json.h"
#include "import/proposals/plan_table.h"

namespace Batch {

using namespace Module_data_file;

void print_proposals(const PlannedImport& planned, const FoundFiles& files) {
  for (const Proposal& proposal : planned.proposals) {
    std::cout << proposed_title(proposal.choice) << ": " << proposal.value << " (" << proposal.why << ")\n";
  }
  if (files.left_out > 0) {
    std::cout << "Left out, no field files: " << files.left_out << '\n';
  }
}

void print_plan_problems(const PlannedImport& planned) {
  if (const std::string text = plan_problems_text(planned.plan); !text.empty()) {
    user_interface().show_message(text);
  }
}

int print_plan(const ImportOptions& options, const FoundFiles& files) {
  const PlannedImport planned = plan_import(options.request, files);
  if (!planned.plan.fault.empty()) {
    user_interface().show_message(planned.plan.fault);
    return -1;
  }
  if (options.json) {
    std::cout << plan_as_json(planned.plan, planned.proposals, files.left_out);
    return 0;
  }
  print_proposals(planned, files);
  std::cout << (planned.proposals.empty() ? "" : "\n") << plan_as_text(planned.plan) << '\n'
            << planned.plan.summary() << "; nothing is stored\n";
  return 0;
}

}  // namespace Batch
