// The interface to the user on Qt, and the splitter with its resizer.
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QInputDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QSettings>
#include <QSplitterHandle>
#include <QTest>
#include <QTimer>
#include <algorithm>

#include "core/finished_work.h"
#include "core/user_interface.h"
#include "platform/widgets/folder_model.h"
#include "platform/widgets/folder_tree.h"
#include "platform/widgets/outlined_style.h"
#include "platform/widgets/vex_control_resizer.h"
#include "platform/widgets/vex_splitter.h"
#include "platform/windows/file_filter.h"
#include "platform/windows/progress_dialog.h"
#include "platform/windows/progress_in_window.h"
#include "platform/windows/qt_settings_store.h"
#include "platform/windows/qt_user_interface.h"
#include "tests/support/temporary_folder.h"

namespace {

/// Does something to the dialog that comes up next.
template <class Dialog, class Action>
void when_shown(Action action) {
  QTimer::singleShot(0, qApp, [action] {
    auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr) {
      when_shown<Dialog>(action);
    } else {
      action(dialog);
    }
  });
}

ProgressDialog* progress_dialog() {
  for (QWidget* const widget : QApplication::topLevelWidgets()) {
    if (auto* const dialog = qobject_cast<ProgressDialog*>(widget)) {
      return dialog;
    }
  }
  return nullptr;
}

}  // namespace

class PlatformWindowsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void a_tree_shows_its_folder_until_the_user_looks_elsewhere() {
    const TemporaryFolder folder;
    for (int i = 0; i < 300; ++i) {
      QVERIFY(QDir().mkpath(QString::fromStdString(folder.path("line" + std::to_string(i) + "/run"))));
    }
    FolderTree tree;
    tree.resize(300, 120);
    tree.choose(QString::fromStdString(folder.path("line150/run")));
    tree.show();
    const auto shows_it = [&tree] {
      return tree.currentIndex().isValid() &&
             tree.viewport()->rect().intersects(tree.visualRect(tree.currentIndex()));
    };
    QTest::qWait(500);  // several readings of folders, each of which moves the rows
    QTRY_VERIFY(shows_it());
    QTest::keyClick(&tree, Qt::Key_Up);
    tree.verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMinimum);
    QVERIFY(QDir().mkpath(QString::fromStdString(folder.path("line1500"))));
    QTest::qWait(300);
    QCOMPARE(tree.verticalScrollBar()->value(), 0);
  }
  void boxes_to_check_are_seen_on_dark_colours() {
    QListWidget list;
    list.setStyle(new OutlinedStyle);
    list.style()->setParent(&list);
    QPalette dark(QColor(50, 50, 54), QColor(38, 38, 42));
    dark.setColor(QPalette::Base, QColor(28, 28, 30));
    list.setPalette(dark);
    auto* const item = new QListWidgetItem("", &list);
    item->setCheckState(Qt::Unchecked);
    const QImage picture = list.viewport()->grab(list.visualItemRect(item)).toImage();
    int lightest = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        lightest = std::max(lightest, picture.pixelColor(x, y).lightness());
      }
    }
    QVERIFY2(lightest > 100, qPrintable(QString::number(lightest)));
  }

  void file_filters_are_translated() {
    QCOMPARE(dialog_filters("Brenlox Database Files (*.mdb)|*.mdb|All files (*.*)|*.*"),
             QStringList({"Brenlox Database Files (*.mdb)", "All files (*)"}));
    QCOMPARE(dialog_filters("Field files|*.edi;*.EDI"), QStringList({"Field files (*.edi *.EDI)"}));
    QCOMPARE(dialog_filters("No pattern"), QStringList());
    QCOMPARE(dialog_filters(""), QStringList());
    QCOMPARE(dialog_suffix("*.mdb"), QString("mdb"));
    QCOMPARE(dialog_suffix("*.*"), QString());
    QCOMPARE(dialog_suffix(""), QString());
  }

  void a_name_without_an_ending_gets_that_of_the_chosen_type() {
    const TemporaryFolder folder;
    QtUserInterface interface;
    const FileDialogRequest request{"Save", "PNG (*.png)|*.png|PDF (*.pdf)|*.pdf|All (*.*)|*.*", "*.png",
                                    folder.folder().string(), "graph.png"};
    const auto chosen = [&](const QString& type, const QString& name) {
      when_shown<QFileDialog>([&](QFileDialog* dialog) {
        auto* const types = dialog->findChild<QComboBox*>("fileTypeCombo");
        types->setCurrentText(type);
        Q_EMIT types->textActivated(type);
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(name);
        QMetaObject::invokeMethod(dialog, "accept");
      });
      const std::string path = interface.select_file_to_create(request);
      return QFileInfo(QString::fromStdString(path)).fileName();
    };
    QCOMPARE(chosen("PNG (*.png)", "line 1"), QString("line 1.png"));
    QCOMPARE(chosen("PDF (*.pdf)", "line 1"), QString("line 1.pdf"));
    QCOMPARE(chosen("All (*)", "line 1"), QString("line 1.png"));
    QCOMPARE(chosen("PDF (*.pdf)", "line 1.svg"), QString("line 1.svg"));
  }

  // One of these gives its first byte when the system has something to say.
  void icons_of_files_need_no_look_into_them() {
    const TemporaryFolder folder;
    const QString picture = QString::fromStdString(folder.write("picture", "\x89PNG\r\n\x1a\n"));
    const PlainFileIcons icons;
    for (const QString& file : {picture, QStringLiteral("/proc/kmsg")}) {
      QCOMPARE(icons.type(QFileInfo(file)), QString("File"));
      QCOMPARE(icons.icon(QFileInfo(file)).cacheKey(), icons.icon(QFileIconProvider::File).cacheKey());
    }
    QCOMPARE(icons.type(QFileInfo("/")), QString("Folder"));
    FolderModel model(nullptr);
    model.setRootPath(QString::fromStdString(folder.folder().string()));
    QTRY_COMPARE(model.type(model.index(picture)), QString("File"));
  }

  void settings_keep_any_key_and_list_it() {
    const TemporaryFolder folder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       QString::fromStdString(folder.folder().string()));
    QtSettingsStore store;
    const std::vector<std::string> names{"GDA94 / MGA 55", "100% | a\\b; \"c\"", "%2F", "zone Süd"};
    for (const std::string& name : names) {
      store.set_value("Marrowgate", "Projection", name, "4283;2;" + name);
    }
    store.set_value("Marrowgate", "Brenlox", "ImportDirectory", "/data");
    std::vector<std::string> keys = store.keys("Marrowgate", "Projection");
    std::sort(keys.begin(), keys.end());
    std::vector<std::string> expected = names;
    std::sort(expected.begin(), expected.end());
    QCOMPARE(keys, expected);
    for (const std::string& name : names) {
      QCOMPARE(store.value("Marrowgate", "Projection", name, ""), "4283;2;" + name);
      store.remove("Marrowgate", "Projection", name);
    }
    QVERIFY(store.keys("Marrowgate", "Projection").empty());
    QCOMPARE(store.value("Marrowgate", "Brenlox", "ImportDirectory", ""), std::string("/data"));
  }

  void settings_that_cannot_be_written_are_told_once_and_hold() {
    const TemporaryFolder folder;
    const std::string no_folder = folder.write("settings", "a file where a folder should be");
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(no_folder));
    std::vector<std::string> told;
    Module_Brenlox::set_finished_listener(
        [&](const Module_Brenlox::FinishedWork& work) { told.push_back(work.text); });
    QtSettingsStore store;
    store.set_value("Elsewhere", "Brenlox", "ImportDirectory", "/data");
    store.set_value("Elsewhere", "Brenlox", "Extension", "edi");
    Module_Brenlox::set_finished_listener({});
    QCOMPARE(told.size(), 1U);
    QVERIFY(told[0].starts_with("The settings can't be written to "));
    QCOMPARE(store.value("Elsewhere", "Brenlox", "ImportDirectory", ""), std::string("/data"));
    QCOMPARE(store.value("Elsewhere", "Brenlox", "Extension", ""), std::string("edi"));
    QCOMPARE(store.keys("Elsewhere", "Brenlox").size(), 2U);
    store.remove("Elsewhere", "Brenlox", "Extension");
    QCOMPARE(store.value("Elsewhere", "Brenlox", "Extension", "none"), std::string("none"));
  }

  void messages_show_their_text_as_it_is() {
    QtUserInterface interface;
    QString shown;
    QString title;
    when_shown<QMessageBox>([&](QMessageBox* box) {
      shown = box->text();
      title = box->windowTitle();
      QCOMPARE(box->textFormat(), Qt::PlainText);
      box->accept();
    });
    interface.show_message("a <b>file</b> & more");
    QCOMPARE(shown, QString("a <b>file</b> & more"));
    QCOMPARE(title, QApplication::applicationDisplayName());
  }

  void a_question_is_no_until_yes_is_pressed() {
    QtUserInterface interface;
    when_shown<QMessageBox>([](QMessageBox* box) { QTest::keyClick(box, Qt::Key_Return); });
    QVERIFY(!interface.ask_yes_no("Overwrite?"));
    when_shown<QMessageBox>([](QMessageBox* box) { QTest::keyClick(box, Qt::Key_Escape); });
    QVERIFY(!interface.ask_yes_no("Overwrite?"));
    when_shown<QMessageBox>([](QMessageBox* box) { box->button(QMessageBox::Yes)->click(); });
    QVERIFY(interface.ask_yes_no("Overwrite?"));
  }

  void a_text_asked_for_is_given_or_nothing() {
    QtUserInterface interface;
    when_shown<QInputDialog>([](QInputDialog* dialog) {
      QCOMPARE(dialog->windowTitle(), QString("Projection Name"));
      QCOMPARE(dialog->labelText(), QString("Enter the name"));
      QCOMPARE(dialog->textValue(), QString("MGA 55"));
      dialog->setTextValue("  MGA 56 ");
      dialog->accept();
    });
    QCOMPARE(interface.ask_text("Enter the name", "Projection Name", "MGA 55"), std::string("MGA 56"));
    when_shown<QInputDialog>([](QInputDialog* dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
    QCOMPARE(interface.ask_text("Enter the name", "Projection Name", "MGA 55"), std::string());
  }

  void a_message_in_busy_work_has_an_ordinary_pointer() {
    QtUserInterface interface;
    interface.set_busy_pointer(true);
    interface.set_busy_pointer(true);
    when_shown<QMessageBox>([](QMessageBox* box) {
      QVERIFY(QApplication::overrideCursor() == nullptr);
      box->accept();
    });
    interface.show_message("stopped");
    QVERIFY(QApplication::overrideCursor() != nullptr);
    interface.set_busy_pointer(false);
    QVERIFY(QApplication::overrideCursor() == nullptr);
  }

  void progress_appears_only_for_long_work_and_can_be_stopped() {
    QtUserInterface interface;
    interface.show_progress("Averages", 0);
    interface.show_progress("Averages", 10);
    QVERIFY(progress_dialog() == nullptr);
    QVERIFY(!interface.stop_requested());
    QTest::qSleep(550);
    interface.show_progress("Averages", 60);
    ProgressDialog* const dialog = progress_dialog();
    QVERIFY(dialog != nullptr && dialog->isVisible());
    QCOMPARE(dialog->findChild<QProgressBar*>("Progress_bar")->value(), 60);
    QVERIFY(!interface.stop_requested());
    QTest::keyClick(dialog, Qt::Key_Escape);
    QVERIFY(interface.stop_requested());
    QVERIFY(dialog->isVisible());  // until the work has ended
    interface.show_progress("", -1);
    QVERIFY(progress_dialog() == nullptr);
    QVERIFY(!interface.stop_requested());  // the next work starts afresh
  }

  void the_bar_in_a_window_is_gone_when_the_work_has_ended() {
    QWidget window;
    QProgressBar bar(&window);
    QLabel what(&window);
    QPushButton stop(&window);
    window.show();
    const ProgressInWindow progress(bar, what, stop);
    user_interface().show_progress("Averages", 60);
    QCOMPARE(bar.value(), 60);
    user_interface().show_progress("", -1);
    QVERIFY(!stop.isVisible());
    QVERIFY2(!bar.isVisible(), "the message of what was done would come up over an empty bar");
    user_interface().show_progress("Files", 10);  // the next step
    QVERIFY(bar.isVisible() && stop.isVisible());
    QCOMPARE(bar.value(), 10);
  }

  void a_drag_tells_once_and_the_resizer_keeps_its_shares() {
    VexSplitter splitter;
    splitter.addWidget(new QWidget);
    splitter.addWidget(new QWidget);
    VexControlResizer resizer;
    resizer.manage(&splitter, {1.0, 3.0});
    splitter.resize(808, 300);
    splitter.show();
    resizer.apply_resize();
    const auto share = [&] {
      const QList<int> sizes = splitter.sizes();
      return sizes[0] / static_cast<double>(sizes[0] + sizes[1]);
    };
    QVERIFY(std::abs(share() - 0.25) < 0.01);

    int moves = 0;
    connect(&splitter, &VexSplitter::split_moved, this, [&] { ++moves; });
    QSplitterHandle* const handle = splitter.handle(1);
    const QPoint grip = handle->rect().center();
    QTest::mouseClick(handle, Qt::LeftButton, {}, grip);
    QCOMPARE(moves, 0);
    QTest::mousePress(handle, Qt::LeftButton, {}, grip);
    QTest::mouseMove(handle, grip + QPoint(100, 0));
    QTest::mouseMove(handle, grip + QPoint(60, 0));
    QCOMPARE(moves, 0);
    QTest::mouseRelease(handle, Qt::LeftButton, {}, grip);
    QCOMPARE(moves, 1);

    resizer.capture_layout();
    const double dragged = share();
    QVERIFY(dragged > 0.3);
    for (const int width : {400, 333, 1200, 517, 808}) {  // no drift however often
      splitter.resize(width, 300);
      resizer.apply_resize();
      QVERIFY2(std::abs(share() - dragged) < 0.01, qPrintable(QString::number(share())));
    }
  }
};

QTEST_MAIN(PlatformWindowsTest)
#include "platform_windows_test.moc"
