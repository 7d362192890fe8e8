// vex_splitter.h: a draggable divider that signals the end of a drag once.
#pragma once
#include <QSplitter>

class VexSplitter : public QSplitter {
  Q_OBJECT

 public:
  explicit VexSplitter(QWidget* parent = nullptr);

 Q_SIGNALS:
  /// The user has dragged a divider to another place. Sizes set by the program raise no signal.
  void split_moved();

 protected:
  QSplitterHandle* createHandle() override;
};
