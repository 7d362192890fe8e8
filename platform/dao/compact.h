// compact.h: rewriting a database file into a fresh one.
#pragma once
#include <functional>
#include <string>
#include <string_view>

namespace dao {

enum class FileKind { survey_engine, genuine_jet, unknown };

/// The kind of a file, by its first bytes; `unknown` also for a missing or unreadable one.
FileKind file_kind(const std::string& path);

/// Recovers what a crashed run left in a journal beside the file, which is then complete by itself, without a
/// journal. Throws dao::Error if another process has the file open, if it can't be written or isn't a
/// database. Does nothing to a genuine Jet file.
void recover_database(const std::string& path);

/// Does `work` while no other process reads or writes a database; dao::LockedError if one does. `work` must
/// not open the file itself: the closing would end the lock.
void with_no_other_process(const std::string& path, const std::function<void()>& work);

/// Whether a database was not closed by whoever wrote it last, or is open: its latest rows are then in a log,
/// beside the name that it was opened by.
bool expects_log(const std::string& path);

/// Makes a path ready for another file: a database that is there becomes complete by itself, without a log,
/// so that it can be kept under another name; logs beside anything else belong to nothing and go. Throws
/// dao::Error if the database is in use.
void clear_place(const std::string& path);

/// Hears some times a second what is being done and which part of it, 0 to 1. What it throws stops the work
/// and is passed on.
using CompactionWatch = std::function<void(std::string_view what, double part)>;

/// Reads a database through. Throws dao::Error if a part of it is damaged.
void check_database(const std::string& path, const CompactionWatch& watch = {});

/// Writes the contents of `source` into the new file `destination`, freshly packed; a genuine Jet file is
/// converted on the way. `source` is only read. Throws dao::Error, and then leaves no destination, if the
/// source can't be read completely (damaged, truncated, foreign) or the destination exists or can't be
/// written.
void compact_database(const std::string& source, const std::string& destination,
                      const CompactionWatch& watch = {});

}  // namespace dao
