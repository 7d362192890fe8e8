#include "app/opening_page.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "platform/widgets/panel_controls.h"

namespace {

QLabel* add_text(QVBoxLayout* rows, const QString& text, double size) {
  auto* const label = new QLabel(text);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * size);
  label->setFont(font);
  label->setAlignment(Qt::AlignHCenter);
  rows->addWidget(label);
  return label;
}

/// Buttons beside one another in the middle of the page.
class ButtonRow {
 public:
  explicit ButtonRow(QVBoxLayout* rows) : row_(new QHBoxLayout) {
    row_->addStretch();
    rows->addLayout(row_);
  }
  ButtonRow(const ButtonRow&) = delete;
  ButtonRow& operator=(const ButtonRow&) = delete;
  ~ButtonRow() { row_->addStretch(); }

  QPushButton* add(const char* name, const char* caption, const char* tip) {
    auto* const button = named(new QPushButton(caption), name);
    button->setToolTip(tip);
    button->setMinimumWidth(button->fontMetrics().averageCharWidth() * 26);
    button->setMinimumHeight(button->fontMetrics().height() * 2);
    row_->addWidget(button);
    return button;
  }

 private:
  QHBoxLayout* row_;
};

/// A button that looks like a link.
QPushButton* make_link(const RecentSurvey& survey) {
  QString caption = survey.shown;
  auto* const link = new QPushButton(caption.replace('&', "&&"));
  link->setFlat(true);
  link->setAutoDefault(true);  // Enter opens it
  link->setCursor(Qt::PointingHandCursor);
  QFont underlined = link->font();
  underlined.setUnderline(!survey.is_gone);
  link->setFont(underlined);
  QPalette colours = link->palette();
  colours.setColor(QPalette::ButtonText, survey.is_gone
                                             ? colours.color(QPalette::Disabled, QPalette::ButtonText)
                                             : colours.color(QPalette::Link));
  link->setPalette(colours);
  link->setToolTip(plain_tool_tip((survey.is_gone ? "There is no file " : "Opens ") + survey.path));
  return link;
}

}  // namespace

OpeningPage::OpeningPage(QWidget* parent)
    : QWidget(parent), first_steps_(new QWidget(this)), recent_rows_(new QVBoxLayout) {
  auto* const rows = new QVBoxLayout(first_steps_);
  rows->addStretch(2);
  add_text(rows, "Brenlox", 2.4);
  add_text(rows, "Magnetotelluric field data, from field files to reduced curves", 1.15);
  rows->addSpacing(fontMetrics().height() * 2);
  add_text(rows, "Make a new survey database or open one to begin, or drop field files here.", 1.0);
  rows->addSpacing(fontMetrics().height() / 2);
  {
    ButtonRow row(rows);
    connect(
        row.add("Command_new_survey", "New survey...", "Makes an empty survey to import field files into"),
        &QPushButton::clicked, this, &OpeningPage::new_wanted);
    connect(row.add("Command_open_survey", "Open survey...", "Opens a survey that is there"),
            &QPushButton::clicked, this, &OpeningPage::open_wanted);
  }
  {
    ButtonRow row(rows);
    connect(row.add("Command_sample_survey", "Sample survey...",
                    "Makes a survey of two lines from field files that the program writes, to try it out"),
            &QPushButton::clicked, this, &OpeningPage::sample_wanted);
    connect(row.add("Command_tutorial", "Tutorial", "A first hour with the program (F1)"),
            &QPushButton::clicked, this, &OpeningPage::tutorial_wanted);
  }
  rows->addSpacing(fontMetrics().height());
  recent_heading_ = add_text(rows, "Recent surveys", 1.0);
  recent_rows_->setSpacing(0);
  recent_rows_->setAlignment(Qt::AlignHCenter);
  rows->addLayout(recent_rows_);
  rows->addStretch(3);
  show_recent({});

  auto* const page = new QVBoxLayout(this);
  page->addWidget(first_steps_);
}

void OpeningPage::set_picture(const QString& path) {
  picture_ = QFileInfo(path).isFile() ? QPixmap(path) : QPixmap();  // a pipe would be waited for
  first_steps_->setVisible(picture_.isNull());
  update();
}

void OpeningPage::show_recent(const std::vector<RecentSurvey>& surveys) {
  while (QLayoutItem* const item = recent_rows_->takeAt(0)) {
    item->widget()->hide();
    item->widget()->setObjectName({});
    item->widget()->deleteLater();  // it may have been clicked just now
    delete item;
  }
  for (std::size_t index = 0; index < surveys.size(); ++index) {
    const int place = static_cast<int>(index);
    QPushButton* const link = named(make_link(surveys[index]), QString("Command_recent_%1").arg(place));
    connect(link, &QPushButton::clicked, this, [this, place] { Q_EMIT recent_chosen(place); });
    recent_rows_->addWidget(link, 0, Qt::AlignHCenter);
  }
  recent_heading_->setVisible(!surveys.empty());
}

void OpeningPage::paintEvent(QPaintEvent* event) {
  QWidget::paintEvent(event);
  if (picture_.isNull()) {
    return;
  }
  QPainter painter(this);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  QRect place(QPoint(), picture_.size().scaled(size(), Qt::KeepAspectRatio));
  place.moveCenter(rect().center());
  painter.drawPixmap(place, picture_);
}
