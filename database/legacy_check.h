// legacy_check.h: whether a survey converted from a genuine Jet file is sound.
#pragma once
#include "platform/dao/database.h"

namespace Module_database {

/// Jet keeps no checksums, so damage inside a value shows only where the value can't be what any writer
/// stored. Looks through all readings and frequency lists: bytes of the lengths that NumFrequencies asks for,
/// 20 fields, frequencies finite and ascending, masks 0 or 1. Throws dao::Error that names the first row in
/// which this fails. A table that isn't there is skipped.
void check_legacy_survey(dao::Database& survey);

}  // namespace Module_database
