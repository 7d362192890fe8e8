// fault_handler.h: a last message of a process that dies of a fault.
#pragma once

/// From now on a fault (bad memory access, bad instruction, division by zero) writes its name to the standard
/// error output before it ends the process the way it would have ended anyway, with a core dump where those
/// are on.
void install_fault_handler();
