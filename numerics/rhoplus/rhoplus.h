// rhoplus.h: the one-dimensional model that fits apparent resistivity and phase of one station best.
//
// Among all conductivity profiles of depth the routine finds the one with the least chi-squared misfit to ln
// resistivity and phase. The least misfit is reached by a pile of thin conducting sheets between insulating
// gaps (the D+ model; its response is known as rho+), so the answer is not a smooth picture of the ground but
// the yardstick of any one-dimensional fit: data that it can't fit are not one-dimensional, or their errors
// are too small.
//
//   Parker (1980), J. Geophys. Res. 85, 4421-4428: sheets are optimal
//   Parker and Whaler (1981), J. Geophys. Res. 86, 9574-9584
//   Parker and Booker (1996), Phys. Earth Planet. Inter. 98, 269-282: resistivity and phase
//
// Conventions: frequency Hz; resistivity ohm-m; phase degrees, 45 over a half-space (time factor exp(+i omega
// t)); errors are one standard deviation; depth m, positive down; conductance S. A missing value is no_data
// (-1e32).
#pragma once
#include <span>
#include <string>
#include <vector>

#include "core/absent_value.h"

namespace numerics::rhoplus {

struct RhoplusInversion;

/// The surface's boundary condition. Conducting: the first sheet of the model lies at depth 0. Insulating: it
/// may lie at any depth.
enum class RhoplusSurface { conducting = 0, insulating = 1 };

/// One row of the table RhoplusData: nine 32-bit numbers, in the order of its columns.
struct RhoplusRow {
  float frequency = 0.0F;             // 1: Hz
  float resistivity = 0.0F;           // 2: ohm-m
  float resistivity_error = 0.0F;     // 3: ohm-m
  float phase = 0.0F;                 // 4: degrees
  float phase_error = 0.0F;           // 5: degrees
  float use_resistivity = 0.0F;       // 6: 1 used, 0 not
  float use_phase = 0.0F;             // 7: 1 used, 0 not
  float model_resistivity = no_data;  // 8: ohm-m, set by the routine
  float model_phase = no_data;        // 9: degrees, set by the routine

  [[nodiscard]] bool uses_resistivity() const { return use_resistivity > 0.5F; }
  [[nodiscard]] bool uses_phase() const { return use_phase > 0.5F; }
};
static_assert(sizeof(RhoplusRow) == 9 * sizeof(float));

/// One row of the table RhoplusModel, from the top down.
struct RhoplusLayer {
  float depth = 0.0F;        // m, of the sheet
  float conductance = 0.0F;  // S
};

/// Conductance of the last row where a perfect conductor is below the model; without such a row an insulator
/// without a bottom is below the last sheet.
constexpr float perfect_conductor = 1e30F;

constexpr int max_rhoplus_layers = 64;

/// Status of a run: 0 when the inversion ran.
enum RhoplusStatus : int {
  rhoplus_not_run = -1,        // what a caller sets before a run
  rhoplus_ran = 0,             //
  rhoplus_no_usable_data = 1,  // no flag set, or nothing usable behind the flags
  rhoplus_failed = 2,          // the computation failed; columns 8 and 9 are no_data
};

struct RhoplusRun {
  int status = rhoplus_not_run;     // RhoplusStatus
  std::string message;              // a sentence on a status other than 0, else empty
  int used_values = 0;              // N, resistivities and phases
  float target_chi = 0.0F;          // expected length of N normal errors of unit variance
  float achieved_chi = 0.0F;        // root of the least chi-squared
  double optimality_gap = 0.0;      // achieved chi-squared exceeds the least possible by no more than this
  bool limit_met = false;           // of iterations: the gap may be wide
  std::vector<RhoplusLayer> model;  // up to max_rhoplus_layers
};

/// Inverts the table and fills its columns 8 and 9 at every row with a frequency, whether its data are used
/// or not.
///
/// A value that can't be used in spite of its flag (a resistivity, error or frequency that is not above 0,
/// anything not finite) is left out with a remark in the details; no input ends in an exception. A limit of
/// iterations keeps any table below some seconds. Order of the
/// rows, equal frequencies and unused rows make no difference to the result.
///
/// The table, not a control file, is what is inverted: the four decimals of a control file would make
/// neighbouring frequencies below 0.01 Hz equal.
/// @param details  receives the inversion in double precision, with its remarks; may be null. After
///                 rhoplus_failed it holds nothing.
RhoplusRun rhoplus(std::span<RhoplusRow> data, RhoplusSurface surface, RhoplusInversion* details = nullptr);

}  // namespace numerics::rhoplus
