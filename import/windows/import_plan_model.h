// import_plan_model.h: the plan of an import as a table: a row for each section, problems first.
#pragma once
#include <QAbstractTableModel>
#include <QIcon>
#include <functional>
#include <string>
#include <vector>

#include "import/import_plan.h"
#include "import/proposals/plan_table.h"

/// Holds the plan that is shown and what the user has typed into it. Whoever makes the plan follows `edited`
/// with a new one.
class ImportPlanModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit ImportPlanModel(QObject* parent = nullptr);

  /// Begins with a list of files, with the edits of those that were in the list before. No row yet.
  void show_files(std::vector<std::string> files);
  /// Shows a plan of these files. Selected rows stay so, wherever they come to be.
  void show_plan(Module_data_file::ImportPlan plan, Module_data_file::LineDirection direction);

  /// Without, nothing can be changed, as during a run.
  void allow_edits(bool allowed) { may_edit_ = allowed; }
  [[nodiscard]] const std::vector<Module_data_file::PlannedEdit>& edits() const { return edits_; }
  [[nodiscard]] const Module_data_file::ImportPlan& plan() const { return plan_; }
  [[nodiscard]] const Module_data_file::PlannedSection& section(int row) const;
  [[nodiscard]] bool is_edited(const QModelIndex& index) const;

  /// Types a text into cells, with one new plan for all of them. Those that can't be edited stay.
  void type_into(const QModelIndexList& cells, const QString& text);
  /// Gives cells back what is proposed for them.
  void reset_cells(const QModelIndexList& cells);
  void reset_all();

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  [[nodiscard]] QVariant headerData(int column, Qt::Orientation orientation, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
  /// By a column; by -1: problems first, then as the files are listed.
  void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

 Q_SIGNALS:
  void edited();
  void refused(const QString& why);

 private:
  [[nodiscard]] bool has_problem(int row) const { return !section(row).problems.empty(); }
  [[nodiscard]] std::vector<std::size_t> ordered() const;
  [[nodiscard]] bool comes_before(std::size_t a, std::size_t b) const;
  [[nodiscard]] bool can_edit(const QModelIndex& index) const;
  /// False at a refusal, after `refused`.
  bool take(const QModelIndex& index, const std::string& text);
  void take_back(const QModelIndex& index);
  void lay_out(const std::function<void()>& change);

  std::vector<std::string> files_;
  Module_data_file::ImportPlan plan_;
  Module_data_file::LineDirection direction_ = Module_data_file::LineDirection::local_east;
  std::vector<Module_data_file::PlannedEdit> edits_;
  std::vector<std::size_t> order_;  // of the rows, places in the plan
  QIcon problem_;
  bool may_edit_ = true;
  int sorted_by_ = -1;
  Qt::SortOrder sort_order_ = Qt::AscendingOrder;
};
