#include "reduction/edits/edit_many.h"

#include <utility>

#include "core/session_state.h"
#include "core/trap_errors.h"
#include "core/undo_stack.h"
#include "reduction/edits/exchange_command.h"

namespace Module_averaged_data {

namespace {

/// @return 0, or -1 after a message
int show_exchange(const CommandExchange& exchange) {
  int shown = 0;
  for (const WrittenEntry& each : exchange.written) {
    show_entry(each.entry, each.row);
  }
  for (const auto& [order, edited] : exchange.keys) {
    shown |= show_reduced_station(edited.key, session().frequencies, edited.reduced);
  }
  return shown;
}

}  // namespace

Edit edit_many(std::span<const UndoEntry> entries) {
  const BusyPointer busy;
  CommandExchange exchange;
  Outcome outcome = Outcome::failed;
  if (trap_errors("An error occurred while storing the change: ",
                  [&] { outcome = exchange_command(entries, exchange); }) != 0 ||
      outcome == Outcome::failed) {
    return Edit::failed;
  }
  if (outcome == Outcome::stopped || exchange.written.empty()) {
    return Edit::nothing;
  }
  const int shown = show_exchange(exchange);
  const std::int32_t command = Module_Brenlox::next_undo_command();
  for (WrittenEntry& each : exchange.written) {
    each.row.earlier.command = command;
    Module_Brenlox::push_undo(std::move(each.row.earlier));
  }
  return shown == 0 ? Edit::changed : Edit::failed;
}

}  // namespace Module_averaged_data
