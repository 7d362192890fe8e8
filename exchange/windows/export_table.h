// export_table.h: the table of the files that an export would write.
#pragma once
#include <QTableView>
#include <set>

class ExportPlanModel;

/// Columns are as wide as what they show, unless they were set by hand; remarks take the rest.
/// A click on a heading sorts, the third one puts what gives no file first again; Ctrl+C copies.
class ExportTable : public QTableView {
  Q_OBJECT

 public:
  explicit ExportTable(ExportPlanModel& model, QWidget* parent = nullptr);

 private:
  void size_columns();

  bool sizing_ = false;
  std::set<int> set_by_hand_;  // columns
};
