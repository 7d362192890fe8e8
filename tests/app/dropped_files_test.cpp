// Files and folders that are dropped onto the main window, as a file manager does it.
#include <QApplication>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <filesystem>
#include <functional>
#include <memory>

#include "app/Form_main.h"
#include "core/session_state.h"
#include "core/user_interface.h"
#include "database/survey_database.h"
#include "platform/graph/VexGraphControl.h"
#include "platform/settings_store/settings_store.h"
#include "reduction/data_sets/data_sets.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/support/window_fixture.h"

namespace {

namespace fs = std::filesystem;
using Messages = std::vector<std::string>;

}  // namespace

class DroppedFilesTest : public QObject, private WindowFixture {
  Q_OBJECT

 private:
  /// @return whether the window takes what is dropped
  bool drop(const QList<QUrl>& urls) {
    ++presses_;
    QMimeData dragged;
    dragged.setUrls(urls);
    const QPointF place = window_->rect().center();
    QDragEnterEvent enter(place.toPoint(), Qt::CopyAction | Qt::MoveAction, &dragged, Qt::LeftButton, {});
    QApplication::sendEvent(window_.get(), &enter);
    if (!enter.isAccepted()) {
      return false;
    }
    QDropEvent dropped(place, Qt::CopyAction | Qt::MoveAction, &dragged, Qt::LeftButton, {});
    QApplication::sendEvent(window_.get(), &dropped);
    return dropped.isAccepted() && dropped.dropAction() == Qt::CopyAction;
  }
  bool drop(const std::string& path) { return drop({QUrl::fromLocalFile(QString::fromStdString(path))}); }

  /// Works in the import dialog once its table is filled, and runs events until the dialog is gone.
  void in_dialog(const std::function<void(QWidget&)>& work) {
    bool found = false;
    QTimer waiting;
    connect(&waiting, &QTimer::timeout, this, [&] {
      QWidget* const dialog = QApplication::activeModalWidget();
      if (dialog != nullptr && dialog->windowTitle() == "Import MT Data" &&
          dialog->findChild<QPushButton*>("Command_import_data_1")->isEnabled() &&
          dialog->findChild<QWidget*>("Frame_import_data")->isVisible()) {
        waiting.stop();
        found = true;
        work(*dialog);
        dialog->close();  // stays open only if something was wrong
      }
    });
    waiting.start(1);
    QTRY_VERIFY(found);
    QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
  }
  void press(const QWidget& dialog, const char* name) {
    ++presses_;
    QTest::mouseClick(dialog.findChild<QPushButton*>(name), Qt::LeftButton);
  }
  template <class Widget>
  Widget* control(const char* name) const {
    return window_->findChild<Widget*>(name);
  }
  /// Answers the dialog for a new survey with what it proposes, which is one press of its button.
  void take_proposed_survey() {
    (*interface_)->file_asked = [this] {
      ++presses_;
      const FileDialogRequest& asked = (*interface_)->file_dialogs.back();
      (*interface_)->path_answers = {(fs::path(asked.directory) / asked.suggested_name).string()};
    };
  }
  void copy_field_data(const char* folder) const {
    fs::copy(fs::path(BRENLOX_FIELD_DATA) / folder, folder_->path("field"), fs::copy_options::recursive);
  }

  std::unique_ptr<Form_main> window_;
  int presses_ = 0;  // of the mouse: buttons, and the end of a drag

 private Q_SLOTS:
  void init() {
    make_folder();
    install_settings_store(std::make_unique<MemorySettingsStore>());
    fs::current_path(folder_->folder());
    presses_ = 0;
    window_ = std::make_unique<Form_main>();
    window_->resize(1280, 800);
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
  }
  void cleanup() {
    window_.reset();
    remove_folder();
  }

  void a_folder_becomes_curves_with_four_presses_and_no_key() {
    if (!fs::exists(BRENLOX_FIELD_DATA)) {
      QSKIP("no field data");
    }
    copy_field_data("edi/impedance_only");
    take_proposed_survey();
    QVERIFY(drop(folder_->path("field")));
    in_dialog([this](const QWidget& dialog) { press(dialog, "Command_import_data_1"); });
    QVERIFY2(presses_ <= 4, qPrintable(QString::number(presses_)));
    QCOMPARE(interface_->take_messages(), Messages{});
    QVERIFY((*interface_)->questions.empty());
    QCOMPARE(session().database_file, folder_->path("field.mdb"));
    QCOMPARE(session().station_count, 10);
    QCOMPARE(session().station_value.front(), 0.0);
    const double length = session().station_value.back();  // metres between the outermost sites
    QVERIFY2(length > 9000.0 && length < 9600.0, qPrintable(QString::number(length)));
    QCOMPARE(session().current_station_index, 1);
    const auto& curve = Module_averaged_data::data_sets().station.slots.at(0).reading.curve;
    QVERIFY(curve.count() > 10);
    QVERIFY(control<VexGraphControl>("vxgraph_station_0")->isVisible());
    QVERIFY(control<QLabel>("Label_work")->toolTip().contains("Data import complete. 10 of 10 files"));
  }

  // They are imported without a message.
  void what_is_told_of_dropped_files_can_be_read_afterwards() {
    (void)folder_->write("field/a.edi",
                         made_edi({MadeSection{.blocks = ">COH //3\n1 1 1\n>RHOXY //3\n1 2 3\n"}}));
    take_proposed_survey();
    QVERIFY(drop(folder_->path("field")));
    in_dialog([this](const QWidget& dialog) { press(dialog, "Command_import_data_1"); });
    QCOMPARE(interface_->take_messages(), Messages{});
    auto* const line = control<QLabel>("Label_work");
    QVERIFY2(line->text().contains("href=\"report\""), qPrintable(line->text()));
    QString told;
    QTimer::singleShot(0, this, [&told] {
      QWidget* const report = QApplication::activeModalWidget();
      for (const QTreeWidget* const tree : report->findChildren<QTreeWidget*>()) {
        for (int row = 0; row < tree->topLevelItemCount(); ++row) {
          told += tree->topLevelItem(row)->text(0) + "\n";
        }
      }
      report->close();
    });
    Q_EMIT line->linkActivated("report");
    QVERIFY2(told.contains("COH"), qPrintable(told));
  }

  void a_survey_is_opened_and_takes_the_files_dropped_with_it() {
    (void)folder_->write("field/a.edi", made_edi());
    make_survey();
    QCOMPARE(Module_database::close_database(), 0);
    const std::string survey = folder_->path("survey.mdb");
    QVERIFY(drop(survey));
    QTRY_VERIFY(session().database_open);
    QCOMPARE(session().database_file, survey);
    const auto url = [this](const char* name) {
      return QUrl::fromLocalFile(QString::fromStdString(folder_->path(name)));
    };
    QVERIFY(drop({url("survey.mdb"), url("field/a.edi")}));
    in_dialog([this](const QWidget& dialog) { press(dialog, "Command_import_data_1"); });
    QVERIFY((*interface_)->file_dialogs.empty());
    QCOMPARE(session().station_count, 1);
    QVERIFY(drop({url("survey.mdb"), url("other.mdb")}));
    QTRY_VERIFY(!(*interface_)->messages.empty());
    QVERIFY(interface_->take_messages().front().starts_with("Only one survey can be open: "));
    QCOMPARE(session().database_file, survey);
  }

  void the_line_that_was_imported_is_shown() {
    (void)folder_->write("one/100E/a.edi", made_edi({MadeSection{.sectid = "7"}}));
    (void)folder_->write("two/200E/b.edi", made_local_edi({MadeSection{.sectid = "5"}}));
    take_proposed_survey();
    for (const char* const folder : {"one", "two"}) {
      QVERIFY(drop(folder_->path(folder)));
      in_dialog([this](const QWidget& dialog) { press(dialog, "Command_import_data_1"); });
    }
    QCOMPARE(session().station_count, 2);
    QCOMPARE(QString::fromStdString(session().current_line), QString("200E"));
    QVERIFY(!control<QLabel>("Label_work")->text().contains("href=\"report\""));  // there is nothing to tell
    QCOMPARE(session().current_reference_type, 0);  // of the second survey, without a remote site
    QVERIFY(Module_averaged_data::data_sets().station.slots.at(0).reading.curve.count() > 0);
  }

  void what_cant_be_taken_changes_nothing() {
    (void)folder_->write("field/a.edi", made_edi());
    (void)folder_->write("empty/notes.txt", "no field file\n");
    QVERIFY(!drop({QUrl("https://example.org/a.edi"), QUrl::fromLocalFile("/")}));
    QMimeData text;
    text.setText("a.edi");
    QDragEnterEvent enter({9, 9}, Qt::CopyAction, &text, Qt::LeftButton, {});
    QApplication::sendEvent(window_.get(), &enter);
    QVERIFY(!enter.isAccepted());
    QApplication::setOverrideCursor(Qt::WaitCursor);  // a run
    QVERIFY(!drop(folder_->path("field")));
    QApplication::restoreOverrideCursor();

    QVERIFY(drop(folder_->path("empty")));
    QTRY_COMPARE((*interface_)->messages, Messages{"No field files were found in " + folder_->path("empty")});
    interface_->take_messages();
    QVERIFY(drop(folder_->path("field")));  // the dialog for a new survey is cancelled
    QTRY_COMPARE((*interface_)->file_dialogs.size(), std::size_t{1});
    QCOMPARE((*interface_)->file_dialogs.front().directory, folder_->folder().string());
    QCOMPARE((*interface_)->file_dialogs.front().suggested_name, std::string("field.mdb"));
    QCoreApplication::processEvents();
    QVERIFY(QApplication::activeModalWidget() == nullptr);
    QVERIFY(!session().database_open);
  }
};

QTEST_MAIN(DroppedFilesTest)
#include "dropped_files_test.moc"
