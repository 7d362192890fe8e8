// zonge_avg_facts.h: what the lines above a table of averaged soundings say of it.
#pragma once
#include <cstdint>
#include <numbers>
#include <optional>
#include <string>
#include <string_view>

#include "formats/file_report.h"

namespace formats::zonge {

/// A place on the map of the survey.
struct AvgMapPlace {
  double east = 0.0;  // m
  double north = 0.0;
  double elevation = 0.0;
  std::string utm_zone;  // as the file has it; empty if it doesn't say
};

/// What holds for the rows that follow.
struct AvgFacts {
  std::optional<double> named_station;  // by its own name
  std::optional<double> box_station;    // as the receiver's box counts
  bool has_rows = false;                // of this station, so that another number begins a new one
  std::string component;
  std::optional<double> dipole;            // m
  std::optional<double> receiver_azimuth;  // degrees; holds until another one is said
  std::optional<double> channel_azimuth;   // of a channel along x of this station
  std::optional<double> latitude;
  std::optional<double> longitude;
  std::optional<AvgMapPlace> place;
  std::string datum;
  std::string utm_zone;
  std::string date;
  double degrees_of_phase = 0.18 / std::numbers::pi;  // in the unit of phases, milliradian
  bool in_feet = false;

  [[nodiscard]] std::optional<double> x_azimuth() const {
    return receiver_azimuth ? receiver_azimuth : channel_azimuth;
  }
  /// The station's own name goes before the number of the box, whichever comes first.
  [[nodiscard]] std::optional<double> station() const { return named_station ? named_station : box_station; }
};

/// Takes a line "Key=value"; keys that aren't known change nothing.
void take_avg_fact(AvgFacts& facts, std::string_view text, FileReport& report, std::int64_t line_number);

/// Takes the date of the data file from a line of the head, "Dated 99-01-31".
void take_avg_comment(AvgFacts& facts, std::string_view line);

}  // namespace formats::zonge
