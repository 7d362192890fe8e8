// import_decode_grid.h: the table of what file names mean, edited in place.
#pragma once
#include <QTableWidget>

#include "import/import_choices.h"

class ImportDecodeGrid : public QTableWidget {
  Q_OBJECT

 public:
  explicit ImportDecodeGrid(QWidget* parent = nullptr);

  /// Shows a table and edits it from now on; it must outlive the grid.
  void edit_table(Module_data_file::DecodeTable& table);

  /// A row that these files have no use for is grey and can't be edited.
  void open_row(int row, bool open);

  /// Shows the table as it is now.
  void refresh();

  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  void table_changed();
  /// What was typed can't be used, and why; the cell has its earlier text again.
  void refused(const QString& fault);

 protected:
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
  bool focusNextPrevChild(bool next) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  [[nodiscard]] bool at_end(bool last) const;
  void cell_clicked(int row, int column);
  void cell_edited(int row, int column);

  Module_data_file::DecodeTable* table_ = nullptr;
};
