// told_export.h: what is told after an export.
#pragma once
#include <string>

#include "exchange/export_files.h"

/// What was written, and what the user has to know of it: what is said of several stations once, with how
/// many they are and which the first are. Of many remarks the first ones are shown.
std::string told_export(const Module_exchange::ExportChoices& choices,
                        const Module_exchange::ExportResult& result);
