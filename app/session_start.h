// session_start.h: what the session knows before any survey is opened.
#pragma once
#include "platform/system/system_facts.h"

namespace Module_Brenlox {

/// Fills in the version, the facts about the machine and its display, the preferences and the settings of
/// Rho+ inversion.
void start_session(const UTIL::DisplayFacts& display);

}  // namespace Module_Brenlox
