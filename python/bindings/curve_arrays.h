// curve_arrays.h: a reading as arrays that look into its own memory.
#pragma once
#include <memory>

#include <pybind11/numpy.h>

#include "database/reading.h"

namespace Python {

/// A reading that was taken out of the survey, with the key that it was found by. Its arrays keep it alive,
/// and nothing that is done to the survey changes it. What isn't there is NaN.
struct TakenReading {
  Module_database::ReadingKey key;
  std::int32_t reduction = Module_database::reduction_merged;
  Module_database::StoredReading reading;
};

/// The attributes of a curve by name: arrays of shape (n,) that can't be written, and facts of the reading.
/// Nothing is copied.
pybind11::dict attributes_of(std::unique_ptr<TakenReading> taken);

}  // namespace Python
