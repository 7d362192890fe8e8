#include "occam/windows/section_contents.h"

#include <QTimer>

#include "core/trap_errors.h"
#include "occam/windows/inversion_panel.h"
#include "occam/windows/model_controls.h"
#include "occam/windows/resolution_worker.h"
#include "platform/widgets/panel_controls.h"

using namespace Module_occam;

SectionContents::SectionContents(RunView& view, const ModelControls& controls, const InversionPanel& panel,
                                 QObject* parent)
    : QObject(parent),
      view_(view),
      controls_(controls),
      panel_(panel),
      resolution_(new ResolutionWorker(view.results().folder, this)),
      Timer_resolution_(named(new QTimer(this), "Timer_resolution")) {
  constexpr int progress_milliseconds = 100;
  Timer_resolution_->setInterval(progress_milliseconds);
  connect(Timer_resolution_, &QTimer::timeout, this, [this] {
    if (!running()) {
      Timer_resolution_->stop();
    }
    Q_EMIT state_changed();
  });
  connect(resolution_, &ResolutionWorker::computed, this, &SectionContents::changed);
  connect(resolution_, &ResolutionWorker::stopped, this, &SectionContents::changed);
  connect(resolution_, &ResolutionWorker::failed, this, [this](const QString& sentence) {
    user_interface().show_message(sentence.toStdString());
    Q_EMIT changed();
  });
}

bool SectionContents::running() const { return resolution_->running(); }

void SectionContents::finish() {
  finishing_ = true;
  resolution_->stop();
}

bool SectionContents::needs_resolution() const {
  return controls_.fades() || controls_.shown() == ModelControls::Shown::standard_error;
}

QString SectionContents::state_text() const {
  if (running()) {
    return QString("What the data see: %1 %").arg(static_cast<int>(100.0 * resolution_->share()));
  }
  return needs_resolution() && panel_.running() ? "What the data see comes when the inversion has ended"
                                                : QString();
}

SectionLook SectionContents::look() {
  SectionLook look = controls_.look();
  if (needs_resolution()) {
    add_resolution(look);
  } else {
    resolution_->stop();
  }
  if (controls_.shown() == ModelControls::Shown::change) {
    add_change(look);
  }
  if (running() && !Timer_resolution_->isActive()) {
    Timer_resolution_->start();
  }
  Q_EMIT state_changed();
  return look;
}

void SectionContents::add_resolution(SectionLook& look) {
  const int iteration = view_.current_iteration();
  if (!view_.results().has(iteration)) {
    return;
  }
  const std::string& file = view_.results().iteration_file[static_cast<std::size_t>(iteration)];
  const BlockResolution* const known = resolution_->find(file);
  if (known == nullptr) {
    // An inversion has the cores for itself; what it leaves is looked at when it has ended.
    if (!panel_.running() && !finishing_) {
      resolution_->want(file);
    }
    return;
  }
  if (controls_.fades()) {
    look.visibility = known->visibility;
  }
  if (controls_.shown() == ModelControls::Shown::standard_error) {
    look.values = standard_error_values(known->standard_errors);
  }
}

void SectionContents::add_change(SectionLook& look) {
  if (view_.load_iteration() != 0) {
    return;
  }
  const int base = controls_.base_iteration();
  static_cast<void>(trap_errors("The change can't be shown: ", [&] {
    look.values = change_values(view_.parameters(), view_.parameters_of(base), base);
  }));
}
