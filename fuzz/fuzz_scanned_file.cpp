// Any bytes as a field file that is looked into before an import: the proposals for it can be imported, or
// their fault is told, and the table shows a row of plain numbers for each section.
#include <array>
#include <cmath>
#include <cstdlib>
#include <string>

#include "fuzz/input_file.h"
#include "import/format_by_content.h"
#include "import/proposals/plan_json.h"
#include "import/proposals/plan_maker.h"
#include "import/proposals/proposals.h"
#include "import/proposals/scanned_file.h"

using namespace Module_data_file;

namespace {

constexpr std::array<const char*, 4> names{"200E_a_1.edi", "site.dat", "day.raw", "table.csv"};

bool is_plain(const PlannedSection& row) {
  return std::isfinite(row.station) && std::isfinite(row.rate) && row.frequencies >= 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) {
    return 0;
  }
  const std::string path = write_input_file(data + 1, size - 1, names[data[0] % names.size()]);
  const std::array files{scan_field_file(path)};
  PlanMaker maker;
  const Proposals proposed = propose(files, maker);
  const ImportPlan plan = maker.plan(files, proposed.choices);
  for (const PlannedSection& row : plan.sections) {
    if (!is_plain(row) || row.file_index != 0) std::abort();
  }
  if (plan.display_order().size() != plan.sections.size()) std::abort();
  if (plan_as_json(plan, proposed.reasons, 0).empty()) std::abort();
  return 0;
}
