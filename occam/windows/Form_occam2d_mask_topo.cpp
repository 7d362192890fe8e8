#include "occam/windows/Form_occam2d_mask_topo.h"

#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <stdexcept>

#include "core/file_names.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "occam/ground/masked_run.h"
#include "platform/widgets/panel_controls.h"
#include "ui_Form_occam2d_mask_topo.h"

using Module_occam::MaskStyle;
using Module_occam::Triangle;

namespace {

enum Page { model_page, topo_page, mesh_page };

/// The beginning of a file, enough to see its layout. Empty if there is no such file.
QString beginning_of(const QString& path) {
  constexpr qint64 enough = 1 << 20;  // bytes
  if (!QFileInfo(path).isFile()) {
    return {};
  }
  QFile file(path);
  if (!file.open(QFile::ReadOnly)) {
    throw std::runtime_error(file.errorString().toStdString());
  }
  const QByteArray bytes = file.read(enough);
  const QString text =
      QString::fromStdString(text_from_field_file({bytes.data(), static_cast<std::size_t>(bytes.size())}));
  return file.atEnd() ? text : text + "\n(the first 1 MB of the file)";
}

/// Shows how a file begins, or why there is nothing to see.
void show_beginning(QPlainTextEdit& view, const QString& path) {
  if (!path.isEmpty()) {
    view.setPlaceholderText(QFileInfo(path).isFile() ? "The file is empty" : "There is no such file");
  }
  view.setPlainText(beginning_of(path));
}

/// Begins in the folder of a file that has been chosen already.
std::string select_file(const char* title, const char* filter, const QString& chosen) {
  return user_interface().select_file_to_open(
      {title, filter, "", Module_util::directory_of(chosen.toStdString()), ""});
}

QString grouped(std::int64_t count) {
  return QLocale(QLocale::English).toString(static_cast<qlonglong>(count));
}

}  // namespace

Form_occam2d_mask_topo::Form_occam2d_mask_topo(QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::Form_occam2d_mask_topo>()) {
  ui_->setupUi(this);
  for (QWidget* const part : {ui_->Scroll_mesh_choices->viewport(), ui_->Frame_mesh_choices}) {
    part->setAutoFillBackground(false);  // the page's own colour lies behind the choices
  }
  resize_to_fit(*this, {1100, 700});
  const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  for (QPlainTextEdit* const text : {ui_->Text_model_file, ui_->Text_data_file, ui_->Text_mesh_mask}) {
    text->setFont(fixed);
  }
  ui_->Splitter_mesh->setStretchFactor(0, 3);
  ui_->Splitter_mesh->setStretchFactor(1, 2);
  ui_->Tab_occam_files->setCurrentIndex(model_page);
  connect_files();
  connect_entries();
  connect_mesh();
  ui_->Text_occam_model_file->setFocus();
}

Form_occam2d_mask_topo::~Form_occam2d_mask_topo() = default;

void Form_occam2d_mask_topo::connect_files() {
  connect(ui_->Command_select_occam_model_file, &QPushButton::clicked, this,
          &Form_occam2d_mask_topo::select_model_file);
  connect(ui_->Command_select_data_location_file, &QPushButton::clicked, this,
          &Form_occam2d_mask_topo::select_data_file);
  connect(ui_->Text_occam_model_file, &QLineEdit::editingFinished, this,
          [this] { display_model_text(ui_->Text_occam_model_file->text()); });
  connect(ui_->Text_data_locations, &QLineEdit::editingFinished, this,
          [this] { display_data_file(ui_->Text_data_locations->text()); });
  connect(ui_->Tab_occam_files, &QTabWidget::currentChanged, this, &Form_occam2d_mask_topo::show_page);
}

void Form_occam2d_mask_topo::connect_entries() {
  for (QLineEdit* const control : {ui_->Text_occam_topo_nhead, ui_->Text_occam_topo_nstep,
                                   ui_->Text_occam_topo_xpos, ui_->Text_occam_topo_dtmpos}) {
    connect(control, &QLineEdit::editingFinished, this, [control, good = control->text()]() mutable {
      if (Module_occam::is_position(control->text().toStdString())) {
        good = control->text();
      }
      control->setText(good);
    });
  }
  connect(ui_->Text_datum_elevation, &QLineEdit::editingFinished, this, [this] {
    if (const std::string text = ui_->Text_datum_elevation->text().toStdString(); is_numeric(text)) {
      mask_.choices.datum_elevation = numeric_value(text);
    }
    ui_->Text_datum_elevation->setText(QString::fromStdString(plain_text(mask_.choices.datum_elevation)));
  });
  connect(ui_->Command_load_locations, &QPushButton::clicked, this, &Form_occam2d_mask_topo::load_locations);
}

void Form_occam2d_mask_topo::connect_mesh() {
  for (QRadioButton* const option :
       {ui_->Option_mask_style_0, ui_->Option_mask_style_1, ui_->Option_mask_display_0,
        ui_->Option_mask_display_1, ui_->Option_triangle_0, ui_->Option_triangle_1, ui_->Option_triangle_2,
        ui_->Option_triangle_3}) {
    connect(option, &QRadioButton::toggled, this, [this](bool chosen) {
      if (chosen) {
        redraw();
      }
    });
  }
  connect(ui_->Check_whole_mesh, &QCheckBox::toggled, ui_->Picture_mesh, &MeshPicture::set_whole_mesh);
  connect(ui_->Command_save_mesh, &QPushButton::clicked, this, &Form_occam2d_mask_topo::save_mesh);
  connect(ui_->Command_done, &QPushButton::clicked, this, &QDialog::accept);
}

void Form_occam2d_mask_topo::select_model_file() {
  const std::string path =
      select_file("Select the Occam model file",
                  "Model Files (inmodel;*.mod;*.txt)|inmodel;*.mod;*.txt|All files (*.*)|*.*",
                  ui_->Text_occam_model_file->text());
  if (!path.empty()) {
    ui_->Text_occam_model_file->setText(QString::fromStdString(path));
    display_model_text(ui_->Text_occam_model_file->text());
  }
}

void Form_occam2d_mask_topo::select_data_file() {
  (void)trap_errors("An error occurred while selecting the topo file: ", [this] {
    const QString chosen = ui_->Text_data_locations->text();
    const std::string path =
        select_file("Select the topo data file",
                    "Data Files (*.dat;*.xyz;*.csv;*.txt)|*.dat;*.xyz;*.csv;*.txt|All files (*.*)|*.*",
                    chosen.isEmpty() ? ui_->Text_occam_model_file->text() : chosen);
    if (!path.empty()) {
      ui_->Text_data_locations->setText(QString::fromStdString(path));
      display_data_file(ui_->Text_data_locations->text());
    }
  });
}

void Form_occam2d_mask_topo::display_model_text(const QString& path) {
  (void)trap_errors("An error occurred while displaying the model file: ",
                    [&] { show_beginning(*ui_->Text_model_file, path); });
}

void Form_occam2d_mask_topo::display_data_file(const QString& path) {
  (void)trap_errors("An error occurred while selecting the topo file: ",
                    [&] { show_beginning(*ui_->Text_data_file, path); });
}

void Form_occam2d_mask_topo::load_locations() {
  const BusyPointer busy;
  const auto text_of = [](const QLineEdit* control) { return control->text().toStdString(); };
  if (Module_occam::load_locations({text_of(ui_->Text_data_locations), text_of(ui_->Text_occam_topo_nhead),
                                    text_of(ui_->Text_occam_topo_nstep), text_of(ui_->Text_occam_topo_xpos),
                                    text_of(ui_->Text_occam_topo_dtmpos)},
                                   mask_.topo) != 0) {
    return;
  }
  mask_.choices.datum_elevation = mask_.topo.highest_elevation();
  ui_->Text_number_locations->setText(QString::number(mask_.topo.points.station.size()));
  ui_->Label_left_out->setText(QString::fromStdString(left_out_text(mask_.topo.left_out)));
  ui_->Text_datum_elevation->setText(QString::fromStdString(plain_text(mask_.choices.datum_elevation)));
  ui_->Text_datum_elevation->setEnabled(true);
}

void Form_occam2d_mask_topo::show_page(int page) {
  if (page == mesh_page) {
    ui_->Tab_occam_files->setCurrentIndex(display_occam_model(ui_->Text_occam_model_file->text()));
  }
}

int Form_occam2d_mask_topo::display_occam_model(const QString& path) {
  const BusyPointer busy;
  int page = model_page;
  (void)trap_errors("An error occurred while displaying the new tab: ", [&] {
    if (Module_occam::read_model_to_mask(path.toStdString(), mask_) != 0) {
      return;
    }
    page = topo_page;
    read_choices();
    if (Module_occam::apply_topo_mask(mask_) != 0) {
      return;
    }
    ui_->Picture_mesh->reset_zoom();
    display_mesh();
    page = mesh_page;
  });
  return page;
}

void Form_occam2d_mask_topo::read_choices() {
  mask_.choices.style =
      ui_->Option_mask_style_1->isChecked() ? MaskStyle::triangular : MaskStyle::rectangular;
  mask_.choices.free_triangle = ui_->Option_triangle_0->isChecked()   ? Triangle::right
                                : ui_->Option_triangle_2->isChecked() ? Triangle::left
                                : ui_->Option_triangle_3->isChecked() ? Triangle::top
                                                                      : Triangle::bottom;
  ui_->Frame_triangle->setEnabled(mask_.choices.style == MaskStyle::triangular);
}

void Form_occam2d_mask_topo::redraw() {
  read_choices();
  if (!mask_.masked.empty() && Module_occam::apply_topo_mask(mask_) == 0) {
    display_mesh();
  }
}

void Form_occam2d_mask_topo::display_mesh() {
  (void)trap_errors("An error occurred while displaying the mesh: ", [this] {
    const auto& as_read = mask_.model.mesh.mesh_code;
    const auto& shown = ui_->Option_mask_display_0->isChecked() ? mask_.masked : as_read;
    ui_->Picture_mesh->show_mesh(mask_, shown);
    ui_->Text_mesh_mask->setPlainText(QString::fromStdString(Module_occam::mesh_listing(mask_.model, shown)));
    ui_->Label_counts->setText(
        QString("Free triangles: %1\n(%2 as read)\n\nBlocks with free triangles: %3 (%4 as read). The start "
                "file of "
                "the inversion must list as many parameters.\n\nMasked cells are air.")
            .arg(grouped(Module_occam::free_triangles(mask_.masked)),
                 grouped(Module_occam::free_triangles(as_read)),
                 grouped(free_blocks(mask_.model, mask_.masked)), grouped(mask_.model.num_free_params)));
  });
}

void Form_occam2d_mask_topo::save_mesh() {
  const std::string path = user_interface().select_file_to_create(
      {"Select the Occam mesh file to create", "Occam mesh Files (*.msh)|*.msh|All files (*.*)|*.*", "*.msh",
       Module_util::directory_of(ui_->Text_occam_model_file->text().toStdString()), "mesh_topo_mask.msh"});
  if (!path.empty() && Module_occam::may_write_mesh(path)) {
    Module_occam::MaskedRun run;
    (void)Module_occam::write_masked_mesh(path, mask_, run);
  }
}
