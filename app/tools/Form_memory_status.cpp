#include "app/tools/Form_memory_status.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "platform/system/memory_status.h"
#include "platform/widgets/panel_controls.h"

namespace {

constexpr int look_again_milliseconds = 1000;

QString size_text(std::uint64_t bytes) {
  return bytes == 0 ? QString("not known") : QLocale::c().formattedDataSize(static_cast<qint64>(bytes), 1);
}

QString free_text(std::uint64_t free, std::uint64_t all, const QString& none) {
  if (all == 0) {
    return none;
  }
  constexpr double percent = 100.0;
  return QString("%1 free of %2 (%3 %)")
      .arg(QLocale::c().formattedDataSize(static_cast<qint64>(free), 1), size_text(all))
      .arg(percent * static_cast<double>(free) / static_cast<double>(all), 0, 'f', 0);
}

}  // namespace

Form_memory_status::Form_memory_status(QWidget* parent) : QDialog(parent) {
  setObjectName("Form_memory_status");
  setWindowTitle("Memory Status");
  auto* const values = new QFormLayout;
  const auto add = [values](const QString& name, const QString& label, const QString& tool_tip) {
    constexpr int digits = 34;
    QLineEdit* const value = make_text(name, digits, true);
    value->setToolTip(tool_tip);
    values->addRow(label, value);
    return value;
  };
  Text_physical_ =
      add("Text_physical", "&Physical memory", "Memory of the machine that programs can still get");
  Text_paging_ = add("Text_paging", "P&aging space", "Room on the disk for what memory can't hold");
  Text_program_ = add("Text_program", "&Brenlox", "Physical memory that this program has now");
  Text_program_peak_ = add("Text_program_peak", "&Most so far", "The most that this program has had");

  auto* const done = named(new QPushButton("&Done"), "Command_done");
  done->setToolTip("Closes the window (Esc)");
  done->setDefault(true);
  connect(done, &QPushButton::clicked, this, &QDialog::accept);
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(done);
  auto* const rows = new QVBoxLayout(this);
  rows->addLayout(values);
  rows->addLayout(buttons);

  auto* const timer = new QTimer(this);
  connect(timer, &QTimer::timeout, this, &Form_memory_status::show_status);
  timer->start(look_again_milliseconds);
  show_status();
}

void Form_memory_status::show_status() {
  const UTIL::MemoryStatus status = UTIL::memory_status();
  Text_physical_->setText(free_text(status.free_physical, status.physical, "not known"));
  Text_paging_->setText(free_text(status.free_paging, status.paging, "none"));
  Text_program_->setText(size_text(status.program));
  Text_program_peak_->setText(size_text(status.program_peak));
}
