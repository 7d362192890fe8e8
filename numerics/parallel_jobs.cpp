#include "numerics/parallel_jobs.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "core/scope_guard.h"

namespace numerics {

namespace {

// How often the progress is reported, and the wish to stop asked for, while no item ends.
constexpr std::chrono::milliseconds report_interval{50};

struct Progress {
  std::mutex mutex;
  std::condition_variable changed;
  std::size_t next = 0;
  std::size_t done = 0;
  std::size_t running = 0;  // threads
  bool stop = false;
  std::exception_ptr failure;
};

void work(std::size_t thread, std::size_t count, const std::function<void(std::size_t, std::size_t)>& job,
          Progress& progress) {
  std::unique_lock lock(progress.mutex);
  while (!progress.stop && progress.next < count) {
    const std::size_t item = progress.next++;
    lock.unlock();
    std::exception_ptr failure;
    try {
      job(item, thread);
    } catch (...) {
      failure = std::current_exception();
    }
    lock.lock();
    ++progress.done;
    if (failure && !progress.failure) {
      progress.failure = failure;
      progress.stop = true;
    }
    progress.changed.notify_one();
  }
  --progress.running;
  progress.changed.notify_one();
}

}  // namespace

std::size_t job_threads(std::size_t count, std::size_t threads) {
  const std::size_t wanted = threads > 0 ? threads : std::max(1U, std::thread::hardware_concurrency());
  return std::min(wanted, count);
}

bool run_jobs(std::size_t count, std::size_t threads,
              const std::function<void(std::size_t, std::size_t)>& job,
              const std::function<bool(double)>& report) {
  if (count == 0) {
    return true;
  }
  Progress progress;
  progress.running = job_threads(count, threads);
  std::vector<std::jthread> workers;
  // Before the workers are waited for, also where the report throws.
  const ScopeGuard stop_workers([&progress] {
    const std::scoped_lock lock(progress.mutex);
    progress.stop = true;
  });
  for (std::size_t thread = 0; thread < job_threads(count, threads); ++thread) {
    workers.emplace_back([&, thread] { work(thread, count, job, progress); });
  }
  bool stopped = false;
  std::unique_lock lock(progress.mutex);
  for (bool finished = false; !finished;) {
    if (progress.running > 0) {
      progress.changed.wait_for(lock, report_interval);
    }
    finished = progress.running == 0;
    if (report && !stopped && !progress.failure) {
      const double share = static_cast<double>(progress.done) / static_cast<double>(count);
      lock.unlock();
      stopped = !report(share);
      lock.lock();
      progress.stop = progress.stop || stopped;
    }
  }
  if (progress.failure) {
    std::rethrow_exception(progress.failure);
  }
  return !stopped;
}

}  // namespace numerics
