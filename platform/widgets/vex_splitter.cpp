#include "platform/widgets/vex_splitter.h"

#include <QList>
#include <QMouseEvent>
#include <QSplitterHandle>

namespace {

class Handle final : public QSplitterHandle {
 public:
  explicit Handle(VexSplitter* splitter)
      : QSplitterHandle(splitter->orientation(), splitter), splitter_(splitter) {}

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    sizes_before_ = splitter_->sizes();
    QSplitterHandle::mousePressEvent(event);
  }

  void mouseReleaseEvent(QMouseEvent* event) override {
    QSplitterHandle::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && splitter_->sizes() != sizes_before_) {
      Q_EMIT splitter_->split_moved();
    }
  }

 private:
  VexSplitter* splitter_;
  QList<int> sizes_before_;
};

}  // namespace

VexSplitter::VexSplitter(QWidget* parent) : QSplitter(parent) { setChildrenCollapsible(false); }

QSplitterHandle* VexSplitter::createHandle() { return new Handle(this); }
