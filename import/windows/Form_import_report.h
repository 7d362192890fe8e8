// Form_import_report.h: what an import did with its files: by what is told, and by file.
#pragma once
#include <QDialog>
#include <QTreeWidget>
#include <memory>
#include <vector>

#include "import/report_groups.h"

namespace Ui {
class Form_import_report;
}

class Form_import_report : public QDialog {
  Q_OBJECT

 public:
  explicit Form_import_report(Module_data_file::ImportReport report, QWidget* parent = nullptr);
  ~Form_import_report() override;

 private:
  void fill_kinds();
  void add_files(QTreeWidgetItem* row) const;
  void fill_files();
  void add_remarks(QTreeWidgetItem* row) const;
  void show_file(QTreeWidgetItem* row);
  void copy() const;
  void save() const;

  std::unique_ptr<Ui::Form_import_report> ui_;
  Module_data_file::ImportReport report_;
  std::vector<Module_data_file::ReportGroup> groups_;
};
