// inversion_ahead.h: a station's inversion in a thread of its own, while the windows draw the station.
#pragma once
#include <future>
#include <memory>

#include "rhoplus/station_inversion.h"

namespace Module_rhoplus {

/// One station at a time. What was begun is finished, files included, also if nobody takes it.
class InversionAhead {
 public:
  /// Reads the station's data and begins to invert them.
  /// @return 0, or -1 after a message
  [[nodiscard]] int begin(const ReadingKey& key, const Frequencies& frequencies,
                          const RhoplusSettings& settings);

  /// What invert_station gives: waits for what was begun, or inverts here and now where that was of another
  /// key. @return 0, or -1 after a message
  [[nodiscard]] int finish(const ReadingKey& key, const Frequencies& frequencies,
                           const RhoplusSettings& settings, StationInversion& result);

 private:
  std::unique_ptr<StationTask> task_;  // outlives its thread
  std::future<void> running_;
};

}  // namespace Module_rhoplus
