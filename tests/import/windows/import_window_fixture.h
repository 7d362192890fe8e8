// import_window_fixture.h: the import dialog on an open new survey, with field files in the folder "field".
#pragma once
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <memory>

#include "import/import_files.h"
#include "import/windows/Form_import_MTData.h"
#include "import/windows/import_decode_grid.h"
#include "platform/settings_store/settings_store.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/support/window_fixture.h"

class ImportWindowFixture : protected WindowFixture {
 protected:
  enum Column { use_file_name, start, width, specify };

  void open_dialog() {
    window_.reset();
    window_ = std::make_unique<Form_import_MTData>(lasting_);
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
  }
  template <class Widget = QWidget>
  Widget* control(const char* name) const {
    return window_->findChild<Widget*>(name);
  }
  void click(const char* name) const {
    const int on_the_mark = 8;  // of a check box, which takes no click beside its text
    QTest::mouseClick(control(name), Qt::LeftButton, {}, {on_the_mark, control(name)->height() / 2});
  }
  QString text(const char* name) const { return control<QLineEdit>(name)->text(); }
  QString list_text(int row, int column) const {
    return control<QTreeWidget>("ListView_binary")->topLevelItem(row)->text(column);
  }
  int listed() const { return control<QTreeWidget>("ListView_binary")->topLevelItemCount(); }
  void choose(const char* combo, int index) const {
    auto* const box = control<QComboBox>(combo);
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Home);
    for (int i = 0; i < index; ++i) {
      QTest::keyClick(box, Qt::Key_Down);
    }
    QCOMPARE(box->currentIndex(), index);
  }
  void click_cell(int row, int column) const {
    auto* const grid = control<ImportDecodeGrid>("Grid_import_decode");
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                      grid->visualRect(grid->model()->index(row, column)).center());
  }
  QString cell(int row, int column) const {
    return control<ImportDecodeGrid>("Grid_import_decode")->item(row, column)->text();
  }
  void type_cell(int row, int column, const QString& typed) const {
    click_cell(row, column);
    auto* const editor = control<QLineEdit>("Text_edit");
    QVERIFY(editor != nullptr && editor->isVisible());
    editor->selectAll();
    QTest::keyClick(editor, Qt::Key_Delete);
    QTest::keyClicks(editor, typed);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY(control<QLineEdit>("Text_edit") == nullptr);  // it is deleted by an event
  }
  // Line 200E and rate 256 from names like "L200E_E0_R0256_1.edi".
  void decode_from_names() const {
    const int columns[3][2] = {{2, 4}, {8, 1}, {11, 4}};
    for (const int row : {0, 2}) {  // sections number themselves
      click_cell(row, use_file_name);
      type_cell(row, start, QString::number(columns[row][0]));
      type_cell(row, width, QString::number(columns[row][1]));
    }
  }
  /// The names of the controls that Tab leads to, from the one that has the focus until it comes back.
  QStringList focus_order() const {
    QStringList names;
    constexpr int more_than_there_are = 40;
    for (int i = 0; i < more_than_there_are; ++i) {
      const QString name = QApplication::focusWidget()->objectName();
      if (names.contains(name)) {
        break;
      }
      names.append(name);
      if (auto* const grid = qobject_cast<QTableWidget*>(QApplication::focusWidget()); grid != nullptr) {
        grid->setCurrentCell(grid->rowCount() - 1, grid->columnCount() - 1);  // Tab goes through its cells
      }
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    return names;
  }
  std::string add_file(const std::string& name, const MadeSection& section = {}) const {
    return folder_->write("field/" + name, made_edi({section}));
  }
  void make_three_stations() const {
    for (const char* const station : {"1", "2", "10"}) {
      (void)add_file(std::string("L200E_E0_R0256_") + station + ".edi",
                     {.sectid = std::string("\"") + station + "\""});
    }
  }
  void go_to_import_page() {
    open_dialog();
    click("Command_find_and_add_files");
    click("Command_process_files");
    QVERIFY(control("Frame_import_data")->isVisible());
  }
  static int rows_in(const std::string& table) {
    return Module_database::open_survey().database.open_recordset("SELECT * FROM " + table).record_count();
  }

  void begin() {
    make_folder();
    lasting_ = {};
    install_settings_store(std::make_unique<MemorySettingsStore>());
    std::filesystem::create_directory(folder_->folder() / "field");
    Module_data_file::keep_import_folder(folder_->path("field"));
    make_survey();
  }
  void end() {
    window_.reset();
    remove_folder();
  }

  Module_data_file::LastingChoices lasting_;
  std::unique_ptr<Form_import_MTData> window_;
};
