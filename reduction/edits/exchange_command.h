// exchange_command.h: writes the entries of one command into their readings, of any stations and data types,
// and computes again what follows from them, in one transaction.
#pragma once
#include <map>
#include <memory>
#include <span>
#include <string>
#include <tuple>
#include <vector>

#include "reduction/each_item.h"
#include "reduction/edits/reading_edits.h"

namespace Module_averaged_data {

/// The readings of one key in a command: they are reduced once.
struct EditedKey {
  ReadingKey key;
  ReduceFrom from = ReduceFrom::nothing;
  std::shared_ptr<const Module_Brenlox::UndoReduction> restore;  // what the derived rows shall hold again
  std::shared_ptr<const Module_Brenlox::UndoReduction> before;   // what they held until then
  ReducedStation reduced;
};

struct WrittenEntry {
  UndoEntry entry;
  ExchangedRow row;
};

/// Folded line, station, reference type, data type, dipole, scan rate.
using KeyOrder = std::tuple<std::string, double, std::int32_t, std::string, float, float>;

/// A command on its way into the survey.
struct CommandExchange {
  std::map<KeyOrder, EditedKey> keys;
  std::vector<WrittenEntry> written;  // the last one of the command first
};

/// Leaves out of what undoes the command the values of derived rows that an undo computes anyhow: where it
/// only took values away and there is still something to compute from, there was before, too. They are nine
/// tenths of what an entry holds.
void drop_what_is_computed(CommandExchange& exchange);

/// Writes all entries, the last one first, and reduces each key once; `row.earlier` of what was written is
/// then what undoes it. Entries whose readings are gone are left out. Progress is shown over the whole, and
/// the user may stop, which leaves everything as it was. Throws dao::Error.
/// @return failed after a message
Outcome exchange_command(std::span<const UndoEntry> command, CommandExchange& exchange);

}  // namespace Module_averaged_data
