// strike_table.h: the strike of each station of a line, with what has been done to its data.
#pragma once
#include <QTableWidget>
#include <optional>
#include <vector>

#include "tensor/strike_summary.h"

class StrikeTable : public QTableWidget {
  Q_OBJECT

 public:
  explicit StrikeTable(QWidget* parent = nullptr);

  /// Order and selection stay as far as the stations do.
  /// @param summary  none: the stations have no strike
  void show_stations(const std::vector<Module_tensor::StrikeStation>& stations,
                     const std::optional<Module_tensor::StrikeSummary>& summary);
  /// The main window shows this station of the line.
  void mark_station(std::optional<std::size_t> index);
  /// Of the rows that have a selected cell.
  [[nodiscard]] std::vector<double> selected_stations() const;
  /// The whole table with its headings, as lines with tabs between the columns, to the clipboard.
  void copy_all() const;

 Q_SIGNALS:
  void station_chosen(double station);

 private:
  bool take_stations(const std::vector<Module_tensor::StrikeStation>& stations, std::vector<int>& rows);
  void fill_row(int row, const Module_tensor::StrikeStation& station,
                const Module_tensor::StationStrike& shown);
  void fit_stations();
  void put_text(int row, int column, const QString& text);
  void put_number(int row, int column, const QString& text, double number);
  void put_number(int row, int column, double number, const char* picture);

  bool columns_fitted_ = false;
};
