// drawing_commands.h: the commands that draw by the charts of the windows.
#pragma once
#include <span>

#include "batch/command.h"

namespace Batch {

using AddCommand = Command (*)(Program&);

/// In the order of --help; none in a build without windows.
std::span<const AddCommand> drawing_commands();

}  // namespace Batch
