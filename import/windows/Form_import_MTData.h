// Form_import_MTData.h: leads through an import: the files, how they would be stored, the run.
#pragma once
#include <QDialog>
#include <memory>
#include <string>
#include <vector>

#include "import/import_entries.h"
#include "import/import_run.h"
#include "import/proposals/proposals.h"

namespace Ui {
class Form_import_MTData;
}
class ImportChoiceControls;
class ImportPlanModel;

class Form_import_MTData : public QDialog {
  Q_OBJECT

 public:
  /// @param lasting  what the user sets by hand and doesn't want to set again for the next import. It must
  /// outlive
  ///                 the window
  explicit Form_import_MTData(Module_data_file::LastingChoices& lasting, QWidget* parent = nullptr);
  ~Form_import_MTData() override;

  /// Begins with the second page for these files and folders, as soon as the window is up. Such an import
  /// ends without a message, unless something needs the user; `told` has the words.
  void take_files(const std::vector<std::string>& paths);

  /// Of the last import; empty if there was none.
  [[nodiscard]] const Module_data_file::ImportReport& report() const { return report_; }
  /// "Data import complete. ..." of the last import; empty if there was none that went well.
  [[nodiscard]] const QString& told() const { return told_; }

  /// Esc and the window's close button ask a run to stop, and close the window otherwise.
  void reject() override;
  void done(int result) override;

 private:
  void connect_controls();
  void show_page(QWidget* page);
  void process_files();
  [[nodiscard]] std::string folder_of_files() const;
  void scan_files();
  [[nodiscard]] bool look_into_files();
  void propose_choices();
  void choices_changed();
  void as_last_time();
  void make_plan();
  void show_sample(int row);
  void step_sample(int step);
  void define_projection();
  void import_data(Module_data_file::ImportMode mode);
  [[nodiscard]] int run(Module_data_file::ImportMode mode, Module_data_file::ImportReport& report);
  void set_running(bool running);
  void report_result(Module_data_file::ImportMode mode, int result,
                     const Module_data_file::ImportReport& report);

  std::unique_ptr<Ui::Form_import_MTData> ui_;
  ImportChoiceControls* controls_;
  ImportPlanModel* model_;
  Module_data_file::LastingChoices& lasting_;
  std::vector<std::string> files_;  // of the list on the first page, as far as they were looked into
  std::vector<Module_data_file::ScannedFile> scanned_;
  std::unique_ptr<Module_data_file::PlanMaker> maker_;
  Module_data_file::Proposals proposals_;
  std::optional<Module_data_file::ListChoices>
      by_hand_;  // on this page, before files were added or taken out
  Module_data_file::ImportReport report_;
  QString told_;
  bool given_ = false;  // the files were given, and nobody has asked for the dialog
  bool running_ = false;
};
