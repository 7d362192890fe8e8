// response_views.h: which data types of a response are looked at together.
#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/absent_value.h"
#include "formats/occam/occam_response.h"

namespace Module_occam {

/// The two graphs of a view, one above the other.
enum class Pane : std::uint8_t { upper, lower };
inline constexpr std::array<Pane, 2> panes{Pane::upper, Pane::lower};

template <class T>
using ByPane = std::array<T, panes.size()>;

constexpr std::size_t pane_index(Pane pane) { return static_cast<std::size_t>(pane); }

/// One of the curves of a view: the data of a mode.
struct ResponseChannel {
  std::string name;  // "TE"
  ByPane<std::optional<DataType>> types;

  [[nodiscard]] std::optional<DataType> type(Pane pane) const { return types[pane_index(pane)]; }
};

struct PaneTexts {
  const char* title;  // "Resistivity"
  const char* axis;   // "Resistivity (log10 ohm-m)"
};

struct ResponseView {
  const char* name;  // "Resistivity and phase"
  ByPane<PaneTexts> texts;
  std::vector<ResponseChannel> channels;

  [[nodiscard]] const PaneTexts& text(Pane pane) const { return texts[pane_index(pane)]; }
  [[nodiscard]] bool has_modes() const { return channels.size() > 1; }
  /// The data types of a pane, each once, with the channels that they are first of.
  struct Curve {
    DataType type;
    const ResponseChannel* channel;
  };
  [[nodiscard]] std::vector<Curve> curves(Pane pane) const;
  /// The title of a pane for one channel: with its name if there are several.
  [[nodiscard]] std::string title(Pane pane, const ResponseChannel& channel) const;
};

/// Resistivity and phase, tipper, impedance: those that the response has data of; resistivity and phase of TM
/// if it has none of any. Each view has a channel or more.
std::vector<ResponseView> response_views(const OccamResponse& response);

/// What is drawn of a place: resistivities as log10 ohm-m, a linear one only if it is above 0; impedances
/// times the square root of the period, which takes the trend from them.
struct DrawnDatum {
  OccamResponse::Row values;  // with the misfit as it is in the file; no_data where there is no row
  double error = no_data;     // in units of the values; no_data if residual and misfit don't tell it
};
DrawnDatum drawn_datum(const OccamResponse& response, DataType type, int site_number, int frequency_number);

}  // namespace Module_occam
