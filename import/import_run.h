// import_run.h: a whole import or scan, from a list of files to averages and merged curves.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "import/import_choices.h"
#include "import/import_plan.h"
#include "import/import_report.h"
#include "import/readers/field_reader.h"

namespace Module_data_file {

/// What is done where different sites come to one line and station.
enum class SharedStations {
  tell,  // the report says so
  ask,   // the user is asked before anything is stored, too
};

using FileBegins = std::function<void(const std::string& file)>;

/// Reads each file in turn into the open survey (or only counts its stations), then brings averages and
/// merged curves of the stations it stored readings for up to date. Each file is one transaction. Progress is
/// shown and a stop is asked for between files; what was stored by then stays and gets its averages and
/// merged curves all the same. Groups of readings that can't be reduced are skipped, and one message at the
/// end names the first ones. A fault in the choices is one message and ends the run before anything is
/// stored. An import drops what could be undone.
/// Files of one name in different folders get names that tell them apart; none replaces what the same run
/// stored.
/// @param report one entry for each file, in their order
/// @param file_begins called with each file before it is read
/// @param shared  an import that asks looks into all files first; after No nothing is stored and the report
/// is empty
/// @param plan  for these very files and choices: its lines, stations, events, rates, turns and impedances
/// are stored, and nobody is asked. Without one, an import by distance makes its own
/// @return 0; -1 if the run was ended by a fault of the choices or by a failure that is not one file's
[[nodiscard]] int run_import(const ImportChoices& choices, const std::vector<std::string>& files,
                             ImportMode mode, ImportReport& report, const FileBegins& file_begins = {},
                             SharedStations shared = SharedStations::tell, const ImportPlan* plan = nullptr);

/// The files below a folder that have the extension ("edi"), in natural order of their names, folder by
/// folder.
std::vector<std::string> find_import_files(const std::string& folder, const std::string& extension);

}  // namespace Module_data_file
