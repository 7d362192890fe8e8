// table_model.h: a table of a survey file for a grid, which asks only for the rows it shows.
#pragma once
#include <QAbstractTableModel>
#include <QStringList>
#include <unordered_map>

#include "database/table_rows.h"

class TableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit TableModel(Module_database::TableRows rows, QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  /// How many rows have been read from the file so far.
  [[nodiscard]] std::size_t rows_read() const { return rows_.rows_read(); }

 private:
  [[nodiscard]] const QStringList& row(int index) const;

  // Reading a row changes nothing that the grid can see.
  mutable Module_database::TableRows rows_;
  mutable std::unordered_map<int, QStringList> read_;  // those shown last
};
