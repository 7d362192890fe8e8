#include "app/window_size.h"

#include <QScreen>
#include <QSize>
#include <QWidget>

#include "core/session_state.h"
#include "platform/settings_store/settings_names.h"
#include "platform/settings_store/settings_store.h"

namespace {

constexpr QSize design_size(1240, 760);
constexpr QSize frame_room(8, 48);  // frame and title of a window
constexpr const char* maximized_key = "MainWindowMaximized";

}  // namespace

void restore_size(QWidget& window) {
  // The size may come from a larger screen, or from a file that holds any number.
  const QSize room = window.screen()->availableSize() - frame_room;
  const auto pixels = [](float stored, int most) {
    return stored < static_cast<float>(most) ? static_cast<int>(stored) : most;
  };
  const QSize stored(pixels(session().form_width, room.width()),
                     pixels(session().form_height, room.height()));
  const bool is_given = session().form_width >= 1.0F && session().form_height >= 1.0F;
  window.resize(is_given ? stored : design_size.boundedTo(room));
  if (settings_store().value(settings_application, settings_section, maximized_key, "0") == "1") {
    window.setWindowState(window.windowState() | Qt::WindowMaximized);
  }
}

void keep_maximized(const QWidget& window) {
  settings_store().set_value(settings_application, settings_section, maximized_key,
                             window.isMaximized() ? "1" : "0");
}
