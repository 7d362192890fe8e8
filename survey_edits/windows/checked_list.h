// checked_list.h: a long list in which rows are chosen by check marks, with a filter.
#pragma once
#include <QAbstractTableModel>
#include <QSortFilterProxyModel>
#include <QStringList>
#include <QTreeView>
#include <cstddef>
#include <functional>
#include <set>

class CheckedRows : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// What a cell shows, a text or a number, by which the column is sorted.
  using CellValue = std::function<QVariant(std::size_t row, int column)>;

  /// @param checked the chosen rows; must outlive the model
  CheckedRows(QStringList headers, std::size_t rows, CellValue value, std::set<std::size_t>& checked,
              QObject* parent);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  /// Checks rows or takes their marks away, as one change.
  void check(const std::set<std::size_t>& rows, bool checked);

 Q_SIGNALS:
  void checked_changed();

 private:
  QStringList headers_;
  std::size_t rows_;
  CellValue value_;
  std::set<std::size_t>& checked_;
};

/// Shows the rows in which any cell has the filter's text. Space checks the selected rows, or takes their
/// marks away if all have one; Delete asks for what is to be done with the checked ones.
class CheckedList : public QTreeView {
  Q_OBJECT

 public:
  CheckedList(CheckedRows* rows, const QString& name);

  void filter(const QString& text);
  /// Checks all rows that the filter shows, or takes their marks away.
  void check_shown(bool checked);

 Q_SIGNALS:
  void delete_pressed();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  [[nodiscard]] std::set<std::size_t> selected_rows() const;

  CheckedRows* rows_;
  QSortFilterProxyModel* shown_;
};
