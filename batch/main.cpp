// brenlox_batch: the workstation's operations without a window.
#include <algorithm>
#include <exception>
#include <iostream>
#include <vector>

#include "batch/command.h"
#include "batch/console_interface.h"
#include "batch/drawing_commands.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "core/version.h"
#include "numerics/occam_inversion/blas_threads.h"
#include "platform/system/system_facts.h"

namespace {

// In the order of --help, before those that draw.
// clang-format off
constexpr Batch::AddCommand add_commands[] = {
    Batch::add_new_command,
    Batch::add_import_command,
    Batch::add_recalculate_command,
    Batch::add_remove_command,
    Batch::add_rename_command,
    Batch::add_info_command,
    Batch::add_curve_command,
    Batch::add_tensor_command,
    Batch::add_export_command,
    Batch::add_zonge_command,
    Batch::add_rhoplus_command,
    Batch::add_invert_command,
    Batch::add_consistency_command,
    Batch::add_occam_command,
    Batch::add_occam_info_command,
    Batch::add_inversion_command,
    Batch::add_response_command,
    Batch::add_grid_command,
    Batch::add_mask_topo_command,
    Batch::add_projection_command,
    Batch::add_strike_command,
};
// clang-format on

int run(int argument_count, char** arguments) {
  Batch::Program program("Brenlox without a window: from field files to reduced curves.",
                         "Exit status: 0 done, 1 failed with a message, 2 wrong usage.",
                         "Brenlox " BRENLOX_VERSION);
  std::vector<Batch::Command> commands;
  for (const Batch::AddCommand add : add_commands) {
    commands.push_back(add(program));
  }
  for (const Batch::AddCommand add : Batch::drawing_commands()) {
    commands.push_back(add(program));
  }
  Batch::install_console(Batch::Answer::no);
  const Batch::ParseResult parsed = program.parse(argument_count, arguments);
  if (parsed != Batch::ParseResult::command) {
    return parsed == Batch::ParseResult::answered ? Batch::status_done : Batch::status_wrong_usage;
  }
  Batch::catch_interrupts();
  if (wanted_debug_level() > 0) {
    initialise_from_system();  // which says where the log is
  }
  session().version_text = version_text(BRENLOX_VERSION_MAJOR, BRENLOX_VERSION_MINOR);
  const auto given =
      std::ranges::find_if(commands, [](const Batch::Command& command) { return command.parser.is_given(); });
  return given->run();
}

}  // namespace

int main(int argument_count, char** arguments) {
  numerics::occam_inversion::end_waiting_blas_threads();
  try {
    const int status = run(argument_count, arguments);
    std::cout.flush();
    if (!std::cout) {
      std::cerr << "The output can't be written\n";
      return Batch::status_failed;
    }
    return status;
  } catch (const std::exception& failure) {
    std::cerr << failure_text(failure) << '\n';
    return Batch::status_failed;
  }
}
