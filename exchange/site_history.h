// site_history.h: what has been done to the curves of a station since they were measured, for whoever gets
// them in a file.
#pragma once
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/frequencies.h"
#include "tensor/line_choice.h"
#include "tensor/line_curves.h"
#include "tensor/station_tensor.h"

namespace Module_exchange {

/// What went into the merged curves of a station.
struct StationPast {
  std::vector<std::string> sentences;    // repeats, scan rates, masks, static factors, switched off
  std::optional<double> date_collected;  // the earliest of its files, days since 30 December 1899
};

/// The dates of the files that readings came from, by file: days since 30 December 1899. A file may hold many
/// stations and lines. One without a date isn't there. Needs an open survey; throws dao::Error.
/// @param criteria  of rows of ReadingsDataTable
std::map<std::int32_t, double> dates_of_files(const std::string& criteria);

/// "1 frequency", "3 frequencies"
std::string counted(std::size_t count, const std::string& one, const std::string& several);

/// Why an Ey that counts as turned has another sign in a file than in the survey, a sentence without its
/// point.
std::string ey_sentence(const Module_tensor::StationCurves& curves,
                        const Module_tensor::StationTensor& tensor);

/// A merged curve that was imported as it is may have several points at one frequency, of a file that has a
/// period from two decimation levels.
std::size_t frequencies_with_several_points(const Module_tensor::StationCurves& curves);

/// Needs an open survey; throws dao::Error.
StationPast station_past(const Module_tensor::LineChoice& choice, const Module_tensor::StationCurves& curves,
                         const Frequencies& frequencies);

}  // namespace Module_exchange
