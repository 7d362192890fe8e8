#include "occam/windows/background_work.h"

#include <QMetaObject>
#include <utility>

BackgroundWork::~BackgroundWork() {
  stop();
  if (thread_.joinable()) {
    thread_.join();
  }
}

void BackgroundWork::start(std::function<void()> work) {
  stop_ = false;
  thread_ = std::thread(std::move(work));
}

void BackgroundWork::tell(std::function<void()> call) {
  QMetaObject::invokeMethod(&home_, std::move(call), Qt::QueuedConnection);
}

void BackgroundWork::finish(std::function<void()> call) {
  tell([this, call = std::move(call)] {
    thread_.join();
    call();
  });
}
