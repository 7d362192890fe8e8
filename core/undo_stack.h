// undo_stack.h: the reversible edits of readings in session().undo_stack: what a row held before each edit,
// and for each edit that was undone what the row held before that. It outlives every change of the selection.
#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "core/undo_entry.h"

namespace Module_Brenlox {

/// The number of a new command. One press of a button may change many readings; their entries carry the
/// command's number and are undone together.
std::int32_t next_undo_command();

// What a row held before a new edit. What has been undone before can't be done again any more. The edits use
// push_undo; the three others are for callers that write a row themselves, each as a command of its own.
void push_undo_flags(std::int32_t id, bool use_reading, bool use_resistivity, bool use_phase);
void push_undo_mask(std::int32_t id, std::int32_t frequency_count, std::span<const std::byte> mask_bytes);
void push_undo_static(std::int32_t id, float res_offset);
/// An entry without a command number becomes a command of its own.
void push_undo(UndoEntry entry);
/// All entries of a new command. The oldest ones beyond undo_limit are then forgotten.
void push_undo_command(std::vector<UndoEntry> entries);

/// Bytes that the commands to be undone may hold, and as many those to be done again. The newest one stays
/// whatever it holds: an edit that the user has just made can always be undone.
inline constexpr std::size_t undo_limit = std::size_t{128} << 20U;

/// Forgets the oldest commands of both, each as a whole, until the others hold at most so many bytes.
void limit_undo(std::size_t bytes);

/// Bytes that these entries hold.
std::size_t bytes_of(std::span<const UndoEntry> entries);

/// Forgets everything, also what could be done again.
void clear_undo();

/// How many entries can be undone and done again.
std::size_t undo_count();
std::size_t redo_count();

/// The entries of the newest command, in the order in which they were pushed; empty if there is none.
std::span<const UndoEntry> top_undo();
/// The same of the command that was undone last.
std::span<const UndoEntry> top_redo();

/// Drops the newest command, if there is one.
void pop_undo();
/// Drops the command that was undone last, if there is one.
void pop_redo();

/// The newest command has been undone: drops it, and keeps what the rows held until then, in the order in
/// which they were written, to do it again.
void move_to_redo(std::vector<UndoEntry> undone);

/// The command undone last has been done again: the other way round.
void move_to_undo(std::vector<UndoEntry> redone);

/// Sets what is called after each change with whether there is something to undo; the window enables its menu
/// by it. An empty function is not called.
void set_undo_listener(std::function<void(bool available)> listener);

/// The same for what can be done again.
void set_redo_listener(std::function<void(bool available)> listener);

}  // namespace Module_Brenlox
