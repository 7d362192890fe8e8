#include "reduction/edits/edit_many.h"

#include <utility>
#include <vector>

#include "core/session_state.h"
#include "core/trap_errors.h"
#include "core/undo_stack.h"
#include "reduction/edits/exchange_command.h"

namespace Module_averaged_data {

namespace {

/// A failure has its message; what is in the survey stays there.
void show_exchange(const CommandExchange& exchange) {
  for (const WrittenEntry& each : exchange.written) {
    show_entry(each.entry, each.row);
  }
  for (const auto& [order, edited] : exchange.keys) {
    (void)show_reduced_station(edited.key, session().frequencies, edited.reduced);
  }
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
  show_exchange(exchange);
  drop_what_is_computed(exchange);
  std::vector<UndoEntry> earlier;
  earlier.reserve(exchange.written.size());
  for (WrittenEntry& each : exchange.written) {
    earlier.push_back(std::move(each.row.earlier));
  }
  Module_Brenlox::push_undo_command(std::move(earlier));
  return Edit::changed;
}

}  // namespace Module_averaged_data
