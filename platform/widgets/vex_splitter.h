// vex_splitter.h: a draggable divider that tells once when a drag has ended.
#pragma once
#include <QSplitter>

class VexSplitter : public QSplitter {
  Q_OBJECT

 public:
  explicit VexSplitter(QWidget* parent = nullptr);

 Q_SIGNALS:
  /// The person has let go of a divider in a place other than where it was taken. Sizes that the program
  /// sets raise nothing.
  void split_moved();

 protected:
  QSplitterHandle* createHandle() override;
};
