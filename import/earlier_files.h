// earlier_files.h: the files that the survey had before an import, and which of them a file is.
#pragma once
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
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

  /// Whether another file than `but` goes by the name and has the date.
  [[nodiscard]] bool other_has_name(std::string_view name, double date, const FileRows& but) const;

  /// A file of this import has these rows now.
  void take_out(const FileRows& rows);

 private:
  struct DatedRows {
    std::int64_t day = 0;
    FileRows rows;
  };
  [[nodiscard]] const std::vector<DatedRows>* namesakes(std::string_view name) const;

  std::unordered_map<std::string, std::vector<DatedRows>> files_;  // by bare name, folded
};

/// The stations of a line at which there is no reading but those of the file.
std::set<double> stations_of_file_alone(const FileRows& rows, const std::string& line);

}  // namespace Module_data_file
