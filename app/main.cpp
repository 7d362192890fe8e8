// main.cpp: starts the workstation.
#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QIcon>
#include <QPixmap>
#include <QStyleFactory>
#include <iostream>
#include <memory>

#include "app/Form_main.h"
#include "core/session_state.h"
#include "platform/windows/qt_settings_store.h"
#include "platform/windows/qt_user_interface.h"

namespace {

/// For a picture of the window that nobody waits for: a message must not hold it up.
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

int save_picture(Form_main& window, const QString& file) {
  window.show();
  QApplication::processEvents();
  if (!window.grab().save(file, "PNG")) {
    std::cerr << "The picture can't be written to " << file.toStdString() << '\n';
    return 1;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
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
  const QCommandLineOption screenshot("screenshot", "Write a picture of the window to <file> and end.",
                                      "file");
  const QCommandLineOption size("size", "Size of the window in the picture, as 1280x800.", "size",
                                "1280x800");
  arguments.addOptions({screenshot, size});
  arguments.process(application);

  const bool unattended = arguments.isSet(screenshot);
  const QSize picture_size = size_from_text(arguments.value(size));
  if (arguments.positionalArguments().size() > 1 || picture_size.isEmpty()) {
    arguments.showHelp(2);
  }
  // The survey's folder becomes the working directory, so relative names are settled before it is opened.
  const QString picture_file = QFileInfo(arguments.value(screenshot)).absoluteFilePath();
  if (unattended) {
    install_user_interface(std::make_unique<UnattendedInterface>());
  } else {
    install_user_interface(std::make_unique<QtUserInterface>());
  }
  install_settings_store(std::make_unique<QtSettingsStore>());

  Form_main window;
  if (unattended) {
    window.resize(picture_size);
  }
  if (!unattended) {
    window.show();  // before opening, which may take a while and may have to say something
  }
  const QStringList surveys = arguments.positionalArguments();
  if (!surveys.isEmpty()) {
    window.open_survey(surveys.constFirst());
  }
  if (!unattended) {
    return QApplication::exec();
  }
  const bool opened = surveys.isEmpty() || session().database_open;
  return save_picture(window, picture_file) != 0 || !opened ? 1 : 0;
}
