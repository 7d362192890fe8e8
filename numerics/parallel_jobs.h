// parallel_jobs.h: work on independent items over all cores, with progress and a way to stop.
#pragma once
#include <cstddef>
#include <functional>

namespace numerics {

/// Runs job(item, thread) for items 0 to count - 1, each once and in no order that is known beforehand, on
/// threads of its own. Jobs that run at the same time have different thread numbers (0-based), so that
/// scratch memory can be kept by thread. The calling thread only waits and reports.
/// @param threads   0: as many as the machine has cores
/// @param progress  may be empty; called from the calling thread, about every 50 ms, with the share done,
///                  0 to 1; false stops after the items under way
/// @return false if stopped. The first exception of a job ends the work and is thrown here.
bool run_jobs(std::size_t count, std::size_t threads,
              const std::function<void(std::size_t, std::size_t)>& job,
              const std::function<bool(double)>& progress);

/// The number of threads that run_jobs will use.
std::size_t job_threads(std::size_t count, std::size_t threads);

}  // namespace numerics
