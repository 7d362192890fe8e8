// The pseudo-section's window, worked as a user does.
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <filesystem>

#include "core/undo_stack.h"
#include "platform/widgets/entry_mark.h"
#include "reduction/edits/undo.h"
#include "tensor/windows/Form_pseudo_section.h"
#include "tensor/windows/pseudo_section_pane.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/window_fixture.h"

using namespace Module_tensor;

class PseudoSectionTest : public QObject, private WindowFixture {
  Q_OBJECT

 private:
  /// Merged curves of ExHy and EyHx, and of the diagonals if they are wanted.
  static void store_station(double station, const std::vector<float>& frequencies, bool diagonals = true) {
    for (const auto& [type, resistivity, phase] :
         {std::tuple("ExHy", 100.0F, 40.0F), std::tuple("EyHx", 50.0F, -130.0F),
          std::tuple("ExHx", 5.0F, 60.0F), std::tuple("EyHy", 2.0F, -100.0F)}) {
      if (!diagonals && type[1] == type[3]) {
        continue;
      }
      std::vector<made::Point> points;
      for (const float frequency : frequencies) {
        points.push_back({frequency, resistivity * (1.0F + static_cast<float>(station) / 100.0F), phase});
      }
      Module_database::ReadingKey key = made::key(0.0F, station);
      key.data_type = type;
      made::store(key, 0, made::reading(points), 2, -1);
    }
    session().station_line.emplace_back("200E");
    session().station_value.push_back(station);
    session().station_id.push_back(
        Module_database::find_station(Module_database::StationSearch::create, "200E", station).StationID);
    session().station_count = static_cast<int>(session().station_value.size());
    session().frequencies.list = frequencies;
    session().frequencies.enabled.assign(frequencies.size(), 1);
  }
  void make_line(const std::vector<double>& stations, const std::vector<float>& frequencies,
                 bool diagonals = true) {
    make_survey();
    for (const double station : stations) {
      store_station(station, frequencies, diagonals);
    }
    select(stations.front());
  }
  static void select(double station) {
    session().current_line = "200E";
    session().current_reference_type = 0;
    session().current_dipole = 50.0F;
    session().current_station = station;
    session().current_station_index = 1;
  }
  void open_window() {
    shown_ = std::make_unique<ShownLine>();
    window_ = std::make_unique<Form_pseudo_section>(*shown_);
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
  }
  template <class Widget>
  Widget& control(const char* name) const {
    return *window_->findChild<Widget*>(name);
  }
  [[nodiscard]] PseudoSectionPane& pane(int index) const {
    return control<PseudoSectionPane>(index == 0 ? "Picture_section_0" : "Picture_section_1");
  }
  void choose(const char* list, int index) const {
    auto& combo = control<QComboBox>(list);
    combo.setCurrentIndex(index);
    Q_EMIT combo.activated(index);
  }
  void choose(SectionQuantity quantity) const { choose("Combo_quantity_0", static_cast<int>(quantity)); }
  [[nodiscard]] const SectionPoint& point(std::size_t column, std::size_t point) const {
    return pane(0).picture().section.columns.at(column).points.at(point);
  }
  [[nodiscard]] QPoint pixel(std::size_t column, std::size_t at) const {
    return pseudo_section_pixel(pane(0).size(), pane(0).picture(), pane(0).view(),
                                pane(0).picture().section.columns.at(column), point(column, at))
        .toPoint();
  }
  /// A merged curve's masks: resistivity and phase of each frequency.
  static std::string masks(double station, const std::string& type) {
    const dao::Recordset row = Module_database::open_survey().database.open_recordset(
        "SELECT * FROM ReadingsDataTable WHERE Station = " + std::to_string(station) + " AND DataType = '" +
        type + "'");
    std::string text;
    for (const std::int32_t flag : Module_database::read_reading(row).curve.mask) {
      text += flag == 1 ? '1' : '0';
    }
    return text;
  }

  std::unique_ptr<ShownLine> shown_;
  std::unique_ptr<Form_pseudo_section> window_;

 private Q_SLOTS:
  void init() { make_folder(); }
  void cleanup() {
    window_.reset();
    shown_.reset();
    remove_folder();
  }

  void a_click_goes_to_station_and_frequency() {
    make_line({100.0, 200.0, 300.0}, {0.1F, 1.0F, 10.0F});
    open_window();
    QSignalSpy clicked(&pane(0), &PseudoSectionPane::clicked);
    QTest::mouseClick(&pane(0), Qt::LeftButton, {}, pixel(1, 0));
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicked[0][0].toDouble(), 200.0);
    QCOMPARE(clicked[0][1].toDouble(), 10.0);
    QTest::mouseClick(&pane(0), Qt::LeftButton, {}, QPoint(5, 5));  // beside the section
    QCOMPARE(clicked.count(), 1);
    // What is one curve's takes the main window to it.
    QSignalSpy chosen(shown_.get(), &ShownLine::station_chosen);
    for (const auto& [quantity, type] :
         {std::pair(SectionQuantity::rho_yx, "EyHx"), std::pair(SectionQuantity::phase_xy, "ExHy"),
          std::pair(SectionQuantity::rho_det, "")}) {
      choose(quantity);
      QTest::mouseClick(&pane(0), Qt::LeftButton, {}, pixel(1, 0));
      QCOMPARE(chosen.takeLast()[2].toString(), QString(type));
    }
    QSignalSpy mask(&pane(0), &PseudoSectionPane::mask_wanted);
    QTest::mouseClick(&pane(0), Qt::LeftButton, Qt::ShiftModifier, QPoint(5, 5));
    QCOMPARE(mask.count(), 0);
  }

  void shift_click_masks_what_the_quantity_comes_from_as_one_undo() {
    make_line({100.0, 200.0}, {0.1F, 1.0F, 10.0F});
    open_window();
    struct Case {
      SectionQuantity quantity;
      const char* xy;
      const char* yx;
    };
    // Points are by growing period: the middle one is 1 Hz; masks are by growing frequency.
    for (const Case& c : {Case{SectionQuantity::rho_xy, "110111", "111111"},
                          Case{SectionQuantity::phase_yx, "111111", "111011"},
                          Case{SectionQuantity::rho_det, "110011", "110011"},
                          Case{SectionQuantity::phase_max, "110011", "110011"},
                          Case{SectionQuantity::ellipses_by_skew, "110011", "110011"},
                          Case{SectionQuantity::bostick_xy, "110011", "111111"},
                          Case{SectionQuantity::bostick_det, "110011", "110011"}}) {
      choose(c.quantity);
      QVERIFY(point(0, 1).counts);
      QTest::mouseClick(&pane(0), Qt::LeftButton, Qt::ShiftModifier, pixel(0, 1));
      QCOMPARE(masks(100.0, "ExHy"), std::string(c.xy));
      QCOMPARE(masks(100.0, "EyHx"), std::string(c.yx));
      QCOMPARE(masks(200.0, "ExHy"), std::string("111111"));
      QVERIFY(!point(0, 1).counts);  // the section has followed
      QVERIFY(Module_averaged_data::undo_last_change().edit == Module_averaged_data::Edit::changed);
      select(100.0);  // where undo goes is the main window's affair
      shown_->forget();
      QCOMPARE(masks(100.0, "ExHy"), std::string("111111"));
      QCOMPARE(masks(100.0, "EyHx"), std::string("111111"));
      QVERIFY(point(0, 1).counts);
    }
    choose(SectionQuantity::rho_xy);
    for (int i = 0; i < 2; ++i) {  // and back without undo
      QTest::mouseClick(&pane(0), Qt::LeftButton, Qt::ShiftModifier, pixel(1, 2));
    }
    QCOMPARE(masks(200.0, "ExHy"), std::string("111111"));
  }

  void two_sections_share_axes_zoom_and_frame() {
    make_line({100.0, 200.0, 300.0}, {0.1F, 1.0F, 10.0F});
    open_window();
    QVERIFY(pane(1).isVisible());
    QCOMPARE(pane(0).picture().across, pane(1).picture().across);
    QCOMPARE(pane(0).picture().heights, pane(1).picture().heights);
    QCOMPARE(pane(1).picture().framed, std::optional<std::size_t>(0));
    const QRectF plot = pseudo_section_plot(pane(0).size());
    QTest::mousePress(&pane(0), Qt::LeftButton, {}, plot.center().toPoint());
    QTest::mouseMove(&pane(0), plot.center().toPoint() + QPoint(40, 40));
    QTest::mouseMove(&pane(0), plot.center().toPoint() + QPoint(90, 70));
    QTest::mouseRelease(&pane(0), Qt::LeftButton, {}, plot.center().toPoint() + QPoint(90, 70));
    QVERIFY(pane(0).view().across.zoomed());
    QCOMPARE(pane(1).view().across.shown(), pane(0).view().across.shown());
    QMouseEvent second_press(QEvent::MouseButtonDblClick, plot.center(), pane(1).mapToGlobal(plot.center()),
                             Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&pane(1), &second_press);
    QTest::mouseRelease(&pane(1), Qt::LeftButton, {}, plot.center().toPoint());
    QVERIFY(!pane(0).view().across.zoomed());
    session().current_station = 300.0;
    session().current_station_index = 3;
    shown_->follow_selection();
    QCOMPARE(pane(0).picture().framed, std::optional<std::size_t>(2));
    control<QCheckBox>("Check_compare").click();
    QVERIFY(!pane(1).isVisible());
  }

  void stations_far_apart_are_equally_wide_in_order() {
    make_line({5000.0, 100.0, 200.0}, {0.1F, 1.0F});
    open_window();
    control<QCheckBox>("Check_in_order").click();
    const auto& columns = pane(0).picture().section.columns;
    QCOMPARE(columns.size(), std::size_t{3});
    for (const SectionColumn& column : columns) {
      QCOMPARE(column.across.upper - column.across.lower, 1.0);
      QVERIFY(!column.gap_behind);
    }
    QCOMPARE(columns.back().station, 5000.0);
    QSignalSpy clicked(&pane(0), &PseudoSectionPane::clicked);
    QTest::mouseClick(&pane(0), Qt::LeftButton, {}, pixel(2, 0));
    QCOMPARE(clicked.value(0).value(0).toDouble(), 5000.0);
  }

  void arrow_keys_step_the_station_and_undo_is_handed_on() {
    make_line({100.0, 200.0, 300.0}, {0.1F, 1.0F});
    open_window();
    QSignalSpy chosen(shown_.get(), &ShownLine::station_chosen);
    QSignalSpy undo(window_.get(), &Form_pseudo_section::undo_wanted);
    QTest::keyClick(&pane(0), Qt::Key_Left);  // there is none before the first
    QCOMPARE(chosen.count(), 0);
    QTest::keyClick(&pane(0), Qt::Key_Right);
    QCOMPARE(chosen.count(), 1);
    QCOMPARE(chosen[0][0].toInt(), 2);
    QTest::keyClick(&pane(0), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(undo.count(), 1);
    QTest::keyClick(&pane(0), Qt::Key_Escape);
    QVERIFY(!window_->isVisible());
  }

  void ranges_are_usual_typed_or_those_of_the_data() {
    make_line({100.0, 200.0}, {0.1F, 1.0F});
    open_window();
    QCOMPARE(pane(0).picture().scale.upper, 4.0);
    choose("Combo_range_0", 1);
    QVERIFY(std::abs(pane(0).picture().scale.lower - std::log10(200.0)) < 1e-5);
    QVERIFY(std::abs(pane(0).picture().scale.upper - std::log10(300.0)) < 1e-5);
    auto& upper = control<QLineEdit>("Text_upper_0");
    upper.setFocus();
    upper.selectAll();
    QTest::keyClicks(&upper, "1000");
    QTest::keyClick(&upper, Qt::Key_Return);
    QCOMPARE(pane(0).picture().scale.upper, 3.0);
    QCOMPARE(control<QComboBox>("Combo_range_0").currentIndex(), 2);
    upper.selectAll();
    for (const char* const refused : {"-5", "many", "0.5"}) {
      upper.selectAll();
      QTest::keyClicks(&upper, refused);
      QTest::keyClick(&upper, Qt::Key_Return);
      QVERIFY(is_marked(upper));
      QCOMPARE(upper.text(), QString(refused));
      QCOMPARE(control<QStatusBar>("Status_section").currentMessage(), upper.toolTip());
      QCOMPARE(pane(0).picture().scale.upper, 3.0);
    }
    upper.selectAll();
    QTest::keyClicks(&upper, "1000");
    QTest::keyClick(&upper, Qt::Key_Return);
    QVERIFY(!is_marked(upper));
    choose(SectionQuantity::phase_xy);
    QCOMPARE(pane(0).picture().scale.upper, 90.0);
    choose(SectionQuantity::rho_xy);
    QCOMPARE(pane(0).picture().scale.upper, 3.0);  // as it was left
  }

  void residuals_of_rhoplus_are_computed_when_they_are_asked_for() {
    make_line({100.0, 200.0}, {0.1F, 0.3F, 1.0F, 3.0F, 10.0F});
    open_window();
    choose(SectionQuantity::misfit_phase_xy);
    QVERIFY(!pane(0).picture().section.empty());
    QVERIFY(point(0, 1).has_value());
    QTest::mouseClick(&pane(0), Qt::LeftButton, Qt::ShiftModifier, pixel(0, 2));
    QCOMPARE(masks(100.0, "ExHy"), std::string("1111101111"));
    QVERIFY(!point(0, 2).counts);
  }

  void pictures_are_written_and_failures_told() {
    make_line({100.0, 200.0}, {0.1F, 1.0F});
    open_window();
    for (const char* const name : {"a.png", "b.pdf"}) {
      QCOMPARE(window_->save_picture(folder_->path(name)), 0);
      QVERIFY(std::filesystem::file_size(folder_->path(name)) > 1000);
    }
    const QImage image(QString::fromStdString(folder_->path("a.png")));
    QCOMPARE(image.size(), QSize(4 * pane(0).width(), 2 * pane(0).height()));  // twice as fine, two panes
    QCOMPARE(window_->save_picture(folder_->path("c.txt")), -1);
    QCOMPARE(window_->save_picture(folder_->path("nowhere/d.png")), -1);
    QCOMPARE((*interface_)->messages.size(), std::size_t{2});
  }

  void whatever_a_line_lacks_there_is_a_sensible_picture() {
    make_survey();
    open_window();  // nothing is selected
    QVERIFY(pane(0).picture().section.empty());
    QVERIFY(!pane(0).picture().note.isEmpty());
    window_.reset();
    shown_.reset();
    remove_folder();
    for (const auto& [stations, frequencies] :
         {std::pair(std::vector<double>{100.0}, std::vector<float>{1.0F}),
          std::pair(std::vector<double>{100.0}, std::vector<float>{1.0F, 10.0F}),
          std::pair(std::vector<double>{100.0, 200.0}, std::vector<float>{1.0F})}) {
      make_folder();
      make_line(stations, frequencies, stations.size() == 2);
      open_window();
      for (const QuantityFacts& facts : section_quantities()) {
        choose(facts.quantity);
        const QImage image = window_->grab().toImage();
        QVERIFY(!image.isNull());
        const bool needs_all = facts.curves[1].has_value();
        const bool tipper = facts.quantity == SectionQuantity::tipper_magnitude;
        if (!facts.is_misfit()) {
          QCOMPARE(pane(0).picture().section.empty(), tipper || (needs_all && stations.size() == 1));
        }
        QVERIFY(pane(0).picture().section.empty() == !pane(0).picture().section.heights);
      }
      window_.reset();
      shown_.reset();
      remove_folder();
    }
    make_folder();
  }
};

QTEST_MAIN(PseudoSectionTest)
#include "pseudo_section_test.moc"
