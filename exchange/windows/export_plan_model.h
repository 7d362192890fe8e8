// export_plan_model.h: the plan of an export as a table: a row for each file, and for what gives none.
#pragma once
#include <QAbstractTableModel>
#include <vector>

#include "exchange/export_plan.h"
#include "exchange/plan_texts.h"

class ExportPlanModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit ExportPlanModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

  void show_plan(Module_exchange::ExportPlan plan);
  [[nodiscard]] const Module_exchange::ExportPlan& plan() const { return plan_; }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  [[nodiscard]] QVariant headerData(int column, Qt::Orientation orientation, int role) const override;
  /// By a column; by -1: what gives no file first, then as the plan has it.
  void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

 private:
  [[nodiscard]] const Module_exchange::ExportRow& row_at(const QModelIndex& index) const;
  [[nodiscard]] std::vector<std::size_t> ordered() const;

  Module_exchange::ExportPlan plan_;
  std::vector<std::size_t> order_;  // of the rows, places in the plan
  int sorted_by_ = -1;
  Qt::SortOrder sort_order_ = Qt::AscendingOrder;
};
