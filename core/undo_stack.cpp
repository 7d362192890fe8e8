#include "core/undo_stack.h"

#include <cassert>
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

void drop_last(std::vector<UndoEntry>& entries) {
  if (!entries.empty()) {
    entries.pop_back();
  }
}

}  // namespace

void push_undo_flags(std::int32_t id, bool use_reading, bool use_resistivity, bool use_phase) {
  push_undo({id, UndoFlags{use_reading, use_resistivity, use_phase}});
}

void push_undo_mask(std::int32_t id, std::int32_t frequency_count, std::span<const std::byte> mask_bytes) {
  push_undo({id, UndoMask{frequency_count, {mask_bytes.begin(), mask_bytes.end()}}});
}

void push_undo_static(std::int32_t id, float res_offset) { push_undo({id, UndoStatic{res_offset}}); }

void push_undo(UndoEntry entry) {
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

const UndoEntry& top_undo() {
  assert(!undo().entries.empty());
  return undo().entries.back();
}

void pop_undo() {
  drop_last(undo().entries);
  report_change();
}

std::size_t redo_count() { return undo().undone.size(); }

const UndoEntry& top_redo() {
  assert(!undo().undone.empty());
  return undo().undone.back();
}

void pop_redo() {
  drop_last(undo().undone);
  report_change();
}

void move_to_redo(UndoEntry undone) {
  drop_last(undo().entries);
  undo().undone.push_back(std::move(undone));
  report_change();
}

void move_to_undo(UndoEntry redone) {
  drop_last(undo().undone);
  undo().entries.push_back(std::move(redone));
  report_change();
}

void set_undo_listener(std::function<void(bool available)> listener) {
  undo().listener = std::move(listener);
}

void set_redo_listener(std::function<void(bool available)> listener) {
  undo().redo_listener = std::move(listener);
}

}  // namespace Module_Brenlox
