// earlier_files.h: the files that the survey had before an import, and which of them a file is.
#pragma once
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Module_data_file {

/// The rows of one file in FileTable: those of one name and day.
struct FileRows {
  std::string name;  // SurveyFile
  std::map<std::int32_t, std::int32_t> ID_of_event;
  std::int32_t first_ID = 0;  // the FileID of the readings of all of the file's events; 0: no row yet
};

/// The files that are in the survey when it is made. Files of the import that has it are never in it, so that
/// one of them can't be taken for another.
class EarlierFiles {
 public:
  /// Reads FileTable of the open survey. Throws dao::Error.
  EarlierFiles();

  /// The rows that an earlier import of a file left: those under the longest of its tails, a name of the same
  /// case before one that differs in it.
  /// @param name what the file is called now; @param tails as path_tails gives them; @param date collected,
  /// days
  /// @return null if the file is new
  [[nodiscard]] const FileRows* find(std::string_view name, const std::vector<std::string>& tails,
                                     double date) const;

  /// The name for the file of these rows (none if it is new): the one given now, unless another file of that
  /// date goes by it; the one it had before, else one with a number.
  [[nodiscard]] std::string name_for(const std::string& given, const FileRows* rows, double date) const;

  /// A file of this import has these rows now, and this name.
  void take_out(const FileRows& rows, std::string_view name, double date);

 private:
  struct DatedRows {
    std::int64_t day = 0;
    std::string folded_name;
    FileRows rows;
  };
  [[nodiscard]] const std::vector<DatedRows>* namesakes(std::string_view name) const;
  [[nodiscard]] bool is_of_other(std::string_view name, std::int64_t day, const FileRows* but) const;

  std::unordered_map<std::string, std::vector<DatedRows>> files_;  // by bare name, folded
  std::set<std::pair<std::int64_t, std::string>> taken_names_;  // of files of this import: day, folded name
};

/// The stations of a line at which there is no reading but those of the file.
std::set<double> stations_of_file_alone(const FileRows& rows, const std::string& line);

}  // namespace Module_data_file
