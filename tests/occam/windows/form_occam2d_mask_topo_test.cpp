// The window that masks a mesh, worked as a user does.
#include "occam/windows/Form_occam2d_mask_topo.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>
#include <algorithm>
#include <cmath>
#include <filesystem>

#include "formats/occam/mesh_file.h"
#include "formats/occam/model_file.h"
#include "occam/windows/mesh_picture.h"
#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

using Messages = std::vector<std::string>;

class FormOccam2dMaskTopoTest : public QObject {
  Q_OBJECT

 private:
  enum Page { model_page, topo_page, mesh_page };

  template <class Widget = QLineEdit>
  Widget* control(const char* name) const {
    return window_->findChild<Widget*>(name);
  }
  void type(const char* name, const QString& text) const {
    control(name)->setFocus();
    control(name)->selectAll();
    QTest::keyClicks(control(name), text);
    QTest::keyClick(control(name), Qt::Key_Tab);
  }
  void click(const char* name) const { QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton); }
  void choose(const char* name) const { control<QRadioButton>(name)->click(); }
  [[nodiscard]] Recorded& recorded() const { return *interface_->operator->(); }
  [[nodiscard]] QTabWidget& pages() const { return *control<QTabWidget>("Tab_occam_files"); }
  [[nodiscard]] QString mesh_text() const { return control<QPlainTextEdit>("Text_mesh_mask")->toPlainText(); }

  /// A mesh of 50 columns of 100 m between growing ones, and rows of 10 m and more.
  void write_model() const {
    OccamMesh mesh;
    std::vector<Module_occam::LayerLines> layers;
    mesh.node_widths = {8100.0, 2700.0, 900.0, 300.0};
    const std::size_t side = mesh.node_widths.size();
    mesh.node_widths.insert(mesh.node_widths.end(), 50, 100.0);
    for (std::size_t i = 0; i < side; ++i) {
      mesh.node_widths.push_back(mesh.node_widths[side - 1 - i]);
    }
    constexpr int rows = 38;  // to a height of 1,760 m
    for (int row = 0; row < rows; ++row) {
      mesh.node_heights.push_back(std::round(10.0 * std::pow(1.15, row)));
      layers.push_back({1, std::vector<int>(mesh.node_widths.size(), 1)});
    }
    const auto free = Module_occam::MeshCodes::all_free;
    QVERIFY(!folder_->write("mesh", Module_occam::mesh_file_text(mesh, free)).empty());
    const double offset = mesh.node_widths.front() - 12100.0;
    QVERIFY(!folder_->write("inmodel", Module_occam::model_file_text("ridge", offset, layers)).empty());
  }
  void write_topo() const {
    std::string text = "! line 200E\nstation  elevation\n";
    for (int station = 0; station <= 5000; station += 250) {
      const double x = station / 1000.0;
      text += std::to_string(station) + "  " +
              std::to_string(900.0 + 60.0 * std::sin(2.0 * x) + 25.0 * std::cos(5.0 * x)) + "\n";
    }
    QVERIFY(!folder_->write("line.dat", text).empty());
  }
  void choose_files() const {
    recorded().path_answers = {folder_->path("inmodel"), folder_->path("line.dat")};
    click("Command_select_occam_model_file");
    pages().setCurrentIndex(topo_page);
    click("Command_select_data_location_file");
    QVERIFY(std::filesystem::equivalent(recorded().file_dialogs.back().directory, folder_->folder()));
    click("Command_load_locations");
  }
  void save_picture(const char* name) const {
    if (const QString pictures = qEnvironmentVariable("BRENLOX_PICTURES"); !pictures.isEmpty()) {
      window_->resize(1280, 800);
      QTest::qWait(100);
      QVERIFY(window_->grab().save(pictures + "/" + name));
    }
  }

  using OccamMesh = Module_occam::OccamMesh;
  std::unique_ptr<TemporaryFolder> folder_;
  std::unique_ptr<RecordingInterface> interface_;
  std::unique_ptr<Form_occam2d_mask_topo> window_;

 private Q_SLOTS:
  void init() {
    folder_ = std::make_unique<TemporaryFolder>();
    interface_ = std::make_unique<RecordingInterface>();
    write_model();
    write_topo();
    window_ = std::make_unique<Form_occam2d_mask_topo>();
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
  }
  void cleanup() {
    window_.reset();
    interface_.reset();
  }

  void the_mesh_page_asks_for_model_and_topography_and_goes_where_they_are_given() {
    QCOMPARE(QApplication::focusWidget(), control("Text_occam_model_file"));
    pages().setCurrentIndex(mesh_page);
    QCOMPARE(interface_->take_messages(), Messages{"No model file has been specified"});
    QCOMPARE(pages().currentIndex(), int{model_page});
    type("Text_occam_model_file", "no such file");
    pages().setCurrentIndex(mesh_page);
    QCOMPARE(interface_->take_messages(), Messages{"The specified model file does not exist"});
    type("Text_occam_model_file", "no such file");
    QCOMPARE(control<QPlainTextEdit>("Text_model_file")->placeholderText(), QString("There is no such file"));
    type("Text_occam_model_file", QString::fromStdString(folder_->path("line.dat")));
    pages().setCurrentIndex(mesh_page);
    QCOMPARE(interface_->take_messages(),
             Messages{"The specified model file is not defined properly. The file "
                      "does not have the correct format"});
    type("Text_occam_model_file", QString::fromStdString(folder_->path("inmodel")));
    QVERIFY(control<QPlainTextEdit>("Text_model_file")
                ->toPlainText()
                .startsWith("FORMAT:           OCCAM2MTMOD_1.0"));
    pages().setCurrentIndex(mesh_page);
    QCOMPARE(interface_->take_messages(), Messages{"No topo has been defined"});
    QCOMPARE(pages().currentIndex(), int{topo_page});
    click("Command_load_locations");
    QCOMPARE(interface_->take_messages(), Messages{"No data file has been specified"});
  }

  void entries_that_are_no_positive_numbers_are_put_back() {
    pages().setCurrentIndex(topo_page);
    type("Text_occam_topo_nhead", "3");
    for (const char* const refused : {"0", "-2", "x", " "}) {
      type("Text_occam_topo_nhead", refused);
      QCOMPARE(control("Text_occam_topo_nhead")->text(), QString("3"));
    }
    type("Text_occam_topo_dtmpos", "0.2");
    QCOMPARE(control("Text_occam_topo_dtmpos")->text(), QString("2"));
    QVERIFY(interface_->take_messages().empty());
  }

  void masks_the_mesh_shows_it_and_saves_it() {
    choose_files();
    QCOMPARE(control("Text_number_locations")->text(), QString("21"));
    QCOMPARE(control<QLabel>("Label_left_out")->text(),
             QString("Line 2 is left out: no number for the station or the elevation"));  // the heading
    QVERIFY(control<QPlainTextEdit>("Text_data_file")->toPlainText().startsWith("! line 200E"));
    save_picture("mask_topo_file.png");
    pages().setCurrentIndex(mesh_page);
    QCOMPARE(interface_->take_messages(), Messages{});
    const QString rectangular = mesh_text();
    save_picture("mask_topo_rectangular.png");
    QVERIFY(rectangular.contains('0'));
    QVERIFY(!control<QWidget>("Frame_triangle")->isEnabled());
    choose("Option_mask_style_1");
    const QString bottom = mesh_text();
    QVERIFY(bottom != rectangular);
    save_picture("mask_topo_bottom.png");
    QStringList seen{rectangular, bottom};
    for (const char* const triangle : {"Option_triangle_0", "Option_triangle_2", "Option_triangle_3"}) {
      choose(triangle);
      QVERIFY(!seen.contains(mesh_text()));
      seen << mesh_text();
      save_picture((std::string("mask_topo_") + triangle + ".png").c_str());
    }
    choose("Option_mask_display_1");
    QVERIFY(!mesh_text().section('\n', 1).contains("0?") && !mesh_text().contains("000000"));
    control<QCheckBox>("Check_whole_mesh")->click();
    save_picture("mask_topo_whole.png");
    choose("Option_mask_style_0");

    recorded().path_answers = {folder_->path("masked.msh"), folder_->path("masked.msh")};
    click("Command_save_mesh");
    const Messages messages = interface_->take_messages();
    QCOMPARE(messages.size(), std::size_t{2});
    QVERIFY(messages.front().find("on a vertical wall of the masked mesh") != std::string::npos);
    const auto& request = recorded().file_dialogs.back();
    QCOMPARE(request.title, std::string("Select the Occam mesh file to create"));
    QCOMPARE(request.suggested_name, std::string("mesh_topo_mask.msh"));
    const std::string saved = file_contents(folder_->path("masked.msh"));
    QCOMPARE(messages.back(), "Number of free parameters: " + std::to_string(std::ranges::count(saved, '?')) +
                                  " (triangles of the mesh). The mesh is written to " +
                                  folder_->path("masked.msh"));
    choose("Option_mask_style_1");
    click("Command_save_mesh");  // No to the question
    QCOMPARE(recorded().questions, Messages{"The specified file already exists. Overwrite?"});
    QCOMPARE(file_contents(folder_->path("masked.msh")), saved);
    QVERIFY(interface_->take_messages().empty());
  }

  void a_datum_far_above_the_ground_is_reported_and_can_be_corrected() {
    choose_files();
    type("Text_datum_elevation", "far");
    QVERIFY(control("Text_datum_elevation")->text().startsWith("9"));
    type("Text_datum_elevation", "100000");
    pages().setCurrentIndex(mesh_page);
    QVERIFY(
        interface_->take_messages().front().starts_with("An error occurred while applying the topo mask: "));
    QCOMPARE(pages().currentIndex(), int{topo_page});
    type("Text_datum_elevation", "990");
    pages().setCurrentIndex(mesh_page);
    QVERIFY(interface_->take_messages().empty());
    QCOMPARE(pages().currentIndex(), int{mesh_page});
  }

  void the_picture_names_the_triangle_under_the_pointer_and_zooms() {
    choose_files();
    pages().setCurrentIndex(mesh_page);
    auto* const picture = control<MeshPicture>("Picture_mesh");
    QTest::qWait(50);  // the page is laid out
    const QPoint middle = picture->rect().center();
    const QString text = picture->text_at(middle);
    QVERIFY2(text.contains(" triangle of column ") && text.contains("Ground at "), qPrintable(text));
    QCOMPARE(picture->text_at({1.0, 1.0}), QString());
    const QImage whole = picture->grab().toImage();
    QTest::mousePress(picture, Qt::LeftButton, {}, middle);
    QTest::mouseMove(picture, middle + QPoint(60, 40));
    QTest::mouseRelease(picture, Qt::LeftButton, {}, middle + QPoint(60, 40));
    QVERIFY(picture->grab().toImage() != whole);
    QTest::mouseClick(picture, Qt::LeftButton, {}, middle);
    QMouseEvent second(QEvent::MouseButtonDblClick, middle, picture->mapToGlobal(middle), Qt::LeftButton,
                       Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(picture, &second);
    QTest::mouseRelease(picture, Qt::LeftButton, {}, middle);
    QCOMPARE(picture->grab().toImage(), whole);
  }
};

QTEST_MAIN(FormOccam2dMaskTopoTest)
#include "form_occam2d_mask_topo_test.moc"
