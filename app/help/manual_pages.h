// manual_pages.h: the pages of docs/ and the changelog, compiled into the program.
#pragma once
#include <QString>
#include <QUrl>

/// Where a page of docs/ is found, as "tutorial.md"; what it refers to is found beside it.
QUrl manual_page(const QString& name);

/// The changelog as Markdown.
QString changelog();
