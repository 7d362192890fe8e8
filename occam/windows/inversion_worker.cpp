#include "occam/windows/inversion_worker.h"

#include <QMetaObject>
#include <utility>

#include "core/trap_errors.h"

using namespace Module_occam;

InversionWorker::~InversionWorker() {
  stop();
  if (thread_.joinable()) {
    thread_.join();
  }
}

void InversionWorker::start(const std::filesystem::path& directory, const InversionOptions& options) {
  stop_ = false;
  progress_ = {};
  thread_ = std::thread([this, directory, options] { work(directory, options); });
}

InversionProgress InversionWorker::progress() const {
  const std::scoped_lock lock(mutex_);
  return progress_;
}

/// Later, in the thread of this object.
template <class Call>
void InversionWorker::at_home(Call call) {
  QMetaObject::invokeMethod(this, std::move(call), Qt::QueuedConnection);
}

void InversionWorker::work(const std::filesystem::path& directory, const InversionOptions& options) {
  const auto last_words = [this](auto tell) {
    at_home([this, tell] {
      thread_.join();
      tell();
    });
  };
  InversionListener listener;
  listener.step = [this](const InversionStep& step) {
    at_home([this, step] { Q_EMIT iteration_ended(step); });
  };
  listener.progress = [this](const InversionProgress& progress) {
    const std::scoped_lock lock(mutex_);
    progress_ = progress;
    return !stop_;
  };
  try {
    const InversionReport report = run_inversion(directory, options, listener);
    last_words([this, report] { Q_EMIT ended(report); });
  } catch (const EarlierIterations& earlier) {
    last_words([this, text = QString(earlier.what())] { Q_EMIT earlier_found(text); });
  } catch (const std::exception& failure) {
    const std::string text = failure_message("The inversion failed: ", failure);
    last_words([this, text = QString::fromStdString(text)] { Q_EMIT failed(text); });
  }
}
