// undo_entry.h: what a reading's row held before an edit, and the stack of edits that the session keeps.
#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <variant>
#include <vector>

namespace Module_Brenlox {

struct UndoFlags {
  bool use_reading = false;
  bool use_resistivity = false;
  bool use_phase = false;
};

struct UndoMask {
  std::int32_t frequency_count = 0;
  std::vector<std::byte> mask_bytes;  // MaskBinary as it stood in the row
};

struct UndoStatic {
  float res_offset = 1.0F;  // multiplies resistivity
};

struct UndoEntry {
  std::int32_t id = 0;  // of the reading
  std::variant<UndoFlags, UndoMask, UndoStatic> earlier;
};

struct UndoStack {
  std::vector<UndoEntry> entries;           // what can be undone, newest last
  std::vector<UndoEntry> undone;            // what can be done again, the newest last
  std::function<void(bool)> listener;       // called after each change with whether there are entries
  std::function<void(bool)> redo_listener;  // the same for what was undone
};

}  // namespace Module_Brenlox
