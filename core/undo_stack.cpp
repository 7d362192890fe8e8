#include "core/undo_stack.h"

#include <cassert>
#include <utility>

namespace Module_Brenlox {

namespace {

struct UndoState {
  std::vector<UndoEntry> entries;
  std::function<void(bool)> listener;
};

UndoState& undo() {
  static UndoState state;
  return state;
}

void tell_listener() {
  if (undo().listener) {
    undo().listener(!undo().entries.empty());
  }
}

void push(UndoEntry entry) {
  undo().entries.push_back(std::move(entry));
  tell_listener();
}

}  // namespace

void push_undo_flags(std::int32_t id, bool use_reading, bool use_resistivity, bool use_phase) {
  push({id, UndoFlags{use_reading, use_resistivity, use_phase}});
}

void push_undo_mask(std::int32_t id, std::int32_t frequency_count, std::span<const std::byte> mask_bytes) {
  push({id, UndoMask{frequency_count, {mask_bytes.begin(), mask_bytes.end()}}});
}

void push_undo_static(std::int32_t id, float res_offset) { push({id, UndoStatic{res_offset}}); }

void clear_undo() {
  undo().entries.clear();
  tell_listener();
}

std::size_t undo_count() { return undo().entries.size(); }

const UndoEntry& top_undo() {
  assert(!undo().entries.empty());
  return undo().entries.back();
}

void pop_undo() {
  if (!undo().entries.empty()) {
    undo().entries.pop_back();
  }
  tell_listener();
}

void set_undo_listener(std::function<void(bool available)> listener) {
  undo().listener = std::move(listener);
}

}  // namespace Module_Brenlox
