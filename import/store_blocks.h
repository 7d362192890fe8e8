// store_blocks.h: from the reading record to the rows of the survey.
#pragma once
#include <string>
#include <string_view>

#include "import/reading_record.h"

namespace Module_data_file {

/// What storing a file reports beside its status.
struct StoreNotes {
  bool file_known = false;  // the header replaced an earlier import of the file
  std::string failure;      // the message shown last, empty if there was none
};

/// Writes the header members of the record to FileTable and sets its FileID. A file of the same name,
/// day and event counts as the same file: its readings are deleted and its row is written again.
/// @return 0, or -1 after a message
[[nodiscard]] int store_header_block(ReadingRecord& record, StoreNotes& notes);

/// Writes the curve of the record, brought into ascending order of frequency, as one reading, and adds
/// its frequencies to the frequency list. Within a file a reading is the same if data type, event and scan
/// rate are the same; it is written over. A merged reading is stored with a scan rate of 0.
/// @return 0; -1 if the curve had to be sorted (it is stored all the same), or after a message
[[nodiscard]] int store_data_block(ReadingRecord& record, std::string_view data_type, StoreNotes& notes);

/// Brings a curve into ascending order of frequency; fields and masks move along, and equal frequencies keep
/// their order. @return true if it was in order already
bool sort_curve(Module_database::Curve& curve);

}  // namespace Module_data_file
