// system_facts.h: asks the operating system who the user is and where things are kept.
#pragma once
#include <cstdint>

#include "core/environment.h"

/// User and computer, directories, decimal point. What the system doesn't say stays empty.
///
/// Outside Windows the configuration directory is $XDG_CONFIG_HOME/brenlox or ~/.config/brenlox, the
/// application data directory $XDG_DATA_HOME or ~/.local/share.
UTIL::SystemFacts collect_system_facts();

/// The level of the debug log that the variable BRENLOX_DEBUG_LEVEL asks for: 0, 1, or 2 with a message for
/// each line.
std::int32_t wanted_debug_level();

/// Installs the fault handler, raises session().debug_level if that is wanted, and fills
/// session().environment; the first thing a program does.
void initialise_from_system(const UTIL::DisplayFacts& display = {});
