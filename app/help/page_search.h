// page_search.h: finds words in the pages of the manual.
#pragma once
#include <QString>
#include <QUrl>
#include <vector>

struct FoundSection {
  QUrl page;
  QString title;    // of the page
  QString heading;  // of the section, empty above the first one
  QString line;     // the first line there that has the words
};

/// The sections that hold all of the words, letters in any case, in the order of the pages; none for a blank
/// text.
std::vector<FoundSection> search_pages(const QString& words);

/// The same as a page of links. Each is "found:NUMBER", its place in the list from 0.
QString page_of_found(const QString& words, const std::vector<FoundSection>& found);
