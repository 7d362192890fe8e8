// zonge_avg_reader.h: averaged soundings of Zonge processing into the survey.
#pragma once
#include "import/readers/field_reader.h"

namespace Module_data_file {

/// Reads all stations of the file; an import stores the components of each as a reading, as events 0, 1, ...
/// of the file. Places come from the ".stn" file beside it, else from the file itself. A FieldReader. A set
/// that this program has written has its data type in its name and its line in the ".mde" file beside it.
[[nodiscard]] int read_averages(FileTask& task);

}  // namespace Module_data_file
