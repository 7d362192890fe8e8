// system_facts.h: asks the operating system who the user is and where things are kept.
#pragma once
#include "core/environment.h"

/// User and computer, directories, decimal point. What the system doesn't say stays empty.
///
/// Outside Windows the configuration directory is $XDG_CONFIG_HOME/brenlox or ~/.config/brenlox, the
/// application data directory $XDG_DATA_HOME or ~/.local/share.
UTIL::SystemFacts collect_system_facts();

/// Installs the fault handler and fills session().environment; the first thing a program does.
void initialise_from_system(const UTIL::DisplayFacts& display = {});
