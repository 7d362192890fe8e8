// The habits that all windows share: tool tips, where the focus is, and how the keys close them.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAccessible>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSet>
#include <QTabBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTimer>
#include <QToolBar>
#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>
#include <vector>

#include "app/help/Form_tutorial.h"
#include "app/help/manual_pages.h"
#include "app/tools/Form_frequency.h"
#include "database/frequency_store.h"
#include "platform/graph/frequency_axis.h"
#include "platform/widgets/check_cells.h"
#include "samples/sample_survey.h"
#include "screenshots/platform_lines.h"
#include "screenshots/window_pictures.h"
#include "tests/app/main_view_fixture.h"
#include "tests/occam/results/made_results.h"

namespace {

/// What Enter and Escape do in a window. "" and nullptr: nothing.
struct Keys {
  const char* window;
  const char* enter = nullptr;  // the button that Enter presses, wherever the focus is
  bool enter_closes = false;    // windows to read or to set something in
  bool worked_in = false;       // what the state was brought to has taken the focus along
};

// Enter does the work of a window, or is done with it where it is there to be read. What replaces stored data
// waits for its own button.
constexpr Keys keys_of_windows[] = {
    {"import_files", "Command_process_files"},
    {"import_data", nullptr, false, true},
    {"import_report", "Command_done"},
    {"table_viewer", "Command_done"},
    {"frequencies"},
    {"remove", nullptr, false, true},
    {"rename", "Command_rename", false, true},
    {"mask_topo_model", "Command_load_locations"},
    {"mask_topo_points", "Command_load_locations"},
    {"mask_topo_mesh", "Command_load_locations"},
    {"occam_results"},
    {"occam_run"},
    {"occam_response"},
    {"projection", "Command_done"},
    {"tutorial", "Command_done"},
    {"keys", "Command_done"},
    {"about", "Command_done", true},
    {"memory_status", "Command_done", true},
    {"whats_new", "Command_done", true},
    {"find_file", "Command_find_file_in_path", false, true},
    {"transfer_functions", "Command_write"},
    {"rhoplus_options", "Command_done", true},
    {"rhoplus_results"},
    {"rhoplus_log"},
    {"rhoplus_line"},
    {"occam_inversion"},
    {"pseudo_section", nullptr, false, true},  // the section has it: arrow keys step through stations
    {"strike"},
    {"tensor_map", nullptr, false, true},  // the map has it: arrow keys step through periods
};

const Keys* keys_of(const QString& window) {
  const auto* const found =
      std::ranges::find_if(keys_of_windows, [&](const Keys& keys) { return window == keys.window; });
  return found == std::end(keys_of_windows) ? nullptr : found;
}

/// Parts that Qt itself creates inside a control are known by their names and parents.
bool is_inside_a_control(const QWidget& part) {
  const QWidget* const parent = part.parentWidget();
  return part.objectName().startsWith("qt_") || qobject_cast<const QHeaderView*>(&part) != nullptr ||
         qobject_cast<const QComboBox*>(parent) != nullptr ||
         qobject_cast<const QAbstractScrollArea*>(parent) != nullptr ||
         (parent != nullptr && parent->objectName().startsWith("qt_"));
}

bool is_control(const QWidget& part) {
  return (qobject_cast<const QAbstractButton*>(&part) != nullptr ||
          qobject_cast<const QComboBox*>(&part) != nullptr ||
          qobject_cast<const QLineEdit*>(&part) != nullptr ||
          qobject_cast<const QAbstractSlider*>(&part) != nullptr ||
          qobject_cast<const QAbstractItemView*>(&part) != nullptr ||
          qobject_cast<const QTextEdit*>(&part) != nullptr ||
          qobject_cast<const QPlainTextEdit*>(&part) != nullptr) &&
         !is_inside_a_control(part);
}

QString name_of(const QWidget* part) {
  return part == nullptr ? QString("nothing") : part->metaObject()->className() + (" " + part->objectName());
}

std::vector<QWidget*> controls_on_show(const QWidget& window) {
  std::vector<QWidget*> controls;
  for (QWidget* const part : window.findChildren<QWidget*>()) {
    if (part->window() == &window && part->isVisible() && part->isEnabled() && is_control(*part)) {
      controls.push_back(part);
    }
  }
  return controls;
}

/// What a screen reader would say.
bool has_a_name(QWidget& control) {
  const QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&control);
  return spoken != nullptr && !spoken->text(QAccessible::Name).isEmpty();
}

/// Only the button of a group that is chosen takes the keyboard; arrows go on to the others. A text to read
/// has a click at most. Buttons of a toolbar repeat what menus and keys do.
bool must_be_reached(const QWidget& control) {
  if (qobject_cast<const QToolBar*>(control.parentWidget()) != nullptr) {
    return false;
  }
  const auto* const option = qobject_cast<const QRadioButton*>(&control);
  const auto* const text = qobject_cast<const QLineEdit*>(&control);
  return (option == nullptr || option->isChecked()) && (text == nullptr || !text->isReadOnly());
}

QStringList faults_of_controls(const QWidget& window) {
  QStringList faults;
  // What a screen of 1366 by 768 has room for beside frame, title and a bar of the desktop.
  if (const QSize least = window.minimumSizeHint(); least.width() > 1350 || least.height() > 690) {
    faults << QString("it needs %1 by %2 pixels").arg(least.width()).arg(least.height());
  }
  for (QWidget* const control : controls_on_show(window)) {
    if (control->toolTip().isEmpty()) {
      faults << "no tool tip on " + name_of(control);
    }
    if (!has_a_name(*control)) {
      faults << "nothing to call " + name_of(control) + " by";
    }
    if (must_be_reached(*control) && (control->focusPolicy() & Qt::TabFocus) == 0) {
      faults << "Tab doesn't come to " + name_of(control);
    }
  }
  return faults;
}

/// Where Tab goes, from the first control on; the tabs of pages are among them.
std::vector<QWidget*> tab_order(QWidget& window) {
  std::vector<QWidget*> order;
  for (QWidget* part = window.nextInFocusChain(); part != &window; part = part->nextInFocusChain()) {
    if (part->window() == &window && part->isVisible() && part->isEnabled() &&
        (part->focusPolicy() & Qt::TabFocus) == Qt::TabFocus && part->focusProxy() == nullptr) {
      order.push_back(part);
    }
  }
  return order;
}

/// Tab goes down a column and then to the column on its right, or along a row and then down.
QStringList steps_against_the_reading(QWidget& window) {
  QStringList faults;
  const std::vector<QWidget*> order = tab_order(window);
  for (std::size_t i = 1; i < order.size(); ++i) {
    const auto place = [&](const QWidget& part) { return QRect(part.mapTo(&window, QPoint()), part.size()); };
    const QRect from = place(*order[i - 1]);
    const QRect to = place(*order[i]);
    const bool up = to.bottom() < from.top();
    const bool down = to.top() > from.bottom();
    const bool to_the_right = to.left() >= from.left() + 1;
    if (!down && !to_the_right && (up || to.right() < from.left())) {
      faults << "Tab goes back from " + name_of(order[i - 1]) + " to " + name_of(order[i]);
    }
  }
  return faults;
}

/// Behind the tabs of pages.
QWidget* first_control(QWidget& window) {
  for (QWidget* const part : tab_order(window)) {
    if (qobject_cast<QTabBar*>(part) == nullptr) {
      return part;
    }
  }
  return nullptr;
}

QString default_button(const QWidget& window) {
  for (const QPushButton* const button : window.findChildren<QPushButton*>()) {
    if (button->isDefault() && !button->isHidden() && button->window() == &window) {
      return button->objectName();
    }
  }
  return {};
}

Form_tutorial* tutorial_on_show() {
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (auto* const tutorial = qobject_cast<Form_tutorial*>(window);
        tutorial != nullptr && tutorial->isVisible()) {
      return tutorial;
    }
  }
  return nullptr;
}

/// The tutorial comes by F1 and can be worked there and then; Escape takes it away, and nothing else.
QStringList faults_of_help(QWidget& window, QWidget& focus) {
  QTest::keyClick(&focus, Qt::Key_F1);
  Form_tutorial* const tutorial = tutorial_on_show();
  if (tutorial == nullptr) {
    return {"F1 doesn't bring the tutorial"};
  }
  QStringList faults;
  if (!QTest::qWaitFor([tutorial] { return QApplication::activeWindow() == tutorial; })) {
    return {"the tutorial doesn't get the keys"};
  }
  const QWidget* const modal = QApplication::activeModalWidget();
  if (modal != nullptr && !modal->isAncestorOf(tutorial) && tutorial->parentWidget() != modal) {
    faults << "the tutorial takes no input beside the window";
  }
  QTest::keyClick(tutorial, Qt::Key_Escape);
  if (tutorial->isVisible() || !window.isVisible()) {
    faults << "Escape doesn't close the tutorial alone";
  }
  window.activateWindow();
  if (!QTest::qWaitFor([&window] { return QApplication::activeWindow() == &window; })) {
    faults << "the keys don't come back from the tutorial";
  }
  return faults;
}

QStringList faults_of_keys(const Keys& keys, QWidget& window) {
  QStringList faults;
  QWidget* const focus = window.focusWidget();
  const QWidget* const first = first_control(window);
  if (focus == nullptr || !focus->isVisible() || (focus != first && !keys.worked_in)) {
    return {"the focus is on " + name_of(focus) + ", not on " + name_of(first)};
  }
  if (const QString button = default_button(window); button != QString(keys.enter)) {
    faults << "Enter would press " + button;
  }
  if (&window != tutorial_on_show()) {
    faults << faults_of_help(window, *focus);
  }
  QTest::keyClick(focus, keys.enter_closes ? Qt::Key_Return : Qt::Key_Escape);
  if (window.isVisible()) {
    faults << QString(keys.enter_closes ? "Enter" : "Escape") + " doesn't close it";
  }
  return faults;
}

}  // namespace

class WindowsTest : public QObject, private MainViewFixture {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    open_made_survey();
    std::filesystem::create_directory(folder_->path("field"));
    const auto files = Module_samples::make_sample_survey();
    for (std::size_t index = 0; index < 4; ++index) {
      std::ofstream(folder_->path("field/" + files[index].name)) << files[index].text;
    }
  }
  void cleanup() { close_survey(); }

  void lines_of_the_platform_stay_out_of_the_error_output() {
    static QStringList seen;
    const QtMessageHandler earlier = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { seen << text; });
    drop_platform_lines();
    qWarning("This plugin does not support propagateSizeHints()");
    qWarning("The picture can't be written");
    qInstallMessageHandler(earlier);
    QCOMPARE(seen, QStringList{"The picture can't be written"});
  }

  void every_window_tells_of_its_controls_and_obeys_the_keys() {
    static_cast<void>(made::write_results(*folder_, "run/"));
    static_cast<void>(folder_->write("run/points.xyz", "-100 0\n105 5\n120 12\n150 3\n260 -4\n"));
    const std::string readings = made::whole_readings_table();
    QStringList faults;
    QStringList seen;
    visit_windows(*window_, [&](const QString& name, QWidget& window) {
      seen << name;
      QStringList found = faults_of_controls(window) + steps_against_the_reading(window);
      if (&window != window_.get()) {
        const Keys* const keys = keys_of(name);
        found << (keys != nullptr ? faults_of_keys(*keys, window)
                                  : QStringList("its keys aren't in the table above"));
      }
      for (const QString& fault : found) {
        faults << name + ": " + fault;
      }
    });
    for (const QString& fault : faults) {
      qWarning("%s", qPrintable(fault));
    }
    QVERIFY(faults.isEmpty());
    for (const Keys& keys : keys_of_windows) {
      QVERIFY2(seen.contains(keys.window), keys.window);
    }
    QVERIFY(made::whole_readings_table() == readings);
  }

  void help_goes_on_behind_a_closed_dialog() {
    QTimer::singleShot(0, window_.get(), [] {
      QWidget* const dialog = QApplication::activeModalWidget();
      QTest::keyClick(dialog, Qt::Key_F1);
      dialog->close();
    });
    menu("menu_about");
    Form_tutorial* const tutorial = tutorial_on_show();
    QVERIFY(tutorial != nullptr);
    QCOMPARE(tutorial->parentWidget(), window_.get());
  }

  // A message or the progress of long work may come up while the tutorial is being read.
  void help_asked_for_in_a_window_over_the_tutorial_changes_nothing() {
    menu("menu_tutorial");
    Form_tutorial* const tutorial = tutorial_on_show();
    QVERIFY(tutorial != nullptr);
    QMessageBox box(QMessageBox::Information, "", "done", QMessageBox::Ok, tutorial);
    QTimer::singleShot(0, &box, [&box] {
      QTest::keyClick(&box, Qt::Key_F1);
      box.accept();
    });
    box.exec();
    QCOMPARE(box.parentWidget(), tutorial);
    QCOMPARE(tutorial->parentWidget(), window_.get());
    QVERIFY(tutorial->isVisible());
  }

  void unsaved_frequencies_are_gone_back_to_discarded_or_saved() {
    const auto stored = [] { return Module_database::load_reference_frequencies(0); };
    const auto before = stored();
    QVERIFY(before.has_value());
    const auto leave_first_out = [](const Form_frequency& dialog) {
      const QString first = dialog.findChild<QTableWidget*>("Grid_frequencies")->item(0, 0)->text();
      dialog.findChild<QLineEdit*>("Text_from")->setText(first);
      dialog.findChild<QLineEdit*>("Text_to")->setText(first);
      QTest::mouseClick(dialog.findChild<QPushButton*>("Command_leave_range"), Qt::LeftButton);
    };
    const auto escape = [](Form_frequency& dialog, const std::function<void(QMessageBox&)>& answer) {
      bool asked = false;
      QTimer::singleShot(0, &dialog, [&] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        asked = box != nullptr;
        if (asked) {
          answer(*box);
        }
      });
      QTest::keyClick(&dialog, Qt::Key_Escape);
      return asked;
    };
    Form_frequency dialog(*before, window_.get());
    dialog.show();
    leave_first_out(dialog);
    QVERIFY(escape(dialog, [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }));
    QVERIFY(dialog.isVisible());
    QVERIFY(escape(dialog, [](QMessageBox& box) { box.button(QMessageBox::Discard)->click(); }));
    QVERIFY(!dialog.isVisible() && !dialog.frequencies_changed());
    QCOMPARE(stored()->enabled_count(), before->enabled_count());

    Form_frequency again(*before, window_.get());
    again.show();
    leave_first_out(again);
    QVERIFY(escape(again, [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); }));
    QVERIFY(!again.isVisible() && again.frequencies_changed());
    QCOMPARE(stored()->enabled_count() + 1, before->enabled_count());
  }

  void frequencies_have_their_periods_beside_them_where_graphs_show_periods() {
    const auto frequencies = Module_database::load_reference_frequencies(0);
    QVERIFY(frequencies.has_value());
    const auto periods_shown = [&](bool shown) {
      graph::FrequencyAxis::instance().show_periods(shown);
      const Form_frequency dialog(*frequencies, window_.get());
      const auto* const grid = dialog.findChild<QTableWidget*>("Grid_frequencies");
      const double product = grid->item(0, 0)->text().toDouble() * grid->item(0, 2)->text().toDouble();
      return !grid->isColumnHidden(2) && std::abs(product - 1.0) < 1e-3;
    };
    const bool in_periods = periods_shown(true);
    const bool in_frequencies = periods_shown(false);
    QVERIFY(in_periods && !in_frequencies);

    graph::FrequencyAxis::instance().show_periods(true);
    Form_frequency dialog(*frequencies, window_.get());
    auto* const grid = dialog.findChild<QTableWidget*>("Grid_frequencies");
    dialog.show();
    dialog.activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), &dialog);
    for (const int column : {0, 1, 2}) {  // the space bar switches from each cell of the row
      const bool used = is_checked(*grid->item(0, 1));
      grid->setFocus();
      grid->setCurrentCell(0, column);
      QTest::keyClick(grid, Qt::Key_Space);
      QCOMPARE(is_checked(*grid->item(0, 1)), !used);
    }
    graph::FrequencyAxis::instance().show_periods(false);
    dialog.findChild<QPushButton*>("Command_cancel_changes")->click();
  }

  void frequencies_are_written_as_they_were_read() {
    Frequencies frequencies;
    frequencies.list = {0.0883883F, 33.3F};
    frequencies.enabled = {1, 1};
    const Form_frequency dialog(frequencies, window_.get());
    const auto* const grid = dialog.findChild<QTableWidget*>("Grid_frequencies");
    QCOMPARE(grid->item(0, 0)->text(), QString("0.0883883"));
    QCOMPARE(grid->item(1, 0)->text(), QString("33.3"));
  }

  void output_panel_is_worked_by_keys() {
    menu("menu_output_data_1");
    QCOMPARE(window_->focusWidget(), control<QComboBox>("Combo_output_linelist"));
    QTest::keyClick(window_->focusWidget(), Qt::Key_Escape);
    QVERIFY(control<QWidget>("Selection_row")->isVisible());
    QVERIFY(!control<QWidget>("Frame_store")->isVisible());
  }

  void tutorial_comes_by_key_with_its_pictures_and_pages() {
    QTest::keyClick(window_.get(), Qt::Key_F1);
    auto* const tutorial = window_->findChild<QDialog*>("Form_tutorial");
    QVERIFY(tutorial != nullptr && tutorial->isVisible() && !tutorial->isModal());
    auto* const pages = tutorial->findChild<QTextBrowser*>("Text_tutorial");
    int pictures = 0;
    QSet<QUrl> links;
    for (QTextBlock block = pages->document()->begin(); block.isValid(); block = block.next()) {
      for (auto part = block.begin(); !part.atEnd(); ++part) {
        const QTextCharFormat format = part.fragment().charFormat();
        if (format.isImageFormat()) {
          ++pictures;
          const QUrl picture = pages->source().resolved(QUrl(format.toImageFormat().name()));
          const QVariant image = pages->document()->resource(QTextDocument::ImageResource, picture);
          QVERIFY2(!image.value<QImage>().isNull(), qPrintable(picture.toString()));
          QVERIFY(image.value<QImage>().width() <= pages->viewport()->width());
        }
        if (!format.anchorHref().isEmpty()) {
          links.insert(pages->source().resolved(QUrl(format.anchorHref())));
        }
      }
    }
    QVERIFY(pictures >= 8);
    QVERIFY(links.size() >= 8);
    for (const QUrl& link : links) {
      Q_EMIT pages->anchorClicked(link);
      QVERIFY2(pages->toPlainText().size() > 200, qPrintable(link.toString()));
      QCOMPARE(pages->source(), link);
      QTest::mouseClick(tutorial->findChild<QPushButton*>("Command_back"), Qt::LeftButton);
      QCOMPARE(pages->source(), manual_page("tutorial.md"));
    }
  }

  static void links_of_all_pages_lead_to_one() {
    QList<QUrl> pages{changelog()};
    for (const QString& name : manual_page_names()) {
      pages.append(manual_page(name));
    }
    QTextBrowser browser;
    for (const QUrl& page : pages) {
      browser.setSource(page, QTextDocument::MarkdownResource);
      QVERIFY2(browser.toPlainText().size() > 200, qPrintable(page.toString()));
      for (QTextBlock block = browser.document()->begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
          const QUrl link = page.resolved(QUrl(part.fragment().charFormat().anchorHref()));
          QVERIFY2(link.scheme() != "qrc" || QFile::exists(":" + link.path()),
                   qPrintable(page.toString() + " has " + link.toString()));
        }
      }
    }
  }

  void help_lists_the_keys_and_is_searched() {
    menu("menu_keys");
    Form_tutorial* const help = tutorial_on_show();
    QVERIFY(help != nullptr);
    auto* const pages = help->findChild<QTextBrowser*>("Text_tutorial");
    QCOMPARE(pages->source(), manual_page("keys.md"));
    for (const QAction* const each : window_->findChildren<QAction*>()) {
      if (!each->shortcut().isEmpty()) {
        QVERIFY2(pages->toPlainText().contains(each->shortcut().toString()),
                 qPrintable(each->shortcut().toString()));
      }
    }
    auto* const words = help->findChild<QLineEdit*>("Text_search");
    words->setText("  STATIC  factor ");
    QTest::keyClick(words, Qt::Key_Return);
    QVERIFY2(help->isVisible(), "Enter searches");
    QVERIFY(pages->toPlainText().startsWith("Found: "));
    QVERIFY(pages->toPlainText().contains("A first hour with Brenlox"));
    Q_EMIT pages->anchorClicked(QUrl("found:0"));
    QCOMPARE(pages->source(), manual_page("tutorial.md"));
    QCOMPARE(pages->textCursor().selectedText().toLower(), QString("static"));
    words->setText("xyzzy");
    QTest::keyClick(words, Qt::Key_Return);
    QVERIFY(pages->toPlainText().startsWith("Nothing was found"));
    QTest::mouseClick(help->findChild<QPushButton*>("Command_back"), Qt::LeftButton);
    QCOMPARE(pages->source(), manual_page("tutorial.md"));
    for (const char* const text : {"//", "#", "a?b=c&d", "50%", "+"}) {
      words->setText(text);
      QTest::keyClick(words, Qt::Key_Return);
      QVERIFY2(pages->toPlainText().contains(QString("\u201c%1\u201d").arg(text)), text);
    }
  }
};

QTEST_MAIN(WindowsTest)
#include "windows_test.moc"
