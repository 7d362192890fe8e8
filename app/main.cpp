// main.cpp: starts the workstation.
#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QIcon>
#include <QStyleFactory>
#include <algorithm>
#include <iostream>
#include <iterator>
#include <memory>
#include <string_view>

#include "app/Form_main.h"
#include "core/session_state.h"
#include "platform/windows/qt_settings_store.h"
#include "platform/windows/qt_user_interface.h"
#include "screenshots/window_pictures.h"

namespace {

/// For pictures of the windows that nobody waits for: a message must not hold them up.
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

/// Words for the console, which need no display.
bool asks_for_words_only(int argc, char** argv) {
  constexpr std::string_view words_only[] = {"-h", "--help", "--help-all", "-v", "--version"};
  return std::any_of(argv + 1, argv + argc, [&](const char* argument) {
    return std::ranges::find(words_only, argument) != std::end(words_only);
  });
}

}  // namespace

int main(int argc, char** argv) {
  if (asks_for_words_only(argc, argv)) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  const QApplication application(argc, argv);
  QApplication::setApplicationName("Brenlox");
  QApplication::setApplicationVersion(BRENLOX_VERSION);
  QApplication::setWindowIcon(QIcon(":/brenlox.png"));
  QApplication::setDesktopFileName("brenlox");
  QApplication::setStyle(QStyleFactory::create("Fusion"));

  QCommandLineParser arguments;
  arguments.setApplicationDescription("A workstation for magnetotelluric field data.");
  arguments.addHelpOption();
  arguments.addVersionOption();
  arguments.addPositionalArgument("survey", "Survey database to open at start.", "[survey]");
  const QCommandLineOption screenshots(
      "screenshots", "Write pictures of all windows of the survey into <folder> and end.", "folder");
  const QCommandLineOption size("size", "Size of the main window in the pictures, as 1280x800.", "size",
                                "1280x800");
  arguments.addOptions({screenshots, size});
  arguments.process(application);

  const bool unattended = arguments.isSet(screenshots);
  const QSize picture_size = size_from_text(arguments.value(size));
  const QStringList surveys = arguments.positionalArguments();
  // Without a survey the windows would have nothing to show in their pictures.
  if (surveys.size() > 1 || picture_size.isEmpty() || (unattended && surveys.isEmpty())) {
    arguments.showHelp(2);
  }
  // The survey's folder becomes the working directory, so relative names are settled before it is opened.
  const QString picture_folder = QFileInfo(arguments.value(screenshots)).absoluteFilePath();
  if (unattended) {
    install_user_interface(std::make_unique<UnattendedInterface>());
    install_settings_store(std::make_unique<MemorySettingsStore>());
  } else {
    install_user_interface(std::make_unique<QtUserInterface>());
    install_settings_store(std::make_unique<QtSettingsStore>());
  }

  Form_main window;
  if (unattended) {
    window.resize(picture_size);
  }
  if (!unattended) {
    window.show();  // before opening, which may take a while and may have to say something
  }
  if (!surveys.isEmpty()) {
    window.open_survey(surveys.constFirst());
  }
  if (!unattended) {
    return QApplication::exec();
  }
  return session().database_open && save_window_pictures(window, picture_folder) == 0 ? 0 : 1;
}
