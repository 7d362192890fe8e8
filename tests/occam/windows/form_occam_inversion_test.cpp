// The window of results, worked as a user does.
#include "occam/windows/Form_occam_inversion.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <array>
#include <cmath>
#include <utility>

#include "occam/windows/results_windows.h"
#include "platform/graph/VexGraphControl.h"
#include "platform/widgets/entry_mark.h"
#include "tests/occam/results/made_results.h"
#include "tests/support/read_only_folder.h"

using namespace Module_occam;
namespace fs = std::filesystem;

class FormOccamInversionTest : public QObject {
  Q_OBJECT

 private:
  template <class Widget>
  Widget* control(const char* name) const {
    auto* const found = window_->findChild<Widget*>(name);
    if (found == nullptr) {
      qFatal("no control %s", name);
    }
    return found;
  }
  QString text(const char* name) const { return control<QLineEdit>(name)->text(); }
  QString status() const { return control<QStatusBar>("Status_occam")->currentMessage(); }
  QImage section() const { return control<QWidget>("Picture_model")->grab().toImage(); }
  void click(const char* name) const { QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton); }
  /// Two looks of the timer at the directory.
  void look_twice() const {
    QTest::keyClick(window_.get(), Qt::Key_F5);
    QTest::keyClick(window_.get(), Qt::Key_F5);
  }
  /// The colours of a section; a blank one has the few of its frame and texts.
  static int colours(const QImage& image) {
    QSet<QRgb> seen;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QColor colour(image.pixel(x, y));
        if (colour.hsvSaturation() > 200) {
          seen.insert(colour.rgb());
        }
      }
    }
    return static_cast<int>(seen.size());
  }

  std::unique_ptr<TemporaryFolder> folder_;
  std::unique_ptr<RecordingInterface> interface_;
  std::unique_ptr<Form_occam_inversion> window_;

 private Q_SLOTS:
  void init() {
    folder_ = std::make_unique<TemporaryFolder>();
    interface_ = std::make_unique<RecordingInterface>();
    RunResults results;
    QCOMPARE(open_results(made::write_results(*folder_), results), 0);
    window_ = std::make_unique<Form_occam_inversion>(results);
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
  }
  void cleanup() {
    window_.reset();
    interface_.reset();
    folder_.reset();
  }

  void shows_the_last_iteration_and_follows_list_and_bar() {
    QCOMPARE(control<QComboBox>("Combo_iteration")->count(), 4);
    QCOMPARE(text("Text_iterate"), "3");
    QCOMPARE(text("Text_RMS"), "4.2500");
    QCOMPARE(text("Text_roughness"), "20.5000");
    QCOMPARE(text("Text_min_res_model"), "1.00 / 10.00");
    QCOMPARE(text("Text_max_res_model"), "3.00 / 1000.00");
    const QImage third = section();
    QVERIFY(colours(third) > 20);

    control<QScrollBar>("HScroll_iteration")->setValue(2);  // without a file
    QCOMPARE(control<QComboBox>("Combo_iteration")->currentIndex(), 2);
    QCOMPARE(text("Text_RMS"), "NA");
    QCOMPARE(text("Text_min_res_model"), "NA");
    QCOMPARE(colours(section()), 0);
    control<QComboBox>("Combo_iteration")->setCurrentIndex(3);
    QCOMPARE(control<QScrollBar>("HScroll_iteration")->value(), 3);
    QCOMPARE(section(), third);
    QVERIFY(interface_->take_messages().empty());
  }

  void a_run_whose_last_iteration_is_damaged_shows_the_others() {
    window_.reset();
    static_cast<void>(folder_->write("iter_3", made::iteration_text(3, " 2.0 1.0\n")));
    RunResults results;
    QCOMPARE(open_results((folder_->folder() / "startup").string(), results), 0);
    window_ = std::make_unique<Form_occam_inversion>(results);
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
    QCOMPARE(interface_->take_messages().size(), 1U);
    QCOMPARE(colours(section()), 0);
    control<QComboBox>("Combo_iteration")->setCurrentIndex(1);
    QVERIFY(!text("Text_min_res").isEmpty());
    QVERIFY(colours(section()) > 20);
  }

  void bad_ranges_leave_the_picture_blank_but_the_numbers_stay() {
    auto* const lower = control<QLineEdit>("Text_min_res");
    const QString range = lower->text();
    for (const char* bad : {"", "x", "9"}) {
      lower->setText(bad);
      QCOMPARE(colours(section()), 0);
      QCOMPARE(text("Text_min_res_model"), "NA");
      QCOMPARE(text("Text_RMS"), "4.2500");
    }
    lower->setText(range);
    control<QLineEdit>("Text_max_depth")->setText("99");
    QCOMPARE(colours(section()), 0);
    control<QLineEdit>("Text_max_depth")->setText("1e9");
    QVERIFY(colours(section()) > 20);
    QVERIFY(interface_->take_messages().empty());
  }

  void what_can_not_be_used_is_marked_at_its_box() {
    auto* const lower = control<QLineEdit>("Text_min_res");
    auto* const upper = control<QLineEdit>("Text_max_res");
    auto* const depth = control<QLineEdit>("Text_max_depth");
    lower->setText("x");
    QVERIFY(is_marked(*lower) && !is_marked(*upper));
    lower->setText("4");
    upper->setText("3");
    QVERIFY(!is_marked(*lower) && is_marked(*upper));
    upper->setText("5");
    depth->setText("99");
    QVERIFY(!is_marked(*upper) && is_marked(*depth));
    depth->setText("500");
    QVERIFY(!is_marked(*depth));
  }

  void buttons_stay_in_view_and_labels_whole_in_a_low_window() {
    window_->resize(1000, 480);
    QTest::qWait(50);
    for (const char* name : {"Command_done", "Command_save"}) {
      auto* const button = control<QPushButton>(name);
      QCOMPARE(button->visibleRegion().boundingRect(), button->rect());
    }
    // Numbers of many characters end before the edge of the picture.
    control<QLineEdit>("Text_min_res")->setText("-9.75");
    control<QLineEdit>("Text_max_res")->setText("-8.75");
    const QImage picture = section();
    for (int y = 0; y < picture.height(); ++y) {
      QCOMPARE(picture.pixelColor(picture.width() - 1, y), QColor(Qt::white));
    }
  }

  void switches_change_the_picture() {
    const QImage plain = section();
    for (const char* name : {"Check_invert_colour", "Check_draw_mesh", "Check_log_vertical"}) {
      auto* const check = control<QCheckBox>(name);
      check->click();
      QVERIFY2(section() != plain, name);
      check->click();
      QVERIFY2(section() == plain, name);
    }
    control<QComboBox>("Combo_colour_table")->setCurrentIndex(0);
    QVERIFY(section() != plain);
  }

  /// Also to a depth between two node lines.
  void a_metre_of_depth_is_as_long_as_one_along_the_line_if_wanted() {
    const auto metres = [this](QPoint from, QPoint to) {
      auto* const picture = control<QWidget>("Picture_model");
      std::array<QPointF, 2> places;
      for (const auto& [at, place] : {std::pair(from, &places[0]), std::pair(to, &places[1])}) {
        QTest::mouseMove(picture, QPoint(5, 5));
        static_cast<void>(QTest::qWaitFor([this] { return status().isEmpty(); }));
        QTest::mouseMove(picture, at);
        static_cast<void>(QTest::qWaitFor([this] { return !status().isEmpty(); }));
        const QStringList words = status().split(' ', Qt::SkipEmptyParts);
        *place = {words.value(1).toDouble(), words.value(4).toDouble()};
      }
      return places[1] - places[0];
    };
    const QPoint from(60, 50);
    const QPoint to(80, 70);
    control<QLineEdit>("Text_max_depth")->setText("130");
    const QPointF before = metres(from, to);
    QVERIFY2(std::abs(before.y() - before.x()) > 0.2 * before.x(),
             qPrintable(QString("%1 m across, %2 m down").arg(before.x()).arg(before.y())));
    control<QCheckBox>("Check_true_scale")->click();
    const QPointF step = metres(from, to);
    QVERIFY(step.x() > 0.0);
    QVERIFY2(std::abs(step.y() - step.x()) < 0.02 * step.x() + 0.2,
             qPrintable(QString("%1 m across, %2 m down").arg(step.x()).arg(step.y())));
  }

  void pointer_reads_distance_depth_and_resistivity() {
    auto* const picture = control<QWidget>("Picture_model");
    QTest::mouseMove(picture, QPoint(51, picture->height() - 60));
    QTRY_VERIFY(status().startsWith("Distance 100."));
    QVERIFY2(status().contains("Resistivity 3.00 log10 ohm-m (1000.00 ohm-m)"), qPrintable(status()));
    QTest::mouseMove(picture, QPoint(5, 5));
    QTRY_VERIFY(status().isEmpty());
  }

  void wheel_zooms_and_a_double_click_shows_all_again() {
    auto* const picture = control<QWidget>("Picture_model");
    const QImage all = section();
    QWheelEvent wheel(picture->rect().center(), picture->mapToGlobal(picture->rect().center()), {}, {0, 240},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(picture, &wheel);
    QVERIFY(section() != all);
    QTest::mouseDClick(picture, Qt::LeftButton);
    QCOMPARE(section(), all);
  }

  void response_is_computed_shown_and_read_under_the_pointer() {
    click("Command_display_response");
    QCOMPARE(control<QPushButton>("Command_display_response")->text().remove('&'), "Iterations");
    QVERIFY(fs::exists(folder_->folder() / "Brenlox" / "RESP_iter_3.out"));
    auto* const stations = control<QScrollBar>("HScroll_station");
    QCOMPARE(stations->minimum(), 1);
    QCOMPARE(stations->maximum(), 2);
    auto* const chart = control<VexGraphControl>("vxGraph_res");
    QVERIFY(chart->point_position(0, 0));  // station 1 has a value at 1 Hz, station 2 at 10 Hz
    QVERIFY(!chart->point_position(0, 1));
    stations->setValue(2);
    QVERIFY(!chart->point_position(0, 0));
    QVERIFY(chart->point_position(0, 1));
    auto* const misfits = control<QTableWidget>("Grid_misfit");
    QCOMPARE(misfits->rowCount(), 3);
    QCOMPARE(misfits->columnCount(), 3);  // two data types and all
    // A click on the first site's column goes there.
    auto* const errors = control<QWidget>("Picture_res_error");
    QTest::mouseClick(errors, Qt::LeftButton, {}, QPoint(60, errors->height() / 2));
    QCOMPARE(stations->value(), 1);
    QTest::mouseMove(errors, QPoint(60, 30));  // high frequencies are on top
    QTRY_VERIFY(
        status().startsWith("Site station_110.0 at 110.0 m   Frequency 10 Hz   TM resistivity error "));
    control<QComboBox>("Combo_display_mode")->setCurrentIndex(5);
    auto* const profile = control<VexGraphControl>("vxGraph_profile_res");
    QVERIFY(profile->point_position(0, 1));
    QVERIFY(!profile->point_position(0, 0));
    click("Command_display_response");
    QCOMPARE(control<QPushButton>("Command_display_response")->text().remove('&'), "Response");
  }

  void a_run_of_one_mode_has_nothing_to_choose() {
    click("Command_display_response");
    QVERIFY(!control<QComboBox>("Combo_response_view")->isVisible());
    QVERIFY(!control<QComboBox>("Combo_response_mode")->isVisible());
  }

  void every_data_type_of_a_run_can_be_looked_at() {
    static_cast<void>(folder_->write("occamdat", made::data_of_types(made::computed_types)));
    click("Command_display_response");
    auto* const view = control<QComboBox>("Combo_response_view");
    auto* const mode = control<QComboBox>("Combo_response_mode");
    QVERIFY(view->isVisible() && mode->isVisible());
    QCOMPARE(view->count(), 3);
    QCOMPARE(mode->count(), 4);  // TE and TM, each with its logarithm and as it is
    QCOMPARE(control<QTableWidget>("Grid_misfit")->columnCount(), 13);
    const auto series = [this](const char* name) {
      int count = 0;
      while (control<VexGraphControl>(name)->point_position(count, 0)) {
        ++count;
      }
      return count;
    };
    QCOMPARE(series("vxGraph_res"), 8);
    QCOMPARE(series("vxGraph_phase"), 4);
    QCOMPARE(series("vxGraph_profile_res"), 4);  // two frequencies of one mode

    auto* const errors = control<QWidget>("Picture_res_error");
    const auto hovered = [&] {
      QTest::mouseMove(errors, QPoint(62, 32));
      QTest::mouseMove(errors, QPoint(60, 30));
      QCoreApplication::processEvents();
      return status();
    };
    const QImage te = errors->grab().toImage();
    QTRY_VERIFY2(hovered().contains("   TE resistivity error "), qPrintable(hovered()));
    mode->setCurrentIndex(2);
    QCOMPARE(mode->currentText(), "TM");
    QTRY_VERIFY(hovered().contains("   TM resistivity error "));
    QVERIFY(errors->grab().toImage() != te);
    view->setCurrentText("Impedance");
    QCOMPARE(mode->currentText(), "TM");
    QCOMPARE(series("vxGraph_res"), 4);
    QTRY_VERIFY(hovered().contains("   TM Re Z error "));
    view->setCurrentText("Tipper");
    QVERIFY(!mode->isVisible());
    QCOMPARE(series("vxGraph_phase"), 2);
    QTRY_VERIFY(hovered().contains("   TE Re tipper error "));

    // The choice stays with another iteration, and goes with its data.
    control<QScrollBar>("HScroll_iteration")->setValue(1);
    QCOMPARE(view->currentText(), "Tipper");
    static_cast<void>(folder_->write("occamdat", made::data));
    fs::remove(folder_->folder() / "Brenlox" / "RESP_iter_3.out");
    control<QScrollBar>("HScroll_iteration")->setValue(3);
    QVERIFY(!view->isVisible());
    QCOMPARE(series("vxGraph_res"), 2);
  }

  void an_iteration_without_response_leaves_none_on_show() {
    click("Command_display_response");
    control<QScrollBar>("HScroll_iteration")->setValue(2);
    QVERIFY(!control<VexGraphControl>("vxGraph_res")->point_position(0, 0));
    QCOMPARE(control<QTableWidget>("Grid_misfit")->rowCount(), 0);
  }

  void a_run_at_work_is_followed() {
    static_cast<void>(
        folder_->write("ITER_4", made::iteration_text(4, " 2.0 1.7 1.5 2.0 2.0\n 2.0 3.0 2.5 2.0\n")));
    look_twice();
    QCOMPARE(control<QComboBox>("Combo_iteration")->count(), 5);
    QCOMPARE(text("Text_iterate"), "4");
    QCOMPARE(text("Text_min_res_model"), "1.50 / 31.62");
    // The file is written again, for now in part.
    static_cast<void>(folder_->write("ITER_4", made::iteration_text(4, " 2.0 1.7")));
    look_twice();
    QCOMPARE(text("Text_min_res_model"), "NA");
    QCOMPARE(colours(section()), 0);
    QCOMPARE(interface_->take_messages().size(), 1U);
    look_twice();
    QVERIFY(interface_->take_messages().empty());
    fs::remove(folder_->folder() / "ITER_4");
    look_twice();
    QCOMPARE(text("Text_iterate"), "3");
    QVERIFY(colours(section()) > 20);
  }

  void pictures_and_grids_are_written() {
    const auto pdf = [this](const std::string& path) { return file_contents(path).substr(0, 5) == "%PDF-"; };
    RunResults results;
    QCOMPARE(open_results(folder_->path("startup"), results), 0);
    RunView view(results);
    const SectionLook look{.choices = SectionChoices{1.0, 3.0, 2000.0, false}};
    QCOMPARE(save_section(view, look, folder_->path("a.png"), {600, 300}), 0);
    const QImage picture(QString::fromStdString(folder_->path("a.png")));
    QCOMPARE(picture.width(), 1200);
    QVERIFY(colours(picture) > 20);
    QCOMPARE(save_section(view, look, folder_->path("a.pdf"), {600, 300}), 0);
    QVERIFY(pdf(folder_->path("a.pdf")));
    QCOMPARE(save_station_fits(view, folder_->path("fits.pdf")), 0);
    QVERIFY(pdf(folder_->path("fits.pdf")));
    static_cast<void>(folder_->write("occamdat", made::data_of_types(made::computed_types)));
    fs::remove(folder_->folder() / "Brenlox" / "RESP_iter_3.out");
    RunView all_types(results);
    QCOMPARE(save_station_fits(all_types, folder_->path("all_fits.pdf")), 0);
    const auto pages = [this](const char* name) {
      return QByteArray::fromStdString(file_contents(folder_->path(name))).count("/Type /Page\n");
    };
    QCOMPARE(pages("fits.pdf"), 2);  // a site each
    QCOMPARE(pages("all_fits.pdf"), 6);
    const std::string earlier = file_contents(folder_->path("a.pdf"));
    QCOMPARE(save_section(view, {}, folder_->path("a.pdf"), {600, 300}), -1);
    QCOMPARE(save_section(view, look, folder_->path("a.bmp"), {600, 300}), -1);
    QVERIFY(file_contents(folder_->path("a.pdf")) == earlier);
    interface_->take_messages();
    click("Command_write_grid");
    QCOMPARE(interface_->take_messages(),
             made::Messages{"Grid file has been written. The files are in " + folder_->path("Brenlox")});
    const QList<QAction*> save = control<QPushButton>("Command_save")->menu()->actions();
    for (const auto& [action, name] : {std::pair(save.first(), "b.png"), std::pair(save.last(), "b.pdf")}) {
      (*interface_)->path_answers.push_back(folder_->path(name));
      action->trigger();
      const made::Messages shown = interface_->take_messages();
      QCOMPARE(shown.size(), std::size_t{1});
      QVERIFY2(shown[0].ends_with(" is written to " + folder_->path(name)), shown[0].c_str());
    }
  }

  void a_run_that_can_not_be_written_asks_where_grids_go() {
    const TemporaryFolder elsewhere;
    fs::permissions(elsewhere.folder(), fs::perms::all);
    fs::remove(folder_->folder() / "Brenlox");
    {
      const ReadOnlyFolder read_only(folder_->folder());
      click("Command_display_response");
      QCOMPARE(control<QScrollBar>("HScroll_station")->maximum(), 2);
      interface_->take_messages();
      click("Command_write_grid");  // the dialog is cancelled
      QVERIFY(interface_->take_messages().empty());
      QVERIFY2((*interface_)->file_dialogs.back().title.find("choose another") != std::string::npos,
               (*interface_)->file_dialogs.back().title.c_str());
      (*interface_)->path_answers.push_back(elsewhere.path("iter_3_logres.grd"));
      click("Command_write_grid");
      QCOMPARE(interface_->take_messages(),
               made::Messages{"Grid file has been written. The files are in " + elsewhere.folder().string()});
    }
    QVERIFY(fs::exists(elsewhere.folder() / "iter_3_res_smth.grd"));
  }

  void the_menu_asks_for_a_control_file() {
    ResultsWindows windows;
    windows.open_chosen();  // cancelled
    QCOMPARE((*interface_)->file_dialogs.at(0).title, "Select the Occam2d control file");
    window_->hide();
    (*interface_)->path_answers.push_back(folder_->path("startup"));
    windows.open_chosen();
    QTRY_VERIFY(QApplication::activeWindow() != nullptr);
    auto* const shown = qobject_cast<Form_occam_inversion*>(QApplication::activeWindow());
    QVERIFY(shown != nullptr && !shown->isModal());
    shown->findChild<QPushButton*>("Command_done")->click();
    QVERIFY(!shown->isVisible());
  }
};

QTEST_MAIN(FormOccamInversionTest)
#include "form_occam_inversion_test.moc"
