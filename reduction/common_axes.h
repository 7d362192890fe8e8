// common_axes.h: the axes of a curve that was computed from several readings.
#pragma once
#include <span>

#include "database/reading.h"

namespace Module_averaged_data {

/// What all readings have in common; what differs, or isn't known of one of them, isn't known. Azimuths of
/// Hx within 1 degree are one orientation, that of their mean: files of one site round them differently.
Module_database::ReadingAxes common_axes(std::span<const Module_database::ReadingAxes> readings);

}  // namespace Module_averaged_data
