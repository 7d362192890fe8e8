#include "app/help/page_search.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringList>
#include <algorithm>
#include <iterator>
#include <utility>

#include "app/help/manual_pages.h"

namespace {

/// Without the marks of Markdown, as it is read on the page.
QString plain_line(const QString& line) {
  static const QRegularExpression links("!?\\[([^\\]]*)\\]\\([^)]*\\)");
  QString plain = line;
  plain.replace(links, "\\1");
  return plain.remove(QRegularExpression("[`*#|]")).simplified();
}

bool holds_all(const QString& text, const QStringList& words) {
  return std::ranges::all_of(words,
                             [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

bool holds_any(const QString& text, const QStringList& words) {
  return std::ranges::any_of(words,
                             [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

class PageSearch {
 public:
  PageSearch(QUrl page, const QStringList& words) : page_(std::move(page)), words_(words) {}

  std::vector<FoundSection> run(const QString& markdown) {
    for (const QString& line : markdown.split('\n')) {
      if (line.startsWith("# ")) {
        title_ = plain_line(line);
      } else if (line.startsWith("##")) {
        end_section();
        heading_ = plain_line(line);
      }
      text_ += ' ' + plain_line(line);
      lines_.append(plain_line(line));
    }
    end_section();
    return std::move(found_);
  }

 private:
  void end_section() {
    if (holds_all(text_, words_)) {
      const auto line =
          std::ranges::find_if(lines_, [this](const QString& each) { return holds_any(each, words_); });
      found_.push_back({page_, title_, heading_, line == lines_.end() ? QString() : *line});
    }
    text_.clear();
    lines_.clear();
  }

  QUrl page_;
  const QStringList& words_;
  QString title_;
  QString heading_;
  QString text_;
  QStringList lines_;
  std::vector<FoundSection> found_;
};

}  // namespace

std::vector<FoundSection> search_pages(const QString& text) {
  const QStringList words = text.simplified().split(' ', Qt::SkipEmptyParts);
  std::vector<FoundSection> all;
  if (words.isEmpty()) {
    return all;
  }
  for (const QString& name : manual_page_names()) {
    const QUrl page = manual_page(name);
    QFile file(":" + page.path());
    if (file.open(QFile::ReadOnly)) {
      std::ranges::move(PageSearch(page, words).run(QString::fromUtf8(file.readAll())),
                        std::back_inserter(all));
    }
  }
  return all;
}

QString page_of_found(const QString& words, const std::vector<FoundSection>& found) {
  QString page = "<h2>" +
                 (found.empty() ? QString("Nothing was found of \u201c") : QString("Found: \u201c")) +
                 words.toHtmlEscaped() + "\u201d</h2>";
  for (std::size_t index = 0; index < found.size(); ++index) {
    const FoundSection& section = found[index];
    const QString where = section.heading.isEmpty() ? section.title : section.title + ": " + section.heading;
    page += QString("<p><a href=\"found:%1\">").arg(index) + where.toHtmlEscaped() + "</a><br>" +
            section.line.toHtmlEscaped() + "</p>";
  }
  return page;
}
