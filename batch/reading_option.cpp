#include "batch/reading_option.h"

namespace Batch {

void add_reading_options(CLI::App& parser, Module_database::LineSelection& option) {
  parser.add_option("--line", option.line, "survey line, as 200E")->required();
  parser
      .add_option("--reference", option.reference_type,
                  "0 not remote referenced, 1 remote referenced, 2 cross referenced")
      ->required()
      ->check(CLI::Range(0, 2));
  parser.add_option("--data-type", option.data_type, "ExHx, ExHy, EyHx, EyHy or QP")
      ->required()
      ->transform(CLI::IsMember({"ExHx", "ExHy", "EyHx", "EyHy", "QP"}, CLI::ignore_case));
  parser.add_option("--dipole", option.dipole, "dipole length, m")->required();
}

}  // namespace Batch
