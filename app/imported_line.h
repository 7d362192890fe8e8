// imported_line.h: what is shown after an import.
#pragma once
#include "import/import_report.h"

namespace Module_Brenlox {

/// Selects the first station that was imported, with its reference type and dipole length, so that its curves
/// are seen once the survey is read again. Where the selected line got readings of the kind that is shown,
/// its selected station stays.
void select_imported(const Module_data_file::ImportReport& report);

}  // namespace Module_Brenlox
