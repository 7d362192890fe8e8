// compacted_mark.h: what tells an opening that a survey needs no compaction.
//
// A session that ends without room to be gained marks the file with its state and its first bytes, among them
// the engine's count of changes. Any write, by whatever program, and any kill in a session makes the two
// differ, and so does a copy; the next opening then checks and compacts as ever.
#pragma once
#include <filesystem>

namespace Module_database {

/// Marks a survey that has just been closed. Does nothing while another process has it open.
void mark_compacted(const std::filesystem::path& survey);

/// Whether nothing has written the survey since it was marked.
bool is_marked_compacted(const std::filesystem::path& survey);

}  // namespace Module_database
