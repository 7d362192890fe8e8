// dropped_files.h: files that are dragged onto a window.
#pragma once
#include <QMimeData>
#include <QStringList>

/// The paths of the files and folders that are dragged; empty if something else is among them, as a page of
/// the web or a text, since part of a drop would be lost without a word.
QStringList local_paths(const QMimeData& dragged);
