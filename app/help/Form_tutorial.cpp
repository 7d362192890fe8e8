#include "app/help/Form_tutorial.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QImage>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBrowser>
#include <QVBoxLayout>
#include <algorithm>

#include "app/help/manual_pages.h"
#include "platform/widgets/panel_controls.h"

namespace {

/// Scales pictures down to the width of the page.
class Pages final : public QTextBrowser {
 protected:
  QVariant loadResource(int type, const QUrl& name) override {
    QVariant resource = QTextBrowser::loadResource(type, name);
    if (type != QTextDocument::ImageResource) {
      return resource;
    }
    constexpr int scroll_bar_and_margins = 48;
    QImage picture;
    if (!picture.loadFromData(resource.toByteArray())) {
      return resource;
    }
    const int room = std::max(width() - scroll_bar_and_margins, 1);
    return picture.width() > room ? picture.scaledToWidth(room, Qt::SmoothTransformation) : picture;
  }
};

}  // namespace

Form_tutorial::Form_tutorial(QWidget* parent)
    : QDialog(parent, Qt::Window), Text_tutorial_(named(new Pages, "Text_tutorial")) {
  setObjectName("Form_tutorial");
  setWindowTitle("Brenlox Tutorial");
  resize_to_fit(*this, {fontMetrics().averageCharWidth() * 130, fontMetrics().height() * 44});
  Text_tutorial_->setOpenLinks(false);
  Text_tutorial_->setAccessibleName("Page of the tutorial");
  Text_tutorial_->setToolTip("Arrows and the wheel turn the pages; a click on a link follows it");
  connect(Text_tutorial_, &QTextBrowser::anchorClicked, this, &Form_tutorial::open_link);

  auto* const back = named(new QPushButton("&Back"), "Command_back");
  back->setToolTip("The page before this one");
  back->setAutoDefault(false);
  back->setEnabled(false);
  connect(Text_tutorial_, &QTextBrowser::backwardAvailable, back, &QPushButton::setEnabled);
  connect(back, &QPushButton::clicked, Text_tutorial_, &QTextBrowser::backward);
  auto* const done = named(new QPushButton("&Done"), "Command_done");
  done->setToolTip("Closes the tutorial (Esc)");
  done->setDefault(true);
  connect(done, &QPushButton::clicked, this, &QDialog::accept);

  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(back);
  buttons->addStretch();
  buttons->addWidget(done);
  auto* const rows = new QVBoxLayout(this);
  rows->addWidget(Text_tutorial_);
  rows->addLayout(buttons);
  layout()->activate();  // pictures are loaded with the page, and need its width
  Text_tutorial_->setSource(manual_page("tutorial.md"), QTextDocument::MarkdownResource);
}

void Form_tutorial::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  Text_tutorial_->setFocus();  // keys turn the pages, also if a button had the focus when it was last shown
}

void Form_tutorial::open_link(const QUrl& link) {
  const QUrl page = Text_tutorial_->source().resolved(link);
  if (page.scheme() != "qrc") {
    QDesktopServices::openUrl(page);
  } else {
    Text_tutorial_->setSource(page);
  }
}
