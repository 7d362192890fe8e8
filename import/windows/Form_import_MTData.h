// Form_import_MTData.h: leads through an import: the files, what their names mean, a look at each, the run.
#pragma once
#include <QDialog>
#include <memory>

#include "import/file_sample.h"
#include "import/import_run.h"

namespace Ui {
class Form_import_MTData;
}

class Form_import_MTData : public QDialog {
  Q_OBJECT

 public:
  /// @param decode  what the file names mean, from one opening to the next; its specified texts are cleared.
  /// It
  ///                must outlive the window
  explicit Form_import_MTData(Module_data_file::DecodeTable& decode, QWidget* parent = nullptr);
  ~Form_import_MTData() override;

  /// Esc and the window's close button ask a run to stop, and close the window otherwise.
  void reject() override;
  void done(int result) override;

 private:
  void fill_controls();
  void connect_controls();
  void show_page(QWidget* page);
  void process_files();
  void take_choices();
  void show_sample(std::size_t index);
  void choices_changed();
  void import_data(Module_data_file::ImportMode mode);
  void set_running(bool running);
  void report_result(Module_data_file::ImportMode mode, int result,
                     const Module_data_file::ImportReport& report);

  std::unique_ptr<Ui::Form_import_MTData> ui_;
  Module_data_file::DecodeTable& decode_;
  Module_data_file::ImportChoices choices_;
  Module_data_file::FileSampler sampler_;
  std::vector<std::string> files_;  // as chosen on the first page
  std::size_t sample_index_ = 0;
  bool running_ = false;
};
