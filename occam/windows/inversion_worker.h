// inversion_worker.h: an inversion in a thread of its own, told of where the windows live.
#pragma once
#include <QObject>
#include <QString>
#include <atomic>
#include <filesystem>
#include <mutex>
#include <thread>

#include "occam/inversion/run_inversion.h"

/// Runs one inversion at a time. All signals come from the event loop of the thread that owns this object.
class InversionWorker : public QObject {
  Q_OBJECT

 public:
  explicit InversionWorker(QObject* parent = nullptr) : QObject(parent) {}
  InversionWorker(const InversionWorker&) = delete;
  InversionWorker& operator=(const InversionWorker&) = delete;
  /// Stops an inversion and waits for it.
  ~InversionWorker() override;

  /// @param directory  of the run, absolute. An inversion mustn't be running.
  void start(const std::filesystem::path& directory, const Module_occam::InversionOptions& options);
  /// The inversion ends soon, with the iterations that are finished.
  void stop() { stop_ = true; }
  [[nodiscard]] bool running() const { return thread_.joinable(); }
  [[nodiscard]] bool stopping() const { return stop_; }
  [[nodiscard]] Module_occam::InversionProgress progress() const;

 Q_SIGNALS:
  void iteration_ended(const Module_occam::InversionStep& step);
  // Exactly one of these is the last of an inversion, which isn't running any more.
  void ended(const Module_occam::InversionReport& report);
  void earlier_found(const QString& sentence);
  void failed(const QString& sentence);

 private:
  void work(const std::filesystem::path& directory, const Module_occam::InversionOptions& options);
  template <class Call>
  void at_home(Call call);

  std::thread thread_;
  std::atomic<bool> stop_ = false;
  mutable std::mutex mutex_;
  Module_occam::InversionProgress progress_;  // guarded by mutex_
};
