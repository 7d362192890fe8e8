#include "batch/reading_option.h"

namespace Batch {

std::vector<std::string> data_types() { return {"ExHx", "ExHy", "EyHx", "EyHy", "QP"}; }

void add_reading_options(Parser& parser, Module_database::LineSelection& option, DataTypeIs data_type) {
  parser.add_option("--line", option.line, "survey line, as 200E").required();
  parser.add_option("--reference", option.reference_type, reference_types_help)
      .required()
      .in_range(0, last_reference_type);
  std::vector<std::string> types = data_types();
  std::string help = data_types_help;
  if (data_type == DataTypeIs::required_with_tipper) {
    types.insert(types.end(), Module_database::tipper_data_types.begin(),
                 Module_database::tipper_data_types.end());
    help += "; HzHx, HzHy: the tipper";
  }
  Option type = parser.add_option("--data-type", option.data_type, help).one_of_in_any_case(types);
  if (data_type != DataTypeIs::optional) {
    type.required();
  }
  parser.add_option("--dipole", option.dipole, "dipole length, m").required();
}

}  // namespace Batch
