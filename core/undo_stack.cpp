#include "core/undo_stack.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/session_state.h"

namespace Module_Brenlox {

namespace {

UndoStack& undo() { return session().undo_stack; }

void report_change() {
  if (undo().listener) {
    undo().listener(!undo().entries.empty());
  }
  if (undo().redo_listener) {
    undo().redo_listener(!undo().undone.empty());
  }
}

/// The entries of the last command.
std::span<const UndoEntry> last_command(const std::vector<UndoEntry>& entries) {
  std::size_t first = entries.size();
  while (first > 0 && entries[first - 1].command == entries.back().command) {
    --first;
  }
  return std::span(entries).subspan(first);
}

void drop_last_command(std::vector<UndoEntry>& entries) {
  entries.resize(entries.size() - last_command(entries).size());
}

void move_last_command(std::vector<UndoEntry>& from, std::vector<UndoEntry>& to,
                       std::vector<UndoEntry> moved) {
  drop_last_command(from);
  std::ranges::move(moved, std::back_inserter(to));
  report_change();
}

}  // namespace

void push_undo_flags(std::int32_t id, bool use_reading, bool use_resistivity, bool use_phase) {
  push_undo({id, UndoFlags{use_reading, use_resistivity, use_phase}});
}

void push_undo_mask(std::int32_t id, std::int32_t frequency_count, std::span<const std::byte> mask_bytes) {
  push_undo({id, UndoMask{frequency_count, {mask_bytes.begin(), mask_bytes.end()}}});
}

void push_undo_static(std::int32_t id, float res_offset) { push_undo({id, UndoStatic{res_offset}}); }

std::int32_t next_undo_command() { return ++undo().last_command; }

void push_undo(UndoEntry entry) {
  if (entry.command == 0) {
    entry.command = next_undo_command();
  }
  undo().entries.push_back(std::move(entry));
  undo().undone.clear();
  report_change();
}

void clear_undo() {
  undo().entries.clear();
  undo().undone.clear();
  report_change();
}

std::size_t undo_count() { return undo().entries.size(); }

std::size_t redo_count() { return undo().undone.size(); }

std::span<const UndoEntry> top_undo() { return last_command(undo().entries); }

std::span<const UndoEntry> top_redo() { return last_command(undo().undone); }

void pop_undo() {
  drop_last_command(undo().entries);
  report_change();
}

void pop_redo() {
  drop_last_command(undo().undone);
  report_change();
}

void move_to_redo(std::vector<UndoEntry> undone) {
  move_last_command(undo().entries, undo().undone, std::move(undone));
}

void move_to_undo(std::vector<UndoEntry> redone) {
  move_last_command(undo().undone, undo().entries, std::move(redone));
}

void set_undo_listener(std::function<void(bool available)> listener) {
  undo().listener = std::move(listener);
}

void set_redo_listener(std::function<void(bool available)> listener) {
  undo().redo_listener = std::move(listener);
}

}  // namespace Module_Brenlox
