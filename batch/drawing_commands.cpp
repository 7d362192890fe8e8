#include "batch/drawing_commands.h"

namespace Batch {

namespace {
constexpr AddCommand add_commands[] = {add_plots_command, add_pseudosection_command, add_section_command};
}  // namespace

std::span<const AddCommand> drawing_commands() { return add_commands; }

}  // namespace Batch
