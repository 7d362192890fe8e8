#include "app/help/Form_tutorial.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBrowser>
#include <QUrlQuery>
#include <QVBoxLayout>
#include <algorithm>

#include "app/help/manual_pages.h"
#include "app/help/page_search.h"
#include "platform/widgets/panel_controls.h"

namespace {

/// Where the page of what was found stands in the history of pages.
constexpr const char* found_scheme = "search";
constexpr const char* words_item = "words";

/// Words may hold anything, also what means something in an address.
QUrl page_of_search(const QString& words) {
  QUrlQuery query;
  query.addQueryItem(words_item, QString::fromLatin1(QUrl::toPercentEncoding(words)));
  QUrl page;
  page.setScheme(found_scheme);
  page.setPath("found");
  page.setQuery(query);
  return page;
}

QString words_of(const QUrl& page) { return QUrlQuery(page).queryItemValue(words_item, QUrl::FullyDecoded); }

/// Scales pictures down to the width of the page, and lists what a search finds.
class Pages final : public QTextBrowser {
 protected:
  QVariant loadResource(int type, const QUrl& name) override {
    if (name.scheme() == found_scheme) {
      const QString words = words_of(name);
      return page_of_found(words, search_pages(words));
    }
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

/// Enter searches, and doesn't press the window's button.
class SearchText final : public QLineEdit {
 protected:
  void keyPressEvent(QKeyEvent* event) override {
    QLineEdit::keyPressEvent(event);
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
      event->accept();
    }
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

  auto* const buttons = new QHBoxLayout;
  add_buttons(*buttons);
  auto* const rows = new QVBoxLayout(this);
  rows->addWidget(Text_tutorial_);
  rows->addLayout(buttons);
  layout()->activate();  // pictures are loaded with the page, and need its width
  show_page("tutorial.md");
}

void Form_tutorial::add_buttons(QBoxLayout& row) {
  const auto add = [&row](const char* name, const char* caption, const char* tip) {
    auto* const button = named(new QPushButton(caption), name);
    button->setToolTip(tip);
    button->setAutoDefault(false);
    row.addWidget(button);
    return button;
  };
  auto* const back = add("Command_back", "&Back", "The page before this one");
  back->setEnabled(false);
  connect(Text_tutorial_, &QTextBrowser::backwardAvailable, back, &QPushButton::setEnabled);
  connect(back, &QPushButton::clicked, Text_tutorial_, &QTextBrowser::backward);
  connect(add("Command_tutorial_page", "&Tutorial", "A first hour with the program"), &QPushButton::clicked,
          this, [this] { show_page("tutorial.md"); });
  connect(add("Command_keys_page", "&Keys", "All keys of all windows"), &QPushButton::clicked, this,
          [this] { show_page("keys.md"); });
  row.addStretch();
  Text_search_ = named<QLineEdit>(new SearchText, "Text_search");
  Text_search_->setToolTip("Words to look for in all pages; Enter lists the sections that have them all");
  Text_search_->setMinimumWidth(fontMetrics().averageCharWidth() * 28);
  add_labelled(row, "&Search", Text_search_);
  connect(Text_search_, &QLineEdit::returnPressed, this, &Form_tutorial::search);
  row.addStretch();
  auto* const done = add("Command_done", "&Done", "Closes the window (Esc)");
  done->setDefault(true);
  connect(done, &QPushButton::clicked, this, &QDialog::accept);
}

void Form_tutorial::show_page(const QString& name) {
  Text_tutorial_->setSource(manual_page(name), QTextDocument::MarkdownResource);
}

void Form_tutorial::search() {
  const QString words = Text_search_->text().simplified();
  if (!words.isEmpty()) {
    Text_tutorial_->setSource(page_of_search(words), QTextDocument::HtmlResource);
    Text_tutorial_->setFocus();
  }
}

void Form_tutorial::show_found(std::size_t index) {
  const QString words = words_of(Text_tutorial_->source());
  const std::vector<FoundSection> found = search_pages(words);
  if (index >= found.size()) {
    return;
  }
  Text_tutorial_->setSource(found[index].page, QTextDocument::MarkdownResource);
  if (!found[index].heading.isEmpty()) {
    Text_tutorial_->find(found[index].heading);
  }
  Text_tutorial_->find(words.section(' ', 0, 0));  // marks it and brings it into view
}

void Form_tutorial::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  Text_tutorial_->setFocus();  // keys turn the pages, also if a button had the focus when it was last shown
}

void Form_tutorial::open_link(const QUrl& link) {
  const QUrl page = Text_tutorial_->source().resolved(link);
  if (page.scheme() == "found") {
    show_found(page.path().toULongLong());
  } else if (page.scheme() != "qrc") {
    QDesktopServices::openUrl(page);
  } else {
    Text_tutorial_->setSource(page);
  }
}
