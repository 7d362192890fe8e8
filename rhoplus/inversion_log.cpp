#include "rhoplus/inversion_log.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <fstream>
#include <system_error>
#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "numerics/rhoplus/chi_statistics.h"

namespace Module_rhoplus {

using numerics::rhoplus::RhoplusInversion;
using numerics::rhoplus::RhoplusPrediction;
using numerics::rhoplus::RhoplusRow;
using numerics::rhoplus::RhoplusRun;
using numerics::rhoplus::RhoplusSurface;

namespace {

constexpr std::string_view limit_sentence =
    "The limit of iterations was met. A model may fit better, by no more of chi-squared than the certificate "
    "says.";
constexpr std::size_t label_width = 24;
constexpr std::size_t number_width = 13;
constexpr std::size_t flag_width = 6;

class LogText {
 public:
  void line(std::string_view text = {}) { (text_ += text) += "\r\n"; }
  void fact(std::string_view label, std::string_view value) {
    std::string padded(label);
    padded.resize(std::max(label_width, label.size() + 1), ' ');
    line(padded.append(value));
  }
  void heading(std::string_view text) {
    line();
    line(text);
    line(std::string(text.size(), '-'));
  }
  [[nodiscard]] std::string text() && { return std::move(text_); }

 private:
  std::string text_;
};

/// Seven digits at most, as a table of 32-bit numbers would show.
std::string number(double value) {
  return std::isfinite(value) ? plain_text(static_cast<float>(value)) : std::string("-");
}

std::string with_places(double value, std::string_view picture) {
  constexpr double widest = 1e9;  // beyond, a fixed picture would burst its column
  return std::abs(value) < widest ? format_number(value, picture) : number(value);
}

std::string count(int value, std::string_view one, std::string_view many) {
  return plain_text(value) + " " + std::string(value == 1 ? one : many);
}

void write_settings(LogText& log, std::string_view title, std::size_t rows, RhoplusSurface surface,
                    const RhoplusInversion& inversion) {
  log.line("Rho+ inversion: the best fit of any one-dimensional model");
  log.line();
  log.fact("Data", title);
  log.fact("Surface", surface == RhoplusSurface::conducting ? "conducting" : "insulating");
  log.fact("Rows", plain_text(static_cast<int>(rows)));
  log.fact("Values used", plain_text(inversion.used_values()) + " (" +
                              count(inversion.resistivities, "resistivity", "resistivities") + ", " +
                              count(inversion.phases, "phase", "phases") + ")");
}

void write_fit(LogText& log, const RhoplusInversion& inversion) {
  const int values = inversion.used_values();
  const double chi = std::sqrt(inversion.fit.misfit2);
  const double target = numerics::rhoplus::expected_chi(values);
  const double limit = numerics::rhoplus::chi_of_95_percent(values);
  log.heading("Fit");
  log.fact("Achieved chi", with_places(chi, "0.0000"));
  log.fact("Target chi", with_places(target, "0.0000") + "  (expected of normal errors)");
  log.fact("95 % level of chi", with_places(limit, "0.0000"));
  log.fact("rms", with_places(chi / std::sqrt(values), "0.0000"));
  log.line(chi > limit ? "No one-dimensional model fits these data within their errors (95 % confidence)."
                       : "A one-dimensional model fits these data within their errors.");
  log.line();
  log.fact("Chi-squared", with_places(inversion.fit.misfit2, "0.000000"));
  log.fact("Certificate", "chi-squared is above the least possible by no more than " +
                              format_number(inversion.fit.gap, "0.00E+0"));
  if (inversion.fit.gap > numerics::rhoplus::accepted_gap(inversion.fit.misfit2) &&
      !inversion.fit.fits_exactly) {
    log.line(
        "The errors are too small, or too many sheets were dropped, for a closer proof in double precision.");
  }
}

void write_remarks(LogText& log, const RhoplusInversion& inversion) {
  if (inversion.limit_met) {
    log.line(limit_sentence);
  }
  if (inversion.fit.fits_exactly) {
    log.line("The data can be fitted exactly; this is one of many models that do.");
  }
  if (inversion.level_is_arbitrary) {
    log.line("No resistivity is used: the level is arbitrary, depths and conductances scale with it.");
  }
  if (inversion.dropped_sheets > 0) {
    log.line(count(inversion.dropped_sheets, "sheet was", "sheets were") +
             " dropped to keep the model to the rows of its table.");
  }
  for (const std::string& remark : inversion.remarks) {
    log.line(remark);
  }
}

void write_model(LogText& log, const numerics::rhoplus::SheetModel& model, double sheet_error) {
  log.heading("Model: conducting sheets in an insulator");
  log.line(pad_field("sheet", 5) + pad_field("depth (m)", number_width) + pad_field("conductance (S)", 17));
  int sheet_number = 0;
  for (const numerics::rhoplus::Sheet& sheet : model.sheets) {
    log.line(pad_field(plain_text(++sheet_number), 5) + pad_field(number(sheet.depth), number_width) +
             pad_field(number(sheet.conductance), 17));
  }
  log.fact("Basement", std::isfinite(model.conductor_depth)
                           ? "perfect conductor at " + number(model.conductor_depth) + " m"
                           : std::string("insulator"));
  log.fact("Total conductance", number(model.total_conductance()) + " S");
  log.fact("Check of the sheets", "their response differs from the fit by " +
                                      format_number(sheet_error, "0.0E+0") + " of the admittance at most");
}

std::string value_columns(bool used, double observed, double error, double model, double residual,
                          std::string_view picture) {
  return pad_field(used ? "1" : "0", flag_width) + pad_field(number(observed), number_width) +
         pad_field(number(error), number_width) +
         pad_field(std::isfinite(model) ? with_places(model, picture) : "-", number_width) +
         pad_field(std::isfinite(residual) ? with_places(residual, "0.00") : "-", number_width);
}

void write_data(LogText& log, std::span<const RhoplusRow> data, const RhoplusInversion& inversion) {
  log.heading("Data: residuals in errors, of ln resistivity and of phase");
  std::string names = pad_field("frequency", number_width);
  std::string units = pad_field("(Hz)", number_width);
  for (const auto& [quantity, unit] : {std::pair{"resistivity", "(ohm-m)"}, std::pair{"phase", "(deg)"}}) {
    names += pad_field("used", flag_width);
    units += pad_field("", flag_width);
    for (const std::string_view name : {quantity, "error", "model"}) {
      names += pad_field(name, number_width);
      units += pad_field(unit, number_width);
    }
    names += pad_field("residual", number_width);
    units += pad_field("", number_width);
  }
  log.line(names);
  log.line(units);
  for (std::size_t i = 0; i < data.size(); ++i) {
    const RhoplusRow& row = data[i];
    const RhoplusPrediction& model = inversion.rows[i];
    log.line(pad_field(number(row.frequency), number_width) +
             value_columns(row.uses_resistivity(), row.resistivity, row.resistivity_error, model.resistivity,
                           model.resistivity_residual, "0.000") +
             value_columns(row.uses_phase(), row.phase, row.phase_error, model.phase, model.phase_residual,
                           "0.00"));
  }
}

}  // namespace

std::string inversion_log(std::string_view title, std::span<const RhoplusRow> data, RhoplusSurface surface,
                          const RhoplusRun& run, const RhoplusInversion& details) {
  LogText log;
  if (run.status == numerics::rhoplus::rhoplus_failed) {
    log.line("Rho+ inversion of " + std::string(title) + " failed: " + run.message);
    return std::move(log).text();
  }
  write_settings(log, title, data.size(), surface, details);
  if (details.ran) {
    write_fit(log, details);
  } else {
    log.line(run.message);
  }
  write_remarks(log, details);
  if (details.ran) {
    write_model(log, details.sheets, details.sheet_error);
  }
  write_data(log, data, details);
  return std::move(log).text();
}

std::string write_log(const std::filesystem::path& path, std::string_view log) {
  // Written straight to its place: it is replaced at every change of the data, and waiting for the disk would
  // cost more than the inversion.
  errno = 0;
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(log.data(), static_cast<std::streamsize>(log.size()));
  file.close();
  if (file) {
    return {};
  }
  const int reason = errno;
  std::error_code ignored;
  std::filesystem::remove(path, ignored);
  return path.string() + ": " + std::generic_category().message(reason);
}

}  // namespace Module_rhoplus
