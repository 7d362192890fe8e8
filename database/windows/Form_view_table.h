// Form_view_table.h: one table of the survey file in a grid, for looking at it.
#pragma once
#include <QDialog>
#include <memory>

#include "database/windows/table_model.h"

namespace Ui {
class Form_view_table;
}

class Form_view_table : public QDialog {
  Q_OBJECT

 public:
  /// Throws dao::Error if the file or the table can't be opened.
  Form_view_table(const std::string& path, const Module_database::ViewedTable& table,
                  QWidget* parent = nullptr);
  ~Form_view_table() override;

 private:
  void go_to_row(int row);
  void show_position();

  std::unique_ptr<Ui::Form_view_table> ui_;
  TableModel* model_;
};
