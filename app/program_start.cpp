#include "app/program_start.h"

#include <QApplication>
#include <QIcon>
#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "platform/widgets/outlined_style.h"

/// A static library's resources are linked in only where they are asked for. (Qt wants the macro outside of
/// any namespace.)
static void load_icon() { Q_INIT_RESOURCE(brenlox); }

void choose_platform(int argc, char** argv) {
  constexpr std::string_view words_only[] = {"-h", "--help", "--help-all", "-v", "--version"};
  if (std::any_of(argv + 1, argv + argc, [&](const char* argument) {
        return std::ranges::find(words_only, argument) != std::end(words_only);
      })) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
}

void set_up_application() {
  load_icon();
  QApplication::setApplicationName("Brenlox");
  QApplication::setApplicationVersion(BRENLOX_VERSION);
  QApplication::setWindowIcon(QIcon(":/brenlox.png"));
  QApplication::setDesktopFileName("brenlox");
  QApplication::setStyle(new OutlinedStyle);
}

void install_interfaces(std::unique_ptr<UserInterface> user, std::unique_ptr<SettingsStore> settings) {
  install_user_interface(std::move(user));
  install_settings_store(std::move(settings));
}
