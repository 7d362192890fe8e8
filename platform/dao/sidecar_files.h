// sidecar_files.h: new files, and the logs that the engine keeps beside a database file.
#pragma once
#include <string>

namespace dao {

/// Creates a new, empty file; dao::Error if there is one or it can't be created. Logs beside the path are
/// removed: they belong to an earlier file of that name, and the engine would replay them into the new one.
void make_new_file(const std::string& path);

/// Removes a file with its logs; no error if it isn't there.
void remove_database_file(const std::string& path);

/// Removes the logs beside a path.
void remove_logs(const std::string& path);

}  // namespace dao
