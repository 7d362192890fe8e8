// main.cpp: starts the workstation.
#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QTimer>
#include <memory>

#include "app/Form_main.h"
#include "app/program_start.h"
#include "database/survey_database.h"
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
  arguments.addPositionalArgument("files",
                                  "A survey database to open at start, field files and folders to import.",
                                  "[survey] [files and folders...]");
  arguments.process(application);
  QStringList paths;  // opening a survey moves to its folder
  for (const QString& argument : arguments.positionalArguments()) {
    paths.append(QFileInfo(argument).absoluteFilePath());
  }

  install_interfaces(std::make_unique<QtUserInterface>(), std::make_unique<QtSettingsStore>());
  Form_main window;
  window.show();  // before opening, which may take a while and may have to report something
  if (!paths.isEmpty()) {
    QTimer::singleShot(0, &window, [&window, paths] { window.open_files(paths); });
  }
  const int status = QApplication::exec();
  // Left to the end of the process, the survey would be compacted again by the next opening.
  static_cast<void>(Module_database::close_database());
  return status;
}
