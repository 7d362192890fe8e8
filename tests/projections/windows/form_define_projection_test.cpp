// The projection dialog and its editor, used as a user does.
#include "projections/windows/Form_define_projection.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <memory>

#include "core/session_state.h"
#include "platform/settings_store/settings_store.h"
#include "projections/definition_list.h"
#include "projections/survey_projection.h"
#include "projections/windows/vex_projection.h"
#include "tests/projections/definitions.h"
#include "tests/support/window_fixture.h"

using namespace Module_projections;
using Messages = std::vector<std::string>;

class FormDefineProjectionTest : public QObject, private WindowFixture {
  Q_OBJECT

 private:
  void open_dialog(const std::string& asked_name = "") {
    window_.reset();
    window_ = std::make_unique<Form_define_projection>(asked_name);
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
  }
  template <class Widget = QLineEdit>
  Widget* control(const char* name) const {
    return window_->findChild<Widget*>(name);
  }
  VexProjection* editor() const { return control<VexProjection>("vxProjection"); }
  QString text(const char* name) const { return control(name)->text(); }
  QString label(const char* name) const { return control<QLabel>(name)->text(); }
  bool shown(const char* name) const { return control<QWidget>(name)->isVisible(); }
  void click(const char* name) const { QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton); }
  void choose(const char* combo, int index) const {
    auto* const box = control<QComboBox>(combo);
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Home);
    for (int i = 0; i < index; ++i) {
      QTest::keyClick(box, Qt::Key_Down);
    }
    QCOMPARE(box->currentIndex(), index);
  }
  void type(const char* name, const QString& typed) const {
    auto* const edit = control(name);
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, typed);
  }
  void keep(const CoordSystem& definition) const {
    CoordSystems coord_systems;
    QCOMPARE(load_coord_system_definitions(coord_systems), 0);
    QCOMPARE(add_coord_definitions_to_list(coord_systems, definition), 0);
    QCOMPARE(save_coord_system_definitions(coord_systems, 0), 0);
  }
  void save_picture(const char* name) const {
    const QString folder = qEnvironmentVariable("BRENLOX_PICTURES");
    if (!folder.isEmpty()) {
      QApplication::processEvents();
      window_->grab().save(folder + "/" + name + ".png");
    }
  }

  std::unique_ptr<Form_define_projection> window_;

 private Q_SLOTS:
  void init() {
    make_folder();
    install_settings_store(std::make_unique<MemorySettingsStore>());
    current_coord_system() = {};
    session().environment.application_data_directory = folder_->folder().string();
    make_survey();
  }
  void cleanup() {
    window_.reset();
    remove_folder();
  }

  void each_projection_shows_the_values_it_needs() {
    open_dialog();
    struct Case {
      int projection;
      QStringList fields;
    };
    const QStringList conic{"Text_origin_longitude",    "Text_origin_latitude", "Text_standard_parallel_1",
                            "Text_standard_parallel_2", "Text_false_easting",   "Text_false_northing"};
    const QStringList zone{"Text_zone_number", "Text_zone_width", "Text_scale_factor", "Text_false_easting",
                           "Text_false_northing"};
    const Case cases[] = {{0, {"Combo_datum"}},
                          {1, QStringList(zone) << "Combo_datum"},
                          {2, QStringList(zone) << "Combo_datum"
                                                << "Combo_hemisphere"},
                          {3, QStringList(conic) << "Combo_datum"
                                                 << "Text_scale_factor"},
                          {4, QStringList(conic) << "Combo_datum"},
                          {5, QStringList(conic) << "Combo_datum"},
                          {6, {}}};
    QStringList all = conic + zone + QStringList{"Combo_datum", "Combo_hemisphere"};
    all.removeDuplicates();
    for (const Case& c : cases) {
      choose("Combo_projection", c.projection);
      QCOMPARE(editor()->values().projection, c.projection);
      QApplication::processEvents();
      for (const QString& field : all) {
        QVERIFY2(shown(field.toUtf8().constData()) == c.fields.contains(field), qPrintable(field));
        QCOMPARE(control<QWidget>(field.toUtf8().constData())->visibleRegion().isEmpty(),
                 !c.fields.contains(field));
      }
      save_picture(qPrintable(QString("projection_%1").arg(c.projection)));
    }
    choose("Combo_projection", 1);  // a grid with a datum of its own
    QVERIFY(editor()->values().datum != 4326);
    choose("Combo_projection", 2);
    QCOMPARE(editor()->values().datum, 4326);  // the user has only looked at it
  }

  void a_test_point_follows_every_change() {
    open_dialog();
    choose("Combo_projection", 2);
    control<QComboBox>("Combo_datum")->setCurrentText("4283");
    type("Text_zone_number", "54");
    type("Text_test_latitude", "-37:39:10.1561");  // Buninyong, of the GDA94 Technical Manual
    type("Text_test_longitude", "143:55:35.3839 E");
    QCOMPARE(text("Text_test_easting"), QString("758173.797"));
    QCOMPARE(text("Text_test_northing"), QString("5828674.340"));
    QCOMPARE(label("Label_test_note"), QString("Zone 54, central meridian 141"));
    type("Text_zone_number", "0");
    QCOMPARE(text("Text_test_easting"), QString("758173.797"));
    type("Text_zone_number", "55");
    QCOMPARE(text("Text_test_easting"), QString("228854.051"));
    type("Text_false_northing", "0.34");
    QCOMPARE(text("Text_test_northing"), QString("-4171740.622"));
    type("Text_zone_width", "400");
    QCOMPARE(text("Text_test_easting"), QString());
    QCOMPARE(label("Label_test_note"), QString("The zone width value is invalid"));
    type("Text_zone_width", "six");
    QCOMPARE(label("Label_test_note"), QString("Zone width (degrees): 'six' is not a number"));
    save_picture("unreadable");
    click("Command_done");
    QCOMPARE(interface_->take_messages(), Messages{"Zone width (degrees): 'six' is not a number"});
    QVERIFY(window_->isVisible());
  }

  void values_without_a_name_pass_through_and_say_so() {
    CoordSystem definition = zone_definition("Old", 0);
    definition.datum = 37;
    definition.hemisphere = 9;
    definition.origin_longitude = 0.1 + 0.2;  // not shown for zones, and kept
    keep(definition);
    open_dialog("Old");
    QCOMPARE(control<QComboBox>("Combo_datum")->currentText(), QString("Unknown (37)"));
    QVERIFY(label("Label_datum").contains("the ellipsoid taken is WGS 84"));
    QCOMPARE(control<QComboBox>("Combo_hemisphere")->currentText(),
             QString("9 (no known code: by the latitude)"));
    save_picture("unknown_datum");
    type("Text_zone_number", "55");
    definition.zone_number = 55;
    QVERIFY(editor()->values() == definition.values());
    QLineEdit* const datum = control<QComboBox>("Combo_datum")->lineEdit();
    datum->setFocus();
    datum->selectAll();
    QTest::keyClicks(datum, "4202");
    QCOMPARE(editor()->values().datum, 4202);
    QWidget* const suggestions = QApplication::activePopupWidget();
    QVERIFY(suggestions != nullptr);
    QTest::keyClick(suggestions, Qt::Key_Tab);
    QCOMPARE(control<QComboBox>("Combo_datum")->currentText(), QString("AGD66 (4202)"));
    QCOMPARE(label("Label_datum"), QString("Ellipsoid Australian National Spheroid"));
  }

  void done_gives_the_survey_what_is_shown_and_cancel_nothing() {
    keep(zone_definition("MGA 54", 54));
    keep(zone_definition("MGA 55 | Victoria", 55));
    open_dialog("My grid");
    QCOMPARE(control<QComboBox>("Combo_coordsys")->currentIndex(), -1);
    choose("Combo_coordsys", 1);
    QCOMPARE(text("Text_zone_number"), QString("55"));
    QCOMPARE(label("lblLabels_1"), QString("Done gives this projection to the survey as \"MGA 55\"."));
    save_picture("list_entry");
    click("Command_done");
    QVERIFY(!window_->isVisible());
    QCOMPARE(current_coord_system().name, std::string("MGA 55 | Victoria"));

    open_dialog("My grid");
    QCOMPARE(control<QComboBox>("Combo_coordsys")->currentIndex(), 1);
    type("Text_zone_number", "53");
    QCOMPARE(label("lblLabels_1"), QString("Done gives this projection to the survey as \"My grid\"."));
    QTest::keyClick(window_.get(), Qt::Key_Escape);
    QVERIFY(!window_->isVisible());
    QCOMPARE(current_coord_system().zone_number, 55);
    QCOMPARE(control<QComboBox>("Combo_coordsys")->count(), 2);

    open_dialog("My grid");
    type("Text_zone_number", "61");
    click("Command_done");
    QVERIFY(window_->isVisible());
    QCOMPARE(interface_->take_messages().size(), std::size_t{1});
    QCOMPARE(current_coord_system().zone_number, 55);
    type("Text_zone_number", "53");
    click("Command_done");
    QVERIFY(!window_->isVisible());
    QCOMPARE(current_coord_system().name, std::string("My grid"));
    QCOMPARE(settings_store().keys("Marrowgate", "Projection").size(), std::size_t{3});
    current_coord_system() = {};
    QCOMPARE(read_survey_projection(), 0);
    QCOMPARE(current_coord_system().zone_number, 53);
  }

  void a_survey_of_another_user_shows_its_projection() {
    current_coord_system() = lambert_definition("Theirs");
    QCOMPARE(store_survey_projection(), 0);
    open_dialog();
    QCOMPARE(control<QComboBox>("Combo_coordsys")->currentIndex(), -1);
    QVERIFY(editor()->values() == lambert_definition("").values());
    QCOMPARE(label("lblLabels_1"), QString("Done gives this projection to the survey as \"Theirs\"."));
    save_picture("theirs");

    CoordSystem unusual = zone_definition("Old grid", 55);
    unusual.projection = 1;
    unusual.datum = 4326;
    unusual.zone_width = 0.0;
    current_coord_system() = unusual;
    QCOMPARE(store_survey_projection(), 0);
    open_dialog();
    QCOMPARE(editor()->values().datum, 4326);  // only a choice sets what a user would fill in
    QCOMPARE(editor()->values().zone_width, 0.0);
  }

  void buttons_change_the_list() {
    keep(zone_definition("MGA 55", 55));
    open_dialog();
    click("Command_modify_projections_2");
    QCOMPARE(interface_->take_messages(),
             Messages{"You have to select an existing projection to perform this action"});
    type("Text_zone_number", "54");
    (*interface_)->text_answers = {"Mine | of today"};
    click("Command_modify_projections_1");
    QCOMPARE(control<QComboBox>("Combo_coordsys")->currentText(), QString("Mine | of today"));
    QCOMPARE(control<QComboBox>("Combo_coordsys")->count(), 2);
    QVERIFY(shown("Text_zone_number"));
  }

  void the_import_asks_for_a_name_first() {
    QVERIFY(!Form_define_projection::define_projection(nullptr));  // cancelled
    QCOMPARE((*interface_)->prompts, Messages{"Enter a name for this projection"});
    (*interface_)->text_answers = {"Web"};
    QTimer::singleShot(0, this, [] {
      QWidget* const dialog = QApplication::activeModalWidget();
      dialog->findChild<QComboBox*>("Combo_projection")->setCurrentIndex(6);
      dialog->findChild<QPushButton*>("Command_done")->click();
    });
    QVERIFY(Form_define_projection::define_projection(nullptr));
    QCOMPARE(current_coord_system().name, std::string("Web"));
    QCOMPARE(current_coord_system().projection, 6);
  }
};

QTEST_MAIN(FormDefineProjectionTest)
#include "form_define_projection_test.moc"
