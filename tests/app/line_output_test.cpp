// What the main window writes of a line: the document of its graphs, control files of Rho+, transfer
// functions.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <filesystem>

#include "app/tensor_windows.h"
#include "core/session_state.h"
#include "tests/app/line_survey_fixture.h"

class LineOutputTest : public QObject, private LineSurveyFixture {
  Q_OBJECT

 private:
  QUrl opened_;

 public Q_SLOTS:
  void take_opened(const QUrl& url) { opened_ = url; }

 private Q_SLOTS:
  void init() { open_line_survey(); }
  void cleanup() { close_line_survey(); }

  void a_document_says_where_it_is_and_takes_no_place_of_the_survey() {
    auto* const print = window_->findChild<QAction*>("menu_line_document");
    const std::string path = folder_->path("line.pdf");
    (*interface_)->path_answers = {path};
    (*interface_)->stop = [] { return true; };
    print->trigger();
    QCOMPARE(interface_->take_messages(), std::vector<std::string>{});
    QVERIFY(!std::filesystem::exists(path));

    (*interface_)->stop = [] { return false; };
    (*interface_)->path_answers = {path};
    print->trigger();
    QCOMPARE(interface_->take_messages(), std::vector<std::string>{});
    const auto* const told = control<QLabel>("Label_work");
    QVERIFY(told->isVisible());
    QVERIFY(
        told->toolTip().contains(QString::fromStdString("The graphs of line 200E are written to " + path)));
    QDesktopServices::setUrlHandler("file", this, "take_opened");
    Q_EMIT control<QLabel>("Label_work")->linkActivated("folder");
    QDesktopServices::unsetUrlHandler("file");
    QCOMPARE(opened_, QUrl::fromLocalFile(QString::fromStdString(folder_->path(".")))
                          .adjusted(QUrl::NormalizePathSegments | QUrl::StripTrailingSlash));
    QCOMPARE(file_contents(path).substr(0, 5), std::string("%PDF-"));

    (*interface_)->path_answers = {session().database_file};
    (*interface_)->yes_no_answers = {true};
    print->trigger();
    const std::vector<std::string> messages = interface_->take_messages();
    QCOMPARE(messages.size(), std::size_t{1});
    QVERIFY2(messages[0].ends_with(" is one of the input files and is not written over"),
             messages[0].c_str());
    QVERIFY(file_contents(session().database_file).starts_with("SQLite format 3"));
  }

  void the_output_panel_writes_a_line() {
    window_->findChild<QAction*>("menu_output_data_0")->trigger();
    QCOMPARE(interface_->take_messages(), std::vector<std::string>{});
    QVERIFY(control<QWidget>("Frame_rhoplus")->isVisible());
    QVERIFY(control<QPushButton>("Command_choose_folder")->isVisible());
    // What the main window shows is chosen, and only what the survey has is listed.
    QCOMPARE(control<QComboBox>("Combo_output_linelist")->currentText().toStdString(),
             session().current_line);
    auto* const references = control<QComboBox>("Combo_output_datatype");
    QCOMPARE(references->count(), 1);
    QCOMPARE(references->currentData().toInt(), session().current_reference_type);
    QVERIFY(control<QComboBox>("Combo_output_dipole")->currentIndex() >= 0);
    QCOMPARE(control<QComboBox>("Combo_output_component")->currentText().toStdString(),
             session().current_data_type);
    QCOMPARE(control<QLineEdit>("Text_rhoplus_output_directory")->text().toStdString(),
             folder_->folder().string());
    control<QLineEdit>("Text_rhoplus_output_directory")->setText("rho");
    QTest::mouseClick(control<QPushButton>("Command_output_data"), Qt::LeftButton);
    const std::vector<std::string> messages = interface_->take_messages();
    QCOMPARE(messages.size(), std::size_t{1});
    QVERIFY2(messages[0].starts_with("Data output completed. 3 control files with "), messages[0].c_str());
    QVERIFY2(messages[0].ends_with(" written to " + folder_->path("rho") + ", with tmd_run.bat"),
             messages[0].c_str());
    QCOMPARE(file_contents(folder_->path("rho/tmd_run.bat")),
             std::string("rhopp < tmd_100.dat\r\nrhopp < tmd_200.dat\r\nrhopp < tmd_300.dat\r\n"));
    QVERIFY(control<QLabel>("Label_numout")->text() != "0");
    control<QLineEdit>("Text_rhoplus_output_directory")->setText("rho/tmd_100.dat");  // no folder
    QTest::mouseClick(control<QPushButton>("Command_output_data"), Qt::LeftButton);
    QCOMPARE(interface_->take_messages().size(), std::size_t{1});
    QCOMPARE(control<QLabel>("Label_numout")->text(), QString("0"));
    window_->findChild<QAction*>("menu_output_data_1")->trigger();
    QVERIFY(!control<QWidget>("Frame_rhoplus")->isVisible());
    QVERIFY2(!control<QPushButton>("Command_choose_folder")->isVisible(), "it is chosen with the file");
  }

  void transfer_functions_begin_with_the_chosen_strike() {
    Q_EMIT window_->findChild<TensorWindows*>()->strike_chosen(25.04);
    QString typed;
    QTimer::singleShot(0, window_.get(), [&] {
      QWidget* const dialog = QApplication::activeModalWidget();
      QVERIFY(dialog != nullptr);
      typed = dialog->findChild<QLineEdit*>("Text_export_rotation")->text();
      dialog->close();
    });
    window_->findChild<QAction*>("menu_transfer_functions")->trigger();
    QCOMPARE(typed, QString("25.0"));
  }

  void the_output_panel_rotates_to_the_chosen_strike() {
    window_->findChild<QAction*>("menu_output_data_0")->trigger();
    Q_EMIT window_->findChild<TensorWindows*>()->strike_chosen(25.04);
    auto* const rotate = control<QCheckBox>("Check_rotate_to_strike");
    auto* const strike = control<QLineEdit>("Text_rotate_to_strike");
    auto* const data_type = control<QComboBox>("Combo_output_component");
    QVERIFY(!rotate->isChecked() && !strike->isEnabled());
    QCOMPARE(strike->text(), QString("25.0"));
    QCOMPARE(data_type->currentText(), QString("ExHy"));
    rotate->setChecked(true);
    QVERIFY(strike->isEnabled());
    QCOMPARE(data_type->currentText(), QString("ExHy, electric field along the strike (TE)"));
    QTest::mouseClick(control<QPushButton>("Command_output_data"), Qt::LeftButton);
    strike->setText("N25E");
    QTest::mouseClick(control<QPushButton>("Command_output_data"), Qt::LeftButton);
    QCOMPARE(
        interface_->take_messages(),
        (std::vector<std::string>{
            "No station of line 200E can be rotated, and nothing was written. Left out for want of a "
            "tensor: Station 100: there is no ExHx, EyHx, EyHy; Station 200: there is no ExHx, EyHx, EyHy; "
            "Station 300: there is no ExHx, EyHx, EyHy",
            "The strike to rotate to must be from -180 to 360 degrees"}));
    window_->findChild<QAction*>("menu_output_data_1")->trigger();
    QCOMPARE(data_type->currentText(), QString("ExHy"));
  }
};

QTEST_MAIN(LineOutputTest)
#include "line_output_test.moc"
