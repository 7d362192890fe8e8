// undo_stack.h: the reversible edits of readings, newest last: what a row held before each edit.
#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
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
  std::int32_t id = -1;  // of the reading
  std::variant<UndoFlags, UndoMask, UndoStatic> earlier;
};

void push_undo_flags(std::int32_t id, bool use_reading, bool use_resistivity, bool use_phase);
void push_undo_mask(std::int32_t id, std::int32_t frequency_count, std::span<const std::byte> mask_bytes);
void push_undo_static(std::int32_t id, float res_offset);
void clear_undo();

/// How many edits can be undone.
std::size_t undo_count();

/// The newest entry; the stack must not be empty.
const UndoEntry& top_undo();

/// Drops the newest entry, if there is one.
void pop_undo();

/// Sets who is told after each change whether there is something to undo; the window enables its menu by it.
/// An empty function tells no one.
void set_undo_listener(std::function<void(bool available)> listener);

}  // namespace Module_Brenlox
