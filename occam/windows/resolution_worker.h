// resolution_worker.h: what the data say of the blocks of an iteration, computed in a thread of its own.
#pragma once
#include <QObject>
#include <QString>
#include <atomic>
#include <filesystem>
#include <map>
#include <string>

#include "occam/inversion/block_resolution.h"
#include "occam/results/run_results.h"
#include "occam/windows/background_work.h"

/// Keeps what it has computed, by iteration file, for as long as the file is the same.
class ResolutionWorker : public QObject {
  Q_OBJECT

 public:
  /// @param directory  of the run, absolute
  explicit ResolutionWorker(std::filesystem::path directory, QObject* parent = nullptr)
      : QObject(parent), directory_(std::move(directory)), work_(*this) {}

  /// What is known of an iteration; null if it hasn't been computed.
  [[nodiscard]] const Module_occam::BlockResolution* find(const std::string& iteration_file) const;
  /// Computes an iteration, unless it is known, has failed, or is being computed; another one is given up.
  void want(const std::string& iteration_file);
  void stop();
  [[nodiscard]] bool running() const { return work_.running(); }
  [[nodiscard]] double share() const { return share_; }  // done, 0 to 1

 Q_SIGNALS:
  void computed();
  void stopped();
  void failed(const QString& sentence);

 private:
  struct Known {
    Module_occam::FileStamp stamp;
    std::optional<Module_occam::BlockResolution> resolution;  // none: it failed
  };

  void begin();
  void compute(const std::string& iteration_file);
  void take(const std::string& iteration_file, Known known);
  [[nodiscard]] bool is_known(const std::string& iteration_file) const;

  std::filesystem::path directory_;
  std::map<std::string, Known> known_;
  std::string wanted_;  // the last one that was asked for; empty after a stop
  std::string computing_;
  std::atomic<double> share_ = 0.0;
  BackgroundWork work_;
};
