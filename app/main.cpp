// main.cpp: starts the workstation.
#include <QApplication>
#include <QCommandLineParser>
#include <memory>

#include "app/Form_main.h"
#include "app/program_start.h"
#include "platform/windows/qt_settings_store.h"
#include "platform/windows/qt_user_interface.h"

int main(int argc, char** argv) {
  choose_platform(argc, argv);
  const QApplication application(argc, argv);
  set_up_application();

  QCommandLineParser arguments;
  arguments.setApplicationDescription("A workstation for magnetotelluric field data.");
  arguments.addHelpOption();
  arguments.addVersionOption();
  arguments.addPositionalArgument("survey", "Survey database to open at start.", "[survey]");
  arguments.process(application);
  const QStringList surveys = arguments.positionalArguments();
  if (surveys.size() > 1) {
    arguments.showHelp(2);
  }

  install_interfaces(std::make_unique<QtUserInterface>(), std::make_unique<QtSettingsStore>());
  Form_main window;
  window.show();  // before opening, which may take a while and may have to report something
  if (!surveys.isEmpty()) {
    window.open_survey(surveys.constFirst());
  }
  return QApplication::exec();
}
