#include "occam/windows/inversion_worker.h"

#include "core/trap_errors.h"

using namespace Module_occam;

void InversionWorker::start(const std::filesystem::path& directory, const InversionOptions& options) {
  progress_ = {};
  work_.start([this, directory, options] { invert(directory, options); });
}

InversionProgress InversionWorker::progress() const {
  const std::scoped_lock lock(mutex_);
  return progress_;
}

void InversionWorker::invert(const std::filesystem::path& directory, const InversionOptions& options) {
  InversionListener listener;
  listener.step = [this](const InversionStep& step) {
    work_.tell([this, step] { Q_EMIT iteration_ended(step); });
  };
  listener.progress = [this](const InversionProgress& progress) {
    const std::scoped_lock lock(mutex_);
    progress_ = progress;
    return !work_.stopping();
  };
  try {
    const InversionReport report = run_inversion(directory, options, listener);
    work_.finish([this, report] { Q_EMIT ended(report); });
  } catch (const EarlierIterations& earlier) {
    work_.finish([this, text = QString(earlier.what())] { Q_EMIT earlier_found(text); });
  } catch (const std::exception& failure) {
    const std::string text = failure_message("The inversion failed: ", failure);
    work_.finish([this, text = QString::fromStdString(text)] { Q_EMIT failed(text); });
  }
}
