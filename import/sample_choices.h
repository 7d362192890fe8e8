// sample_choices.h: how files named as those of the sample survey are read.
#pragma once
#include "import/import_choices.h"

namespace Module_data_file {

/// Raw readings of the first reference type; line, event and scan rate from names as
/// L200E_S0100_E1_R4096.edi, stations from SECTID.
ImportChoices sample_choices();

}  // namespace Module_data_file
