// killed_process.h: work in a process of its own that dies in the midst of it.
//
// The process kills itself at a given file operation of the database engine, or where a file of the program's
// own is put on the disk or into its place, so that a kill falls between any two writes of a transaction or
// of its commit, however busy the machine is.
#pragma once
#include <cstdint>
#include <functional>
#include <string>

/// Called by the work with how far it has come, in a unit of its own.
using TellProgress = std::function<void(int progress)>;

struct KilledProcess {
  bool killed = false;  // false: the work had ended by itself
  int progress = 0;     // told last
  std::int64_t operations =
      0;  // writes, truncations, syncs, renamings and deletions of files that were begun
};

/// Runs `work` in a child process that dies at its file operation number `last`, from 1; 0 lets it end.
KilledProcess run_until_operation(std::int64_t last, const std::function<void(const TellProgress&)>& work);

/// Whether the file system seems to clone files, from now on and whatever it does by itself; a clone is an
/// operation, too. Else clones are refused, and files are copied.
void let_files_be_cloned(bool possible);

/// Expects that the engine finds no damage in a survey file.
void expect_sound_database(const std::string& survey);
