#include "core/finished_work.h"

#include <utility>

namespace Module_Brenlox {

namespace {

std::function<void(const FinishedWork&)>& listener() {
  static std::function<void(const FinishedWork&)> installed;
  return installed;
}

}  // namespace

void tell_finished(const std::string& text, const std::string& path) {
  if (listener()) {
    listener()({text, path});
  }
}

void set_finished_listener(std::function<void(const FinishedWork&)> installed) {
  listener() = std::move(installed);
}

}  // namespace Module_Brenlox
