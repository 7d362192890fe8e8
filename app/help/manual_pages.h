// manual_pages.h: the pages of docs/ and the changelog, compiled into the program.
#pragma once
#include <QString>
#include <QStringList>
#include <QUrl>

/// Where a page of docs/ is found, as "tutorial.md"; what it refers to is found beside it.
QUrl manual_page(const QString& name);

/// All pages, the tutorial first.
QStringList manual_page_names();

/// Where the changelog is found; what it refers to is found beside it.
QUrl changelog();
