#include "platform/widgets/copy_cells.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QStringList>
#include <map>

namespace {

QString selected_text(const QAbstractItemView& grid) {
  std::map<int, std::map<int, QString>> cells;
  for (const QModelIndex& index : grid.selectionModel()->selectedIndexes()) {
    cells[index.row()][index.column()] = index.data().toString();
  }
  QStringList lines;
  for (const auto& [row, columns] : cells) {
    QStringList texts;
    for (const auto& [column, text] : columns) {
      texts.append(text);
    }
    lines.append(texts.join('\t'));
  }
  return lines.join('\n');
}

}  // namespace

void make_cells_copyable(QAbstractItemView& grid) {
  auto* const copy = new QAction("&Copy", &grid);
  copy->setShortcut(QKeySequence::Copy);
  copy->setShortcutContext(Qt::WidgetShortcut);
  QObject::connect(copy, &QAction::triggered, &grid, [view = &grid] {
    if (const QString text = selected_text(*view); !text.isEmpty()) {
      QGuiApplication::clipboard()->setText(text);
    }
  });
  grid.addAction(copy);
  grid.setContextMenuPolicy(Qt::ActionsContextMenu);
}
