// lock_holder.h: who holds a file that is locked.
#pragma once
#include <filesystem>
#include <string>

/// The other process of this machine that holds a lock on a file: "brenlox_batch, process 4711 of anna".
/// Empty if there is none, or if it can't be told: a process on another machine, or a system that doesn't
/// say.
std::string lock_holder(const std::filesystem::path& file);
