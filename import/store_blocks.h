// store_blocks.h: from the reading record to the rows of the survey.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "import/reading_record.h"

namespace Module_data_file {

/// What storing a file reports beside its status.
struct StoreNotes {
  bool file_known = false;                // the header replaced an earlier import of the file
  std::int32_t replaced_readings = 0;     // of that import
  std::int64_t replaced_values = 0;       // of these readings, see values_of_file
  std::string earlier_name;               // under which it stored the file
  KeySet replaced_keys;                   // that readings written over or replaced had and no new one has
  std::vector<float> listed_frequencies;  // of the reading before, Hz; the survey's list has them
  std::string failure;                    // the message shown last, empty if there was none
};

/// The rows that an earlier import of the record's file left in FileTable, by its path, name and day; null if
/// it is new. Throws dao::Error.
const FileRows* rows_of_earlier_import(ReadingRecord& record);

/// How many values the readings of a file have: resistivities, phases and their errors. A file that was cut
/// may give as many readings as the whole one, each with fewer points or with points that lack a part.
/// Damaged readings count as empty. Throws dao::Error.
std::int64_t values_of_file(std::int32_t file_id);

/// Writes the header members of the record to FileTable and sets its FileID. If an earlier import stored the
/// file with its event, the readings of that row are deleted with what the file said of the sites of their
/// stations, and it is written again; all rows of the file
/// take the name that it has now, unless another file of the survey goes by it.
/// @return 0, or -1 after a message
[[nodiscard]] int store_header_block(ReadingRecord& record, StoreNotes& notes);

/// Writes the curve of the record, brought into ascending order of frequency, as one reading with its errors
/// and axes, and adds its frequencies to the frequency list. Within a file a reading is the same if data
/// type, event and scan rate are the same; it is written over. A merged reading is stored with a scan rate of
/// 0.
/// @return 0; -1 if the curve had to be sorted (it is stored all the same), or after a message
[[nodiscard]] int store_data_block(ReadingRecord& record, std::string_view data_type, StoreNotes& notes);

/// Brings a curve into ascending order of frequency; fields, masks and errors move along, and equal
/// frequencies keep their order. @return true if it was in order already
bool sort_curve(Module_database::Curve& curve);

}  // namespace Module_data_file
