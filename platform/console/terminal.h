// terminal.h: what a console program must know of where its output goes.
#pragma once

namespace console {

/// True if a person watches standard error, false if it goes to a file or another program.
bool standard_error_is_terminal();

}  // namespace console
