// inversion_worker.h: an inversion in a thread of its own, told of where the windows live.
#pragma once
#include <QObject>
#include <QString>
#include <filesystem>
#include <mutex>

#include "occam/inversion/run_inversion.h"
#include "occam/windows/background_work.h"

/// Runs one inversion at a time; at its end an inversion is stopped and waited for. All signals come from the
/// event loop.
class InversionWorker : public QObject {
  Q_OBJECT

 public:
  explicit InversionWorker(QObject* parent = nullptr) : QObject(parent), work_(*this) {}

  /// @param directory  of the run, absolute. An inversion mustn't be running.
  void start(const std::filesystem::path& directory, const Module_occam::InversionOptions& options);
  /// The inversion ends soon, with the iterations that are finished.
  void stop() { work_.stop(); }
  [[nodiscard]] bool running() const { return work_.running(); }
  [[nodiscard]] bool stopping() const { return work_.stopping(); }
  [[nodiscard]] Module_occam::InversionProgress progress() const;

 Q_SIGNALS:
  void iteration_ended(const Module_occam::InversionStep& step);
  // Exactly one of these is the last of an inversion, which isn't running any more.
  void ended(const Module_occam::InversionReport& report);
  void earlier_found(const QString& sentence);
  void failed(const QString& sentence);

 private:
  void invert(const std::filesystem::path& directory, const Module_occam::InversionOptions& options);

  mutable std::mutex mutex_;
  Module_occam::InversionProgress progress_;  // guarded by mutex_
  BackgroundWork work_;
};
