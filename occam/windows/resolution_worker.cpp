#include "occam/windows/resolution_worker.h"

#include <utility>

#include "core/trap_errors.h"

using namespace Module_occam;

bool ResolutionWorker::is_known(const std::string& iteration_file) const {
  const auto found = known_.find(iteration_file);
  return found != known_.end() && found->second.stamp == file_stamp(directory_ / iteration_file);
}

const BlockResolution* ResolutionWorker::find(const std::string& iteration_file) const {
  if (!is_known(iteration_file)) {
    return nullptr;
  }
  const auto& resolution = known_.at(iteration_file).resolution;
  return resolution ? &*resolution : nullptr;
}

void ResolutionWorker::want(const std::string& iteration_file) {
  wanted_ = is_known(iteration_file) ? std::string() : iteration_file;
  if (!work_.running()) {
    begin();
  } else if (computing_ != wanted_) {
    work_.stop();  // the wanted one begins when this one has ended
  }
}

void ResolutionWorker::stop() { want({}); }

void ResolutionWorker::begin() {
  computing_ = wanted_;
  share_ = 0.0;
  if (!computing_.empty()) {
    work_.start([this, file = computing_] { compute(file); });
  }
}

void ResolutionWorker::compute(const std::string& iteration_file) {
  Known known{file_stamp(directory_ / iteration_file), std::nullopt};
  try {
    known.resolution = block_resolution(directory_, iteration_file, 0, [this](double share) {
      share_ = share;
      return !work_.stopping();
    });
    const bool done = known.resolution.has_value();
    work_.finish([this, iteration_file, known = std::move(known), done] {
      if (done) {
        take(iteration_file, known);
        Q_EMIT computed();
      } else {
        begin();
        Q_EMIT stopped();
      }
    });
  } catch (const std::exception& failure) {
    const std::string text = failure_message("What the data see can't be computed: ", failure);
    work_.finish([this, iteration_file, known, text] {
      take(iteration_file, known);
      Q_EMIT failed(QString::fromStdString(text));
    });
  }
}

void ResolutionWorker::take(const std::string& iteration_file, Known known) {
  known_[iteration_file] = std::move(known);
  if (wanted_ == iteration_file) {
    wanted_.clear();
  }
  begin();
}
