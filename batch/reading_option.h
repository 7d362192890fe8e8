// reading_option.h: the options that say which readings a command works on.
#pragma once
#include <string>
#include <vector>

#include "batch/options.h"
#include "database/reading.h"

namespace Batch {

// The texts and values of --reference and --data-type, for commands that have them alone.
inline constexpr const char* reference_types_help =
    "0 not remote referenced, 1 remote referenced, 2 cross referenced";
inline constexpr const char* data_types_help = "ExHx, ExHy, EyHx, EyHy or QP";
inline constexpr int last_reference_type = 2;
std::vector<std::string> data_types();

enum class DataTypeIs { required, optional, required_with_tipper };

/// Adds --line, --reference, --data-type and --dipole, all required unless the data type is optional. The
/// data types of the tipper are for commands that show what is stored.
void add_reading_options(Parser& parser, Module_database::LineSelection& option,
                         DataTypeIs data_type = DataTypeIs::required);

}  // namespace Batch
