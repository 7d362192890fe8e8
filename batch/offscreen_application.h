// offscreen_application.h: the Qt application that draws pages and pictures; it needs no display.
#pragma once
#include <QApplication>
#include <optional>
#include <string>

namespace Batch {

class OffscreenApplication {
 public:
  OffscreenApplication() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    application_.emplace(argument_count_, arguments_);
    QApplication::setApplicationName("Brenlox");
  }
  OffscreenApplication(const OffscreenApplication&) = delete;
  OffscreenApplication& operator=(const OffscreenApplication&) = delete;
  ~OffscreenApplication() = default;

 private:
  // They live as long as the application, which refers to them.
  std::string name_ = "brenlox_batch";
  int argument_count_ = 1;
  char* arguments_[2] = {name_.data(), nullptr};
  std::optional<QApplication> application_;
};

}  // namespace Batch
