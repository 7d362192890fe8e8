// results_windows.h: the windows of run directories that are open beside the main window, one for each run.
#pragma once
#include <QList>
#include <QObject>
#include <QPointer>
#include <filesystem>

#include "occam/windows/Form_occam_inversion.h"

class ResultsWindows : public QObject {
  Q_OBJECT

 public:
  explicit ResultsWindows(QObject* parent = nullptr) : QObject(parent) {}
  ResultsWindows(const ResultsWindows&) = delete;
  ResultsWindows& operator=(const ResultsWindows&) = delete;
  /// Inversions that are running are stopped, and waited for.
  ~ResultsWindows() override;

  /// Asks for the control file of a run and shows the run; one without iterations if the user wants to run
  /// its inversion.
  void open_chosen();
  /// Shows a run directory, with or without iterations, with the page of its inversion.
  void open_to_run(const std::filesystem::path& directory);

  /// Closes all windows. Where inversions are running the user is asked, and they are stopped.
  /// @return whether all are closed; if not, all_closed() follows, unless the user said no
  bool close_all();

 Q_SIGNALS:
  void all_closed();

 private:
  enum class Page { section, inversion };

  QList<Form_occam_inversion*> windows_of(const std::filesystem::path& folder);
  static void show_again(Form_occam_inversion& window, Page page);
  void show_window(Module_occam::RunResults results, Page page);
  void forget_closed();

  QList<QPointer<Form_occam_inversion>> windows_;
  bool closing_ = false;
};
