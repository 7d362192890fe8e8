// export_plan.h: which files an export would write, for the user to see beforehand.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "exchange/export_choices.h"
#include "exchange/export_row.h"

namespace Module_exchange {

struct ExportPlan {
  std::vector<ExportRow> rows;  // in the order of lines and stations
  std::string fault;            // why nothing can be written at all, a sentence; empty if something can
  bool stopped = false;         // by the user: rows are missing

  [[nodiscard]] int file_count() const;
};

/// Looks at what the choices would write, with progress; the user can stop it. Merged curves that are missing
/// are computed. Needs an open survey.
/// @return 0, also with a fault; -1 after a message
[[nodiscard]] int make_export_plan(const ExportChoices& choices, ExportPlan& plan);

/// The same without a progress display of its own. Throws dao::Error.
/// @param progress  may be empty; is called with the share done, 0 to 1; false stops
[[nodiscard]] int build_plan(const ExportChoices& choices, const std::function<bool(double)>& progress,
                             ExportPlan& plan);

}  // namespace Module_exchange
