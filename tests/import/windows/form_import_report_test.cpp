// The report window: what was found by kind, the files behind it, and everything of one file.
#include "import/windows/Form_import_report.h"

#include <QApplication>
#include <QClipboard>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

using formats::FileReport;
using Module_data_file::ImportReport;

namespace {

ImportReport made_report(int files, int remarks_of_each) {
  ImportReport report;
  for (int index = 0; index < files; ++index) {
    FileReport& file = report.files.emplace_back();
    file.file = "folder/f" + std::to_string(index) + ".edi";
    file.sections = 1;
    file.readings = 4;
    file.all_yx_phases_negative = index % 2 == 0;
    for (int line = 1; line <= remarks_of_each; ++line) {
      formats::remark_ignored(file, line, "block >B" + std::to_string(line % 7) + " is not used");
    }
  }
  return report;
}

/// All rows below one, itself not counted.
int rows_below(const QTreeWidgetItem& row) {
  int rows = row.childCount();
  for (int index = 0; index < row.childCount(); ++index) {
    rows += rows_below(*row.child(index));
  }
  return rows;
}

}  // namespace

class FormImportReportTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void files_and_remarks_are_behind_their_kind() {
    ImportReport report = made_report(3, 2);
    report.files[1].readings = 0;
    report.files[1].failure = "the file ends early";
    Form_import_report window(report);
    window.show();
    auto* const kinds = window.findChild<QTreeWidget*>("Tree_kinds");
    QVERIFY(kinds->isVisible());
    QCOMPARE(kinds->topLevelItemCount(), 3);
    QCOMPARE(kinds->topLevelItem(0)->text(0), QString("1 file not imported: the file ends early"));
    QVERIFY(kinds->topLevelItem(1)->text(0).startsWith("2 files: all YX phases are negative, and masked; "));
    QTreeWidgetItem* const blocks = kinds->topLevelItem(2);
    QCOMPARE(blocks->text(0), QString::fromUtf8("3 files: block \u2026 is not used (>B1, >B2)"));
    QCOMPARE(blocks->text(1), QString("6"));
    QVERIFY(!blocks->icon(0).isNull());

    QCOMPARE(blocks->childCount(), 0);  // until it is unfolded, here with the keys
    kinds->setFocus();
    kinds->setCurrentItem(blocks);
    QTest::keyClick(kinds, Qt::Key_Right);
    QCOMPARE(blocks->childCount(), 3);
    QCOMPARE(blocks->child(2)->text(0), QString("f2.edi"));
    QCOMPARE(blocks->child(2)->text(1), QString("2"));
    blocks->child(2)->setExpanded(true);
    QCOMPARE(blocks->child(2)->child(1)->text(0), QString("line 2: block >B2 is not used"));
    blocks->setExpanded(false);
    blocks->setExpanded(true);
    QCOMPARE(rows_below(*blocks), 5);

    kinds->topLevelItem(1)->setExpanded(true);  // a fact of the file: there is nothing below it
    QTreeWidgetItem* const masked = kinds->topLevelItem(1)->child(1);
    QCOMPARE(masked->text(0), QString("f2.edi"));
    kinds->scrollToItem(masked);
    const QPoint at = kinds->visualItemRect(masked).center();
    QTest::mouseClick(kinds->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(kinds->viewport(), Qt::LeftButton, {}, at);
    auto* const files = window.findChild<QTreeWidget*>("Tree_report");
    QVERIFY(files->isVisible());
    QCOMPARE(files->currentItem(), files->topLevelItem(2));
    QVERIFY(files->topLevelItem(2)->isExpanded());
    QCOMPARE(files->topLevelItem(2)->childCount(), 2);

    QTest::mouseClick(window.findChild<QPushButton*>("Command_copy"), Qt::LeftButton);
    const QString copied = QApplication::clipboard()->text();
    QVERIFY(
        copied.contains(blocks->text(0) + "\n    folder/f0.edi\n        line 1: block >B1 is not used\n"));
    QVERIFY(copied.indexOf("not imported") < copied.indexOf("all YX phases"));
  }

  void many_remarks_come_when_they_are_unfolded() {
    const ImportReport report = made_report(1000, 90);
    Form_import_report window(report);
    window.show();
    auto* const kinds = window.findChild<QTreeWidget*>("Tree_kinds");
    QCOMPARE(kinds->topLevelItemCount(), 2);
    QTreeWidgetItem* const blocks = kinds->topLevelItem(1);
    QCOMPARE(blocks->text(1), QString("90000"));
    QCOMPARE(rows_below(*blocks), 0);
    blocks->setExpanded(true);
    QCOMPARE(rows_below(*blocks), 1000);
    blocks->child(999)->setExpanded(true);
    QCOMPARE(rows_below(*blocks), 1090);
    const auto* const files = window.findChild<QTreeWidget*>("Tree_report");
    QCOMPARE(rows_below(*files->invisibleRootItem()), 1000 + 54 * 90);
  }
};

QTEST_MAIN(FormImportReportTest)
#include "form_import_report_test.moc"
