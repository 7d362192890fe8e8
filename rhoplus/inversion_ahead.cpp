#include "rhoplus/inversion_ahead.h"

#include <utility>

#include "core/trap_errors.h"

namespace Module_rhoplus {

namespace {

bool same_curve(const ReadingKey& a, const ReadingKey& b) {
  return a.line == b.line && a.station == b.station && a.reference_type == b.reference_type &&
         a.data_type == b.data_type && a.dipole == b.dipole;
}

}  // namespace

int InversionAhead::begin(const ReadingKey& key, const Frequencies& frequencies,
                          const RhoplusSettings& settings) {
  running_ = {};  // waits
  task_ = std::make_unique<StationTask>();
  if (prepare_inversion(key, frequencies, settings, *task_) != 0) {
    task_.reset();
    return -1;
  }
  running_ = std::async(std::launch::async, [task = task_.get()] { run_inversion(*task); });
  return 0;
}

int InversionAhead::finish(const ReadingKey& key, const Frequencies& frequencies,
                           const RhoplusSettings& settings, StationInversion& result) {
  const std::unique_ptr<StationTask> task = std::move(task_);
  std::future<void> running = std::exchange(running_, {});
  if (!task || !same_curve(task->key, key)) {
    return invert_station(key, frequencies, settings, result);
  }
  const int status = trap_errors(inversion_failed, [&] { running.get(); });
  result = std::move(task->inversion);
  return status;
}

}  // namespace Module_rhoplus
