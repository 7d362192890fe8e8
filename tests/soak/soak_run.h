// soak_run.h: one soak of the main window and of every dialog that comes up.
#pragma once
#include <QObject>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/Form_main.h"
#include "core/user_interface.h"
#include "tests/soak/random_hand.h"
#include "tests/support/temporary_folder.h"

struct SoakChoices {
  std::uint32_t seed = 1;
  int steps = 10000;
  int check_every = 250;
  /// Menu items, buttons and lists; one of those within reach is worked every second time. Empty: all of
  /// them, now and then.
  std::vector<std::string> way;
  std::vector<int> report_at{2000, 5000, 10000, 20000, 40000};  // steps after which memory is reported
  bool profile = false;                                         // and where it was allocated
};

class SoakRun : public QObject {
 public:
  /// `report` gets the number and description of each step before it is done.
  SoakRun(const SoakChoices& choices, const TemporaryFolder& folder,
          std::function<void(const std::string&)> report);
  ~SoakRun() override;

  /// @return 0, or 1 after writing to the standard error what didn't hold
  int run();

 private:
  class Answers;

  void step_soon();
  void step();
  [[nodiscard]] bool go_on_the_way();
  void end_step();
  void check_survey();
  void report_memory();
  void report_windows_and_messages() const;
  void count_warning(const QString& text);

  SoakChoices choices_;
  const TemporaryFolder& folder_;
  std::function<void(const std::string&)> report_;
  std::string survey_;
  std::unique_ptr<UserInterface> earlier_interface_;
  std::map<std::string, int> messages_;  // shown, with their numbers
  std::unique_ptr<Form_main> window_;
  std::unique_ptr<RandomHand> hand_;
  std::map<std::string, int> steps_in_window_;
  int steps_ = 0;
  int checks_ = 0;
  int steps_without_stations_ = 0;
  bool check_is_due_ = false;
  bool report_is_due_ = false;
  int depth_ = 0;  // steps under way: one in each window that runs an event loop
  int faults_ = 0;
  static SoakRun* takes_warnings_;
};
