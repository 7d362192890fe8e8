// jet_file.h: turning a genuine Jet file into a database file of this engine.
#pragma once
#include <string>

namespace dao {

/// Writes every table of the Jet file `source` (version 3 or 4), with its columns, its rows and its primary
/// index, into the new file `destination`. Counters keep their values. `source` is only read. Throws
/// dao::Error, and then leaves no destination, if the source is damaged in a way that shows, or the
/// destination exists or can't be written.
void convert_jet_database(const std::string& source, const std::string& destination);

}  // namespace dao
