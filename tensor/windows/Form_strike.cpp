#include "tensor/windows/Form_strike.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "core/file_names.h"
#include "core/finished_work.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "core/user_interface.h"
#include "database/sites.h"
#include "platform/graph/painted_file.h"
#include "platform/widgets/panel_controls.h"
#include "tensor/windows/shown_line.h"
#include "tensor/windows/strike_controls.h"
#include "tensor/windows/strike_figures.h"
#include "tensor/windows/strike_table.h"

using namespace Module_tensor;

namespace {

constexpr QSize design_size(1240, 740);
/// Clicks on points follow each other quickly: the main window draws first.
constexpr int reload_milliseconds = 60;

QPushButton* make_button(const QString& name, const QString& text) {
  auto* const button = named(new QPushButton(text), name);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

Form_strike::Form_strike(ShownLine& shown, QWidget* parent)
    : QDialog(parent, Qt::Window),
      shown_(shown),
      controls_(new StrikeControls),
      roses_(new RosePicture),
      dimensions_(new DimensionPicture),
      table_(new StrikeTable),
      strike_(named(new QLabel, "Label_strike")),
      sentences_(named(new QLabel, "Label_sentences")),
      status_(make_heading("Label_status")),
      use_(make_button("Command_use_strike", "&Use this strike")),
      use_other_(make_button("Command_use_other", "Use the &other one")),
      ey_(make_button("Command_ey_sign", "Sign of &Ey")),
      save_(make_button("Command_save_picture", "Sa&ve picture")),
      reload_soon_(new QTimer(this)) {
  setObjectName("Form_strike");
  lay_out();
  connect_controls();
  reload();
}

void Form_strike::lay_out() {
  QFont bold = strike_->font();
  bold.setBold(true);
  bold.setPointSizeF(bold.pointSizeF() * 1.2);
  strike_->setFont(bold);
  strike_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  sentences_->setWordWrap(true);
  sentences_->setTextFormat(Qt::PlainText);
  sentences_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* const below = new QSplitter(Qt::Horizontal);
  below->addWidget(table_);
  below->addWidget(dimensions_);
  below->setStretchFactor(0, 3);
  below->setStretchFactor(1, 2);
  below->setSizes({3 * design_size.width() / 5, 2 * design_size.width() / 5});
  auto* const parts = new QSplitter(Qt::Vertical);
  parts->addWidget(roses_);
  parts->addWidget(below);
  for (QSplitter* const splitter : {below, parts}) {
    splitter->setChildrenCollapsible(false);
  }
  parts->setStretchFactor(0, 1);
  parts->setStretchFactor(1, 1);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(6, 6, 6, 4);
  rows->setSpacing(4);
  rows->addWidget(controls_);
  auto* const result = new QHBoxLayout;
  result->addWidget(strike_);
  result->addStretch(1);
  result->addWidget(use_);
  result->addWidget(use_other_);
  rows->addLayout(result);
  rows->addWidget(sentences_);
  rows->addWidget(parts, 1);
  add_buttons(*rows);
  resize_to_fit(*this, design_size);
}

void Form_strike::add_buttons(QVBoxLayout& rows) {
  auto* const signs = new QMenu(ey_);
  signs->addAction("By &rule", this, [this] { set_ey_sign(Module_database::ey_sign_by_rule); });
  signs->addAction("As &measured", this, [this] { set_ey_sign(Module_database::ey_sign_as_measured); });
  signs->addAction("&Turned", this, [this] { set_ey_sign(Module_database::ey_sign_turned); });
  ey_->setMenu(signs);
  ey_->setToolTip("Of the stations that are selected in the table");
  auto* const pictures = new QMenu(save_);
  pictures->addAction("Roses as P&NG...", this, [this] { save_picture(Picture::roses, "png"); });
  pictures->addAction("Roses as P&DF...", this, [this] { save_picture(Picture::roses, "pdf"); });
  pictures->addAction("Dimensions as PN&G...", this, [this] { save_picture(Picture::dimensions, "png"); });
  pictures->addAction("Dimensions as PD&F...", this, [this] { save_picture(Picture::dimensions, "pdf"); });
  save_->setMenu(pictures);
  save_->setToolTip("Writes the roses or the dimensions as PNG or PDF");
  auto* const copy = make_button("Command_copy_table", "&Copy table");
  copy->setToolTip("Puts the table on the clipboard, to be pasted into a spreadsheet");
  connect(copy, &QPushButton::clicked, table_, &StrikeTable::copy_all);
  auto* const done = make_button("Command_done", "&Done");
  done->setToolTip("Closes this window");
  connect(done, &QPushButton::clicked, this, &QDialog::accept);
  auto* const row = new QHBoxLayout;
  row->addWidget(ey_);
  row->addWidget(copy);
  row->addWidget(save_);
  row->addWidget(status_, 1);
  row->addWidget(done);
  rows.addLayout(row);
}

void Form_strike::connect_controls() {
  reload_soon_->setSingleShot(true);
  reload_soon_->setInterval(reload_milliseconds);
  connect(reload_soon_, &QTimer::timeout, this, &Form_strike::reload);
  connect(&shown_, &ShownLine::line_changed, reload_soon_, qOverload<>(&QTimer::start));
  connect(&shown_, &ShownLine::station_changed, this, &Form_strike::mark_station);
  connect(controls_, &StrikeControls::changed, this, &Form_strike::refresh);
  connect(controls_, &StrikeControls::dimensions_changed, this, [this] {
    show_dimensions();
    mark_station();
  });
  connect(table_, &StrikeTable::station_chosen, this,
          [this](double station) { shown_.choose(station, 0.0); });
  connect(table_, &QTableWidget::itemSelectionChanged, this,
          [this] { ey_->setEnabled(!table_->selected_stations().empty()); });
  connect(dimensions_, &DimensionPicture::chosen, this,
          [this](double station, double frequency) { shown_.choose(station, frequency); });
  connect(dimensions_, &DimensionPicture::hovered, status_, &QLabel::setText);
  connect(use_, &QPushButton::clicked, this, [this] { hand_on(summary_->best.strike.value); });
  connect(use_other_, &QPushButton::clicked, this, [this] { hand_on(summary_->best.alternative); });
}

void Form_strike::reload() {
  const LineTensors& line = shown_.line();
  stations_ = strike_stations(line.stations, session().frequencies);
  summaries_.forget();
  line_azimuth_.reset();
  if (!stations_.empty()) {
    static_cast<void>(trap_errors("An error occurred while reading the places of the line: ",
                                  [&] { line_azimuth_ = line_azimuth(line.curves.choice.line); }));
  }
  setWindowTitle(stations_.empty() ? QString("Strike") : "Strike: line " + qt_text(line.curves.choice.line));
  controls_->take_data_band(whole_band(stations_));
  refresh();
}

void Form_strike::refresh() {
  question_ = controls_->question();
  summary_ = question_ ? summaries_.summary(stations_, *question_) : std::nullopt;
  show_strike();
  show_pictures();
  table_->show_stations(stations_, summary_);
  ey_->setEnabled(!table_->selected_stations().empty());
  mark_station();
}

void Form_strike::mark_station() {
  table_->mark_station(shown_.station_index());
  dimensions_->show_station(shown_.station_index());
}

/// Why there is no strike, or no rose.
QString Form_strike::note() const {
  if (stations_.empty()) {
    return "There is no line to show: choose a station in the main window";
  }
  if (!question_) {
    return "The band isn't a pair of frequencies";
  }
  if (!summary_) {
    return "No station of the line has all four elements of a tensor, or a tipper, at a frequency "
           "that is switched on";
  }
  if (summary_->best.used + summary_->best.left_out == 0) {
    return question_->choices.method == numerics::impedance::StrikeMethod::tipper ? "No tipper in this band"
                                                                                  : "No tensor in this band";
  }
  return summary_->best.strike.has_value() ? QString() : QString("No point within the limits in this band");
}

std::vector<std::string> Form_strike::sentences() const {
  std::vector<std::string> said =
      direction_sentences(summary_->best.strike.value, line_azimuth_, summary_->votes);
  std::ranges::copy(data_sentences(*summary_, *question_), std::back_inserter(said));
  const auto unknown = std::ranges::count_if(stations_, [](const StrikeStation& station) {
    return !station.tensors.points.empty() && !station.tensors.axes_known;
  });
  if (unknown > 0) {
    said.push_back("The azimuth of Hx isn't known at " + std::to_string(unknown) +
                   (unknown == 1 ? " station" : " stations") + ": x counts as north there.");
  }
  const auto refused = std::ranges::count_if(
      stations_, [](const StrikeStation& station) { return !station.tensors.refusal.empty(); });
  if (refused > 0) {
    said.push_back(std::to_string(refused) + (refused == 1 ? " station has" : " stations have") +
                   " no tensor, see the remarks.");
  }
  return said;
}

void Form_strike::show_strike() {
  const bool known = summary_ && summary_->best.strike.has_value();
  use_->setEnabled(known);
  use_other_->setEnabled(known);
  if (!known) {
    strike_->setText(note());
    sentences_->setText(summary_ && question_ ? qt_text(data_sentences(*summary_, *question_).front())
                                              : QString());
    use_->setText("&Use this strike");
    use_other_->setText("Use the &other one");
    return;
  }
  const auto& best = summary_->best;
  strike_->setText("Strike " + qt_text(strike_text(best.strike)).replace("+-", "±") + "   or   " +
                   qt_text(bearing_text(best.alternative) + ", " + angle_text(best.alternative)) +
                   (best.strike.has_error() ? "" : "   (a single station: no error)"));
  use_->setText("&Use this strike (" + qt_text(bearing_text(best.strike.value)) + ")");
  use_other_->setText("Use the &other one (" + qt_text(bearing_text(best.alternative)) + ")");
  QStringList said;
  for (const std::string& sentence : sentences()) {
    said.append(qt_text(sentence));
  }
  sentences_->setText(said.join("  "));
}

void Form_strike::show_pictures() {
  RoseFigure roses;
  if (question_ && summary_) {
    roses = rose_figure(shown_.line().curves.choice.line, *question_, *summary_, line_azimuth_);
  }
  roses.note = note();
  roses_->show_figure(std::move(roses));
  show_dimensions();
}

void Form_strike::show_dimensions() {
  DimensionFigure dimensions;
  if (question_) {
    dimensions =
        dimension_figure(shown_.line().curves.choice.line, *question_, stations_, controls_->limits());
  }
  dimensions.note = stations_.empty() || !question_ ? note() : "No station of the line has a phase tensor";
  dimensions_->show_figure(std::move(dimensions));
}

void Form_strike::hand_on(double strike) {
  shown_.use_strike(strike);
  status_->setText("Rotation to strike will turn to " + qt_text(angle_text(strike)) + " degrees (" +
                   qt_text(bearing_text(strike)) + ")");
}

void Form_strike::set_ey_sign(std::int32_t sign) {
  const std::vector<double> stations = table_->selected_stations();
  const std::string line = shown_.line().curves.choice.line;
  const int status = trap_errors("The sign of Ey can't be stored: ", [&] {
    for (const double station : stations) {
      Module_database::set_ey_sign(line, station, sign);
    }
  });
  if (status == 0 || stations.size() > 1) {
    shown_.announce_edit(stations.size() == 1 ? std::optional(stations.front()) : std::nullopt);
  }
}

void Form_strike::save_picture(Picture picture, const char* ending) {
  const bool of_roses = picture == Picture::roses;
  std::string path = Module_util::directory_of(session().database_file) + shown_.line().curves.choice.line +
                     (of_roses ? "_strike." : "_dimensions.") + ending;
  const std::string filter =
      ending == std::string("pdf") ? "PDF documents (*.pdf)|*.pdf" : "PNG pictures (*.png)|*.png";
  if (Module_util::select_output_file(path, "Save the picture", filter) != 0 || path.empty()) {
    return;
  }
  const auto paint = [this, of_roses](QPainter& painter, const QRectF& area) {
    if (of_roses) {
      paint_roses(painter, area, roses_->figure());
    } else {
      paint_dimensions(painter, area, dimensions_->figure());
    }
  };
  const QSize size = of_roses ? roses_->size() : dimensions_->size();
  if (trap_errors("An error occurred while saving the picture: ",
                  [&] { graph::write_painted(qt_text(path), windowTitle(), size, paint); }) == 0) {
    status_->setText("The picture is written to " + qt_text(path));
    Module_Brenlox::tell_finished("The picture is written to " + path, path);
  }
}
