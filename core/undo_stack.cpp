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
std::span<const UndoEntry> last_command(std::span<const UndoEntry> entries) {
  std::size_t first = entries.size();
  while (first > 0 && entries[first - 1].command == entries.back().command) {
    --first;
  }
  return entries.subspan(first);
}

/// Bytes beside the object itself.
std::size_t held_by(const UndoDerived& derived) {
  return derived.mask.mask_bytes.capacity() + derived.frequency_bytes.capacity() +
         derived.data_bytes.capacity() + derived.facts.errors.capacity() * sizeof(float);
}

void forget_oldest(std::vector<UndoEntry>& entries, std::size_t bytes) {
  std::span<const UndoEntry> kept = last_command(entries);
  std::size_t held = bytes_of(kept);
  while (kept.size() < entries.size()) {
    const auto older = std::span<const UndoEntry>(entries).first(entries.size() - kept.size());
    const std::span<const UndoEntry> command = last_command(older);
    held += bytes_of(command);
    if (held > bytes) {
      break;
    }
    kept = std::span<const UndoEntry>(entries).last(kept.size() + command.size());
  }
  entries.erase(entries.begin(), entries.end() - static_cast<std::ptrdiff_t>(kept.size()));
}

void drop_last_command(std::vector<UndoEntry>& entries) {
  entries.resize(entries.size() - last_command(entries).size());
}

void move_last_command(std::vector<UndoEntry>& from, std::vector<UndoEntry>& to,
                       std::vector<UndoEntry> moved) {
  drop_last_command(from);
  std::ranges::move(moved, std::back_inserter(to));
  forget_oldest(to, undo_limit);
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

void push_undo_command(std::vector<UndoEntry> entries) {
  const std::int32_t command = next_undo_command();
  for (UndoEntry& entry : entries) {
    entry.command = command;
  }
  std::ranges::move(entries, std::back_inserter(undo().entries));
  undo().undone.clear();
  forget_oldest(undo().entries, undo_limit);
  report_change();
}

void limit_undo(std::size_t bytes) {
  forget_oldest(undo().entries, bytes);
  forget_oldest(undo().undone, bytes);
}

std::size_t bytes_of(std::span<const UndoEntry> entries) {
  std::size_t bytes = 0;
  const UndoReduction* last = nullptr;  // entries that share one stand side by side
  for (const UndoEntry& entry : entries) {
    bytes += sizeof(UndoEntry) + entry.owner.capacity();
    if (const auto* const mask = std::get_if<UndoMask>(&entry.earlier)) {
      bytes += mask->mask_bytes.capacity();
    }
    if (entry.reduction != nullptr && entry.reduction.get() != last) {
      last = entry.reduction.get();
      bytes += sizeof(UndoReduction) + held_by(last->average) + held_by(last->merged);
    }
  }
  return bytes;
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
