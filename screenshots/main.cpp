// brenlox_screenshots: writes pictures of all windows, for the pages that describe them and to look at.
#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QPalette>
#include <iostream>
#include <memory>

#include "app/Form_main.h"
#include "app/program_start.h"
#include "core/session_state.h"
#include "platform/windows/qt_user_interface.h"
#include "screenshots/platform_lines.h"
#include "screenshots/window_pictures.h"

namespace {

/// Nobody waits for these windows: a message must not hold them up.
class UnattendedInterface final : public QtUserInterface {
 public:
  void show_message(const std::string& text) override { std::cerr << text << '\n'; }
  bool ask_yes_no(const std::string& question) override {
    std::cerr << question << " No\n";
    return false;
  }
};

QSize size_from_text(const QString& text) {
  const QStringList sides = text.split('x');
  return sides.size() == 2 ? QSize(sides[0].toInt(), sides[1].toInt()) : QSize();
}

/// As a desktop set to dark gives it.
QPalette dark_palette() {
  QPalette dark(QColor(50, 50, 54), QColor(38, 38, 42));
  dark.setColor(QPalette::Base, QColor(28, 28, 30));
  dark.setColor(QPalette::AlternateBase, QColor(36, 36, 40));
  dark.setColor(QPalette::ToolTipBase, QColor(50, 50, 54));
  dark.setColor(QPalette::ToolTipText, Qt::white);
  dark.setColor(QPalette::PlaceholderText, QColor(160, 160, 165));
  dark.setColor(QPalette::Link, QColor(100, 170, 255));
  dark.setColor(QPalette::Highlight, QColor(48, 100, 170));
  dark.setColor(QPalette::HighlightedText, Qt::white);
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    dark.setColor(QPalette::Disabled, role, QColor(120, 120, 125));
  }
  return dark;
}

}  // namespace

int main(int argc, char** argv) {
  choose_platform(argc, argv);
  drop_platform_lines();
  const QApplication application(argc, argv);
  set_up_application();

  QCommandLineParser arguments;
  arguments.setApplicationDescription("Writes pictures of all windows of Brenlox on a survey.");
  arguments.addHelpOption();
  arguments.addVersionOption();
  arguments.addPositionalArgument("survey", "Survey database to show.");
  arguments.addPositionalArgument("folder", "Where the pictures go; created if it is missing.");
  const QCommandLineOption size("size", "Size of the main window, as 1280x800.", "size", "1280x800");
  arguments.addOption(size);
  const QCommandLineOption dark("dark", "Shows the windows in the colours of a dark desktop.");
  arguments.addOption(dark);
  arguments.process(application);
  const QStringList places = arguments.positionalArguments();
  const QSize window_size = size_from_text(arguments.value(size));
  if (places.size() != 2 || window_size.isEmpty()) {
    arguments.showHelp(2);
  }
  // The survey's folder becomes the working directory, so relative names are settled before it is opened.
  const QString folder = QFileInfo(places[1]).absoluteFilePath();

  if (arguments.isSet(dark)) {
    QApplication::setPalette(dark_palette());
  }
  // The settings of whoever runs this stay out of the pictures.
  install_interfaces(std::make_unique<UnattendedInterface>(), std::make_unique<MemorySettingsStore>());
  Form_main window;
  window.resize(window_size);
  window.open_survey(places[0]);
  return session().database_open && save_window_pictures(window, folder) == 0 ? 0 : 1;
}
