// undo_stack.h: the reversible edits of readings in session().undo_stack: what a row held before each edit,
// and for each edit that was undone what the row held before that.
#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

#include "core/undo_entry.h"

namespace Module_Brenlox {

// What a row held before a new edit. What has been undone before can't be done again any more. The edits use
// push_undo; the three others are for callers that write a row themselves.
void push_undo_flags(std::int32_t id, bool use_reading, bool use_resistivity, bool use_phase);
void push_undo_mask(std::int32_t id, std::int32_t frequency_count, std::span<const std::byte> mask_bytes);
void push_undo_static(std::int32_t id, float res_offset);
void push_undo(UndoEntry entry);

/// Forgets everything, also what could be done again.
void clear_undo();

/// How many edits can be undone.
std::size_t undo_count();

/// The newest entry; the stack must not be empty.
const UndoEntry& top_undo();

/// Drops the newest entry, if there is one.
void pop_undo();

/// How many undone edits can be done again.
std::size_t redo_count();

/// The edit that was undone last; there must be one.
const UndoEntry& top_redo();

/// Drops the edit that was undone last, if there is one.
void pop_redo();

/// The newest edit has been undone: drops it, and keeps what the row held until then to do it again.
void move_to_redo(UndoEntry undone);

/// The edit undone last has been done again: drops it, and keeps what the row held until then to undo it.
void move_to_undo(UndoEntry redone);

/// Sets what is called after each change with whether there is something to undo; the window enables its menu
/// by it. An empty function is not called.
void set_undo_listener(std::function<void(bool available)> listener);

/// The same for what can be done again.
void set_redo_listener(std::function<void(bool available)> listener);

}  // namespace Module_Brenlox
