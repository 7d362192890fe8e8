// background_work.h: long work in a thread of its own, for an object of the windows.
#pragma once
#include <QObject>
#include <atomic>
#include <functional>
#include <thread>

/// Does one work at a time. Calls come back through the event loop of the object that it works for, which
/// holds it as its last member: it ends before anything that the work uses.
class BackgroundWork {
 public:
  explicit BackgroundWork(QObject& home) : home_(home) {}
  BackgroundWork(const BackgroundWork&) = delete;
  BackgroundWork& operator=(const BackgroundWork&) = delete;
  /// Stops the work and waits for it; calls that haven't come yet are dropped with their object.
  ~BackgroundWork();

  /// No other work is running. The last thing that a work does is finish().
  void start(std::function<void()> work);
  /// The work is to end soon.
  void stop() { stop_ = true; }
  [[nodiscard]] bool running() const { return thread_.joinable(); }
  [[nodiscard]] bool stopping() const { return stop_; }

  // From the work's thread.
  void tell(std::function<void()> call);
  /// The work isn't running any more when the call comes.
  void finish(std::function<void()> call);

 private:
  QObject& home_;
  std::thread thread_;
  std::atomic<bool> stop_ = false;
};
