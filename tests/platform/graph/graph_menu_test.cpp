// graph_menu_test.cpp: what the menu of a chart offers, and the pictures that it writes.
#include <QAction>
#include <QDir>
#include <QImage>
#include <QMenu>
#include <QTest>

#include "platform/graph/pdf_pages.h"
#include "tests/platform/graph/graph_fixture.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/pointer.h"
#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

class GraphMenuTest : public QObject, private GraphFixture {
  Q_OBJECT

 private Q_SLOTS:
  void init() { show_control(); }

  void pictures_are_written_and_failures_keep_what_was_there() {
    RecordingInterface interface;
    const TemporaryFolder folder;
    const std::string png = folder.path("chart.png");
    const std::string pdf = folder.path("chart.pdf");
    QCOMPARE(control_->save_png(png, 400, 300, 2.0), 0);
    const QImage image(QString::fromStdString(png));
    QCOMPARE(image.size(), QSize(800, 600));
    QCOMPARE(image.pixelColor(2, 2), QColor(Qt::white));
    QCOMPARE(control_->save_pdf(pdf), 0);
    QFile file(QString::fromStdString(pdf));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray contents = file.readAll();
    QVERIFY(contents.startsWith("%PDF-") && contents.trimmed().endsWith("%%EOF"));
    QVERIFY(interface->messages.empty());
    QCOMPARE(control_->save_png(folder.path("missing/chart.png"), 400, 300), -1);
    QCOMPARE(control_->save_png(png, 0, 300), -1);
    QCOMPARE(interface->messages.size(), std::size_t{2});
    QCOMPARE(QImage(QString::fromStdString(png)).size(), QSize(800, 600));
  }

  void a_picture_saved_from_the_menu_says_where_it_is() {
    RecordingInterface interface;
    const TemporaryFolder folder;
    const auto menu = control_->make_context_menu();
    for (const char* const name : {"chart.png", "chart.pdf"}) {
      const std::string path = folder.path(name);
      interface->path_answers = {path};
      menu->actions().at(path.ends_with(".png") ? 1 : 2)->trigger();
      QCOMPARE(interface.take_messages(), std::vector<std::string>{"The graph is written to " + path});
      QVERIFY(QFile::exists(QString::fromStdString(path)));
    }
  }

  void what_does_not_fit_on_the_disk_leaves_the_earlier_file() {
    RecordingInterface interface;
    const TemporaryFolder folder;
    const std::string earlier(20000, 'x');
    const std::string path = folder.write("chart", earlier);
    const auto write_page = [&] {
      graph::PdfPages pages(QString::fromStdString(path), "page");
      pages.begin_page("page");
      pages.place(*control_, {0.0, 0.0, 1.0, 1.0});
      pages.finish();
    };
    for (const rlim_t bytes : {0, 1000}) {  // also of what is small enough for one write at the end
      const FileSizeLimit limit(bytes);
      QCOMPARE(control_->save_png(path, 400, 300, 2.0), -1);
      QCOMPARE(control_->save_pdf(path), -1);
      QVERIFY_EXCEPTION_THROWN(write_page(), std::runtime_error);
    }
    QCOMPARE(interface->messages.size(), std::size_t{4});
    for (const std::string& message : interface->messages) {
      QVERIFY2(message.find(path + ": File too large") != std::string::npos, message.c_str());
    }
    QVERIFY(file_contents(path) == earlier);
    QCOMPARE(QDir(QString::fromStdString(folder.folder().string())).entryList(QDir::Files).size(), 1);
  }

  void menu_offers_what_there_is() {
    const auto texts = [&] {
      QStringList found;
      const auto menu = control_->make_context_menu();
      for (const QAction* action : menu->actions()) {
        found += action->text().remove(u'&') + (action->isEnabled() ? "" : " off");
      }
      return found.join(u'|');
    };
    QCOMPARE(texts(), "Copy|Save as PNG...|Save as PDF...||Reset zoom off|Error bars");
    control_->set_graph_data({{{{1.0}, {10.0}, {}}}});
    turn_wheel(*control_, control_->plot_area().center(), 120);
    QCOMPARE(texts(), "Copy|Save as PNG...|Save as PDF...||Reset zoom");
  }
};

QTEST_MAIN(GraphMenuTest)
#include "graph_menu_test.moc"
