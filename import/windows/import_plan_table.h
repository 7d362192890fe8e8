// import_plan_table.h: the table of all files as an import would store them.
#pragma once
#include <QTableView>

class ImportPlanModel;

/// A text that is typed goes into all selected cells of its column.
class ImportPlanTable : public QTableView {
  Q_OBJECT

 public:
  explicit ImportPlanTable(QWidget* parent = nullptr);

  void show_model(ImportPlanModel& model);
  /// Makes a row the current one; does nothing if there is none.
  void go_to_row(int row);

 Q_SIGNALS:
  void row_chosen(int row);

 protected:
  void commitData(QWidget* editor) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

 private:
  void size_columns();
  void reset_selected();

  ImportPlanModel* plan_ = nullptr;
};
