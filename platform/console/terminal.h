// terminal.h: where the output of a console program goes.
#pragma once

namespace console {

/// True if standard error is a terminal, false if it goes to a file or another program.
bool standard_error_is_terminal();

}  // namespace console
