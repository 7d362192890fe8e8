#include "batch/reading_option.h"

namespace Batch {

CLI::Validator reference_types() { return CLI::Range(0, 2); }

CLI::Validator data_types() {
  return CLI::IsMember({"ExHx", "ExHy", "EyHx", "EyHy", "QP"}, CLI::ignore_case);
}

void add_reading_options(CLI::App& parser, Module_database::LineSelection& option) {
  parser.add_option("--line", option.line, "survey line, as 200E")->required();
  parser.add_option("--reference", option.reference_type, reference_types_help)
      ->required()
      ->check(reference_types());
  parser.add_option("--data-type", option.data_type, data_types_help)->required()->transform(data_types());
  parser.add_option("--dipole", option.dipole, "dipole length, m")->required();
}

}  // namespace Batch
