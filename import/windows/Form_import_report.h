// Form_import_report.h: what an import did with each of its files.
#pragma once
#include <QDialog>
#include <QTreeWidget>
#include <memory>

#include "import/import_report.h"

namespace Ui {
class Form_import_report;
}

class Form_import_report : public QDialog {
  Q_OBJECT

 public:
  explicit Form_import_report(Module_data_file::ImportReport report, QWidget* parent = nullptr);
  ~Form_import_report() override;

 private:
  void fill();
  void add_remarks(QTreeWidgetItem* row) const;
  void copy() const;
  void save() const;

  std::unique_ptr<Ui::Form_import_report> ui_;
  Module_data_file::ImportReport report_;
};
