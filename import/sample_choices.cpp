#include "import/sample_choices.h"

namespace Module_data_file {

ImportChoices sample_choices() {
  ImportChoices choices;
  choices.ReferenceType = 0;
  choices.ReductionType = 0;
  choices.decode[decode_line_number] = {true, 2, 4, ""};
  choices.decode[decode_event] = {true, 14, 1, ""};
  choices.decode[decode_sample_rate] = {true, 17, 4, ""};
  choices.stations_by = StationsBy::sectid;
  return choices;
}

}  // namespace Module_data_file
