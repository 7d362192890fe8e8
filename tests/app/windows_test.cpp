// The habits that all windows share: tool tips, where the focus stands, and how the keys close them.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSet>
#include <QTabBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <fstream>

#include "app/manual_pages.h"
#include "app/window_pictures.h"
#include "samples/sample_survey.h"
#include "tests/app/main_view_fixture.h"

namespace {

/// The parts that Qt makes for itself inside a control are told apart by their names and parents.
bool is_inside_a_control(const QWidget& part) {
  const QWidget* const parent = part.parentWidget();
  return part.objectName().startsWith("qt_") || qobject_cast<const QHeaderView*>(&part) != nullptr ||
         qobject_cast<const QComboBox*>(parent) != nullptr ||
         qobject_cast<const QAbstractItemView*>(parent) != nullptr ||
         (parent != nullptr && parent->objectName().startsWith("qt_"));
}

bool is_control(const QWidget& part) {
  return qobject_cast<const QAbstractButton*>(&part) != nullptr ||
         qobject_cast<const QComboBox*>(&part) != nullptr ||
         qobject_cast<const QLineEdit*>(&part) != nullptr ||
         qobject_cast<const QAbstractSlider*>(&part) != nullptr ||
         qobject_cast<const QAbstractItemView*>(&part) != nullptr ||
         qobject_cast<const QTextEdit*>(&part) != nullptr ||
         qobject_cast<const QPlainTextEdit*>(&part) != nullptr;
}

QString name_of(const QWidget* part) {
  return part == nullptr ? QString("nothing") : part->metaObject()->className() + (" " + part->objectName());
}

QStringList controls_without_tool_tip(const QWidget& window) {
  QStringList found;
  for (const QWidget* const part : window.findChildren<QWidget*>()) {
    if (part->window() == &window && part->isVisible() && part->isEnabled() && is_control(*part) &&
        !is_inside_a_control(*part) && part->toolTip().isEmpty()) {
      found << name_of(part);
    }
  }
  return found;
}

/// Where Tab would go first, behind the tabs of pages.
QWidget* first_control(QWidget& window) {
  for (QWidget* part = window.nextInFocusChain(); part != &window; part = part->nextInFocusChain()) {
    if (part->window() == &window && part->isVisible() && part->isEnabled() &&
        (part->focusPolicy() & Qt::TabFocus) != 0 && part->focusProxy() == nullptr &&
        qobject_cast<QTabBar*>(part) == nullptr) {
      return part;
    }
  }
  return nullptr;
}

/// Windows to read or to set something in: Enter is done with them. In the others Enter does their work.
const QSet<QString> closed_by_enter{"about", "rhoplus_options", "whats_new"};

/// What a state was brought to has taken the focus along.
const QSet<QString> worked_in{"import_data", "find_file"};

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

  void every_window_tells_of_its_controls_and_obeys_the_keys() {
    QStringList faults;
    int windows = 0;
    visit_windows(*window_, [&](const QString& name, QWidget& window) {
      ++windows;
      for (const QString& control : controls_without_tool_tip(window)) {
        faults << name + ": no tool tip on " + control;
      }
      if (&window == window_.get()) {
        return;
      }
      const QWidget* const focus = window.focusWidget();
      const QWidget* const first = first_control(window);
      if (focus == nullptr || !focus->isVisible() || (focus != first && !worked_in.contains(name))) {
        faults << name + ": the focus is on " + name_of(focus) + ", not on " + name_of(first);
      }
      const bool by_enter = closed_by_enter.contains(name);
      QTest::keyClick(window.focusWidget() != nullptr ? window.focusWidget() : &window,
                      by_enter ? Qt::Key_Return : Qt::Key_Escape);
      if (window.isVisible()) {
        faults << name + (by_enter ? ": Enter" : ": Escape") + " doesn't close it";
      }
    });
    QVERIFY2(faults.isEmpty(), qPrintable("\n" + faults.join("\n")));
    QVERIFY(windows > 15);
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
};

QTEST_MAIN(WindowsTest)
#include "windows_test.moc"
