// sample_choices.h: the choices of an import that fit files named as those of the sample survey.
#pragma once
#include "import/import_choices.h"

/// Line, event and scan rate from names like "L200E_S0100_E1_R4096.edi".
inline Module_data_file::ImportChoices sample_choices() {
  using namespace Module_data_file;
  ImportChoices choices;
  choices.ReferenceType = 0;
  choices.ReductionType = 0;
  choices.decode[decode_line_number] = {true, 2, 4, ""};
  choices.decode[decode_event] = {true, 14, 1, ""};
  choices.decode[decode_sample_rate] = {true, 17, 4, ""};
  return choices;
}
