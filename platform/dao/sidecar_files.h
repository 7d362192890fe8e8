// sidecar_files.h: new files, and the logs that the engine keeps beside a database file.
#pragma once
#include <string>

namespace dao {

/// Makes a new, empty file; an error if there is one or it can't be made. Logs that stand beside the path are
/// removed: they belong to an earlier file of that name, and the engine would play them into the new one.
void make_new_file(const std::string& path);

/// Removes a file with its logs; no error if it isn't there.
void remove_database_file(const std::string& path);

}  // namespace dao
