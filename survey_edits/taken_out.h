// taken_out.h: the rows that a removal takes out of the survey, kept until the next removal or the survey's
// end.
//
// They are kept on the shelf of the survey's database, a file in the folder for temporary files: what is
// taken out may be larger than the memory, and there everything goes by the same transaction as in the
// survey. For each table that a removal changes there is a table "Kept ...". "Left ReadingsDataTable" has no
// curves; it tells what the removal has left of files and derived readings, so that later changes are
// noticed.
#pragma once
#include <array>
#include <string>
#include <string_view>

namespace Module_survey_edits {

inline constexpr std::array<std::string_view, 6> changed_tables{"FileTable",           "StationsTable",
                                                                "LocationLookupTable", "SitesTable",
                                                                "ReadingsDataTable",   "ReadingFactsTable"};

inline constexpr std::string_view left_readings = "[Left ReadingsDataTable]";

/// "[Kept FileTable]".
std::string kept(std::string_view table);

/// " IN (SELECT ID FROM [Kept FileTable])".
std::string in_kept(std::string_view table);

/// "ID = 7"
std::string with_ID(std::int32_t ID, std::string_view column = "ID");

/// Makes the shelf if the survey has none yet. Not within a transaction. All throw dao::Error or
/// std::runtime_error.
void prepare_shelf();

/// Empties the shelf for a new removal.
void clear_shelf();

/// Copies rows of a survey table to the shelf.
void keep_rows(std::string_view table, const std::string& criteria);
/// Readings with what is known of them.
void keep_readings(const std::string& criteria);
/// Copies what tells of readings apart from their curves.
void note_left(const std::string& criteria);

/// Copies rows and deletes them in the survey. Not for readings.
void take_out_rows(std::string_view table, const std::string& criteria);

/// The removal is done: what is on the shelf can come back.
void can_come_back();
/// Nothing can come back any more.
void forget_taken_out();
/// Whether nothing was stored in the survey since.
bool unchanged_since();

/// For work that may be given up: then the survey is as before, and so is what can come back.
class ShelfAsItIs {
 public:
  ShelfAsItIs();
  /// The transaction was rolled back.
  void stays() const;

 private:
  bool can_come_back_;
  bool unchanged_;
};

/// Makes the survey's recordsets know which rows there are.
void requery_survey();

}  // namespace Module_survey_edits
