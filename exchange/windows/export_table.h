// export_table.h: the table of the files that an export would write.
#pragma once
#include <QTableView>

class ExportPlanModel;

/// A click on a heading sorts, the third one puts what gives no file first again; Ctrl+C copies.
class ExportTable : public QTableView {
  Q_OBJECT

 public:
  explicit ExportTable(ExportPlanModel& model, QWidget* parent = nullptr);

 private:
  void size_columns();
};
