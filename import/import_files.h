// import_files.h: choosing the files of an import: where to start, what a folder holds, the chosen list.
#pragma once
#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace Module_data_file {

/// The folder that was imported from last; the open survey's if that is gone.
std::string import_start_folder();
void keep_import_folder(const std::string& folder);

/// The extension used last; "edi" if there was none.
std::string import_extension();
void keep_import_extension(const std::string& extension);

/// The names of a folder's files with the extension, which is typed as "edi", ".edi" or "*.edi" and matches
/// in any case; all files if it is empty. In natural order. A folder that can't be read has none.
std::vector<std::string> files_in_folder(const std::string& folder, const std::string& extension);

/// The extension as the folder search takes it: without what people type before it.
std::string plain_extension(const std::string& typed);

/// The files to import, in the order they were added; each file once.
class ImportFileList {
 public:
  void add(const std::vector<std::string>& paths);
  /// Removes the files at these places, counted from 0.
  void remove(const std::set<std::size_t>& places);
  void clear();
  [[nodiscard]] const std::vector<std::string>& paths() const { return paths_; }

 private:
  std::vector<std::string> paths_;
  std::set<std::string> known_;
};

}  // namespace Module_data_file
