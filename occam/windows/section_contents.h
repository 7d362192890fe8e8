// section_contents.h: what the controls ask a section to show, with what has to be computed for it.
#pragma once
#include <QObject>
#include <QString>

#include "occam/windows/section_picture.h"

class InversionPanel;
class ModelControls;
class QTimer;
class ResolutionWorker;

class SectionContents : public QObject {
  Q_OBJECT

 public:
  /// All of them outlive this object.
  SectionContents(Module_occam::RunView& view, const ModelControls& controls, const InversionPanel& panel,
                  QObject* parent = nullptr);

  /// As far as it has been computed; the rest is begun, and changed() follows.
  Module_occam::SectionLook look();
  [[nodiscard]] bool running() const;
  /// What is being computed is given up, and nothing is begun any more; changed() follows if it was running.
  void finish();
  /// What is under way; empty if nothing is.
  [[nodiscard]] QString state_text() const;

 Q_SIGNALS:
  void changed();
  void state_changed();

 private:
  [[nodiscard]] bool needs_resolution() const;
  void add_resolution(Module_occam::SectionLook& look);
  void add_change(Module_occam::SectionLook& look);

  Module_occam::RunView& view_;
  const ModelControls& controls_;
  const InversionPanel& panel_;
  ResolutionWorker* resolution_;
  QTimer* Timer_resolution_;
  bool finishing_ = false;
};
