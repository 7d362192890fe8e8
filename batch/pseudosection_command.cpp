// brenlox_batch pseudosection: a quantity of a line by station and period as a picture.
#include <array>
#include <iostream>
#include <memory>
#include <optional>

#include "batch/command.h"
#include "batch/line_options.h"
#include "batch/offscreen_application.h"
#include "core/file_names.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/user_interface.h"
#include "database/frequency_store.h"
#include "display/line_axis.h"
#include "output/rhoplus_settings.h"
#include "projections/survey_projection.h"
#include "rhoplus/section_residuals.h"
#include "tensor/section_texts.h"
#include "tensor/windows/pseudo_section_file.h"

namespace Batch {
namespace {

using namespace Module_tensor;
using Module_display_data::LineAxis;
using Module_display_data::PositionSource;

struct PseudosectionOptions {
  LineOptions line;
  std::string quantity;
  std::string output;
  bool by_distance = false;
  bool period_up = false;
  bool contours = false;
  bool no_points = false;
  bool invert = false;
  std::string palette;  // empty: the usual one
  std::string range;    // LO,HI in the unit of the colour bar; empty: the usual one; "data"
  std::string size = "1200x700";
};

constexpr std::string_view range_of_the_data = "data";

/// Two numbers around a separator.
std::optional<std::array<std::string, 2>> two_numbers(const std::string& text, char separator) {
  const std::size_t at = text.find(separator);
  if (at == std::string::npos || !is_numeric(text.substr(0, at)) || !is_numeric(text.substr(at + 1))) {
    return std::nullopt;
  }
  return std::array{text.substr(0, at), text.substr(at + 1)};
}

std::optional<QSize> size_of(const std::string& text) {
  constexpr double least = 300.0;
  constexpr double most = 10000.0;
  const auto sides = two_numbers(text, 'x');
  if (!sides) {
    return std::nullopt;
  }
  const double width = numeric_value((*sides)[0]);
  const double height = numeric_value((*sides)[1]);
  return std::min(width, height) >= least && std::max(width, height) <= most
             ? std::optional(QSize(static_cast<int>(width), static_cast<int>(height)))
             : std::nullopt;
}

template <class Names>
std::vector<std::string> texts_of(const Names& names) {
  return {names.begin(), names.end()};
}

std::vector<std::string> quantity_words() {
  std::vector<std::string> words;
  for (const QuantityFacts& facts : section_quantities()) {
    words.emplace_back(facts.word);
  }
  return words;
}

/// None if the options give limits that make no range.
std::optional<ColourScale> scale_of(const PseudosectionOptions& options, const PseudoSection& section) {
  const QuantityFacts& facts = facts_of(section.quantity);
  ColourScale scale = usual_scale(facts.scale);
  scale.inverted = options.invert;
  if (const auto palette = std::ranges::find(scale_palette_words, options.palette);
      palette != scale_palette_words.end()) {
    scale.palette = static_cast<ScalePalette>(palette - scale_palette_words.begin());
  }
  std::optional<SectionRange> range(std::in_place, scale.lower, scale.upper);
  if (options.range == range_of_the_data) {
    range = range_of_data(section).value_or(*range);
  } else if (!options.range.empty()) {
    const auto limits = two_numbers(options.range, ',');
    range = limits ? typed_range(facts, (*limits)[0], (*limits)[1]) : std::nullopt;
  }
  if (!range) {
    return std::nullopt;
  }
  scale.lower = range->lower;
  scale.upper = range->upper;
  return scale;
}

/// What a section is made from, and all of it kept.
struct Loaded {
  LineTensors line;
  Frequencies frequencies;
  std::vector<StationPhaseTensors> phase_tensors;
  Module_rhoplus::SectionResiduals residuals;
  LineAxis axis;
};

/// @return 0, or -1 after a message
int load(const LineChoice& choice, const PseudosectionOptions& options, const QuantityFacts& facts,
         Loaded& loaded) {
  auto frequencies = Module_database::load_reference_frequencies(choice.reference_type);
  if (!frequencies || load_line_tensors(choice, *frequencies, loaded.line) != 0) {
    return -1;
  }
  loaded.frequencies = *std::move(frequencies);
  loaded.phase_tensors = phase_tensors_of(loaded.line);
  if (facts.is_misfit()) {
    const auto go_on = [](double) { return !user_interface().stop_requested(); };
    if (!loaded.residuals.update(loaded.line, loaded.frequencies, Module_output::load_rhoplus_settings(),
                                 go_on)) {
      user_interface().show_message("Stopped; nothing was written");
      return -1;
    }
  }
  if (options.by_distance) {
    static_cast<void>(Module_projections::apply_survey_projection());  // a survey may have none
    static_cast<void>(loaded.axis.take_line(choice.line));
    if (const std::string refusal = loaded.axis.choose(PositionSource::distances); !refusal.empty()) {
      user_interface().show_message(refusal);
      return -1;
    }
  }
  return 0;
}

int write_section(const LineChoice& choice, const PseudosectionOptions& options, QSize size) {
  const SectionQuantity quantity = *quantity_of(options.quantity);
  Loaded loaded;
  if (load(choice, options, facts_of(quantity), loaded) != 0) {
    return -1;
  }
  const SectionSource source{&loaded.line, &loaded.frequencies, loaded.phase_tensors,
                             loaded.residuals.stations()};
  PseudoSectionPicture picture;
  picture.section =
      make_pseudo_section(source, quantity, [&](double station) { return loaded.axis.x_of(station); });
  const auto scale = scale_of(options, picture.section);
  if (!scale) {
    user_interface().show_message("--range: " + options.range +
                                  " is not LO,HI with LO below HI in the unit of the colours");
    return status_wrong_usage;
  }
  if (picture.section.empty()) {
    user_interface().show_message(empty_section_note(picture.section, loaded.line.stations.empty()));
    return -1;
  }
  picture.scale = *scale;
  show_whole(picture);
  picture.title = QString::fromStdString(section_title(options.line.survey, choice.line, quantity));
  picture.x_title = loaded.axis.title();
  picture.period_up = options.period_up;
  picture.contours = options.contours;
  picture.points = !options.no_points;
  if (save_pseudo_sections(options.output, std::array{std::move(picture)}, {}, size) != 0) {
    return -1;
  }
  std::cout << "The pseudo-section of line " << choice.line << " is written to " << options.output << '\n';
  return 0;
}

int run_pseudosection(PseudosectionOptions& options) {
  options.output = path_from_here(options.output);
  const OffscreenApplication application;
  return with_line(options.line, [&](const LineChoice& choice) {
    return write_section(choice, options, *size_of(options.size));
  });
}

}  // namespace

Command add_pseudosection_command(Program& program) {
  const auto options = std::make_shared<PseudosectionOptions>();
  Parser parser =
      program.add_command("pseudosection", "Draws a quantity of a line by station and period or depth");
  add_line_options(parser, options->line);
  parser.add_option("--quantity", options->quantity, "what the colours show")
      .required()
      .one_of(quantity_words());
  parser.add_option("--output", options->output, "path ending in .png or .pdf; an earlier file is replaced")
      .required()
      .checked([](const std::string& text) {
        const std::string ending = Module_util::file_extension(text);
        return equal_ignoring_case(ending, "png") || equal_ignoring_case(ending, "pdf")
                   ? std::string()
                   : text + " doesn't end in .png or .pdf";
      });
  parser.add_flag("--by-distance", options->by_distance,
                  "by metres along the line, from the places of the sites, not by station numbers");
  parser.add_flag("--period-up", options->period_up, "long periods at the top");
  parser.add_flag("--contours", options->contours, "lines of equal value");
  parser.add_flag("--no-points", options->no_points, "neither dots at data nor crosses at masked points");
  parser.add_option("--palette", options->palette, "colours; left out: those that suit the quantity")
      .one_of(texts_of(scale_palette_words));
  parser.add_flag("--invert", options->invert, "reverse the colours");
  parser.add_option("--range", options->range,
                    "LO,HI of the colours in their unit, ohm-m say, or \"data\" for the range of the data; "
                    "left out: the same for all lines");
  parser
      .add_option("--size", options->size,
                  "of the picture as on a screen, as WxH, from 300 to 10000; a PNG has twice as many pixels")
      .checked([](const std::string& text) {
        return size_of(text) ? std::string() : text + " is not a size as 1200x700";
      })
      .shows_default();
  return {parser, [options] { return run_pseudosection(*options); }};
}

}  // namespace Batch
