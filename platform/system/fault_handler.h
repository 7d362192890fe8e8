// fault_handler.h: the last words of a process that meets a fault of the machine.
#pragma once

/// From now on a fault (bad memory access, bad instruction, division by zero) writes its name to the standard
/// error output before it ends the process the way it would have ended anyway, with a core dump where those
/// are on.
void install_fault_handler();
