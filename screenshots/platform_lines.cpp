#include "screenshots/platform_lines.h"

#include <QString>
#include <QtGlobal>

namespace {

QtMessageHandler earlier_handler = nullptr;

void hand_on(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (!text.startsWith("This plugin does not support ")) {
    earlier_handler(type, context, text);
  }
}

}  // namespace

void drop_platform_lines() {
  const QtMessageHandler earlier = qInstallMessageHandler(hand_on);
  if (earlier != hand_on) {
    earlier_handler = earlier;
  }
}
