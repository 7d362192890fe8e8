// undo_entry.h: what a reading's row held before an edit, and the stack of edits that the session keeps.
#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
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

/// What was known of the errors and axes of a derived reading.
struct UndoFacts {
  std::int32_t id = 0;  // of their row; 0: there was none
  std::vector<float> errors;
  std::int32_t ey_turned = 0;
  float hx_azimuth = 0.0F;  // degrees clockwise from north
};

/// What the row of an average or a merged curve held before an edit that computes it again.
struct UndoDerived {
  std::int32_t id = 0;  // 0: there was no row
  UndoFlags flags;
  UndoMask mask;
  float res_offset = 1.0F;
  float phase_offset = 0.0F;  // degrees
  std::vector<std::byte>
      frequency_bytes;  // FreqBinary and DataBinary, for where nothing is left to compute from
  std::vector<std::byte> data_bytes;
  UndoFacts facts;
};

struct UndoReduction {
  UndoDerived average;  // of the scan rate that was edited
  UndoDerived merged;
};

struct UndoEntry {
  std::int32_t id = 0;  // of the reading
  std::variant<UndoFlags, UndoMask, UndoStatic> earlier;
  std::int32_t command = 0;  // entries of one number are undone together; 0: not in the stack yet
  /// Shared by the entries of a command; null if its edit computed nothing again.
  std::shared_ptr<const UndoReduction> reduction = nullptr;
  /// Line, station and kind of the reading; empty: not asked for. An undo may take away the row of a curve
  /// that was computed, and its number may be given to another one.
  std::string owner = {};
};

struct UndoStack {
  std::vector<UndoEntry> entries;           // what can be undone, newest last
  std::vector<UndoEntry> undone;            // what can be done again, the newest last
  std::int32_t last_command = 0;            // number given last
  std::function<void(bool)> listener;       // called after each change with whether there are entries
  std::function<void(bool)> redo_listener;  // the same for what was undone
};

}  // namespace Module_Brenlox
