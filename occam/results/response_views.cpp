#include "occam/results/response_views.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <numbers>

#include "core/absent_value.h"

namespace Module_occam {

namespace {

using Types = ByPane<std::optional<DataType>>;

std::optional<DataType> if_present(const OccamResponse& response, DataType type) {
  return response.has(type) ? std::optional(type) : std::nullopt;
}

void add_channel(std::vector<ResponseChannel>& channels, std::string name, const Types& types) {
  if (types[0] || types[1]) {
    channels.push_back({std::move(name), types});
  }
}

/// A mode has a second channel if there are resistivities and their logarithms.
std::vector<ResponseChannel> resistivity_channels(const OccamResponse& response) {
  std::vector<ResponseChannel> channels;
  for (const Mode& mode : modes) {
    const auto logarithm = if_present(response, mode.resistivity);
    const auto linear = if_present(response, mode.linear_resistivity);
    const auto phase = if_present(response, mode.phase);
    add_channel(channels, mode.name, {logarithm ? logarithm : linear, phase});
    if (logarithm && linear) {
      add_channel(channels, std::string(mode.name) + " linear", {linear, phase});
    }
  }
  return channels;
}

ResponseView resistivity_view(std::vector<ResponseChannel> channels) {
  return {"Resistivity and phase",
          {{{"Resistivity", "Resistivity (log10 ohm-m)"}, {"Phase", "Phase (deg)"}}},
          std::move(channels)};
}

std::vector<ResponseChannel> tipper_channels(const OccamResponse& response) {
  std::vector<ResponseChannel> channels;
  add_channel(
      channels, "TE",
      {if_present(response, DataType::te_real_tipper), if_present(response, DataType::te_imaginary_tipper)});
  return channels;
}

std::vector<ResponseChannel> impedance_channels(const OccamResponse& response) {
  std::vector<ResponseChannel> channels;
  add_channel(channels, te_mode.name,
              {if_present(response, DataType::te_real_impedance),
               if_present(response, DataType::te_imaginary_impedance)});
  add_channel(channels, tm_mode.name,
              {if_present(response, DataType::tm_real_impedance),
               if_present(response, DataType::tm_imaginary_impedance)});
  return channels;
}

double number(const OccamResponse::Row& row, ResponseValue k) {
  return static_cast<double>(row[k - std::size_t{1}]);
}

double datum_error(const OccamResponse::Row& row) {
  const double misfit = number(row, ResponseValue::misfit);
  return is_absent(misfit) || misfit == 0.0 ? no_data
                                            : std::abs(number(row, ResponseValue::residual) / misfit);
}

DrawnDatum logarithms(const DrawnDatum& linear) {
  const double datum = number(linear.values, ResponseValue::observed);
  const double model = number(linear.values, ResponseValue::modelled);
  const auto log10_of = [](double value) { return value > 0.0 ? std::log10(value) : double{no_data}; };
  const bool both = datum > 0.0 && model > 0.0;
  DrawnDatum drawn = linear;
  drawn.values = {static_cast<float>(log10_of(datum)),
                  both ? static_cast<float>(std::log10(datum / model)) : no_data,
                  static_cast<float>(log10_of(model)), linear.values[ResponseValue::misfit - 1]};
  if (!is_absent(linear.error)) {
    drawn.error = datum > 0.0 ? linear.error / (datum * std::numbers::ln10) : double{no_data};
  }
  return drawn;
}

DrawnDatum times(DrawnDatum drawn, double factor) {
  for (const ResponseValue k : {ResponseValue::observed, ResponseValue::residual, ResponseValue::modelled}) {
    drawn.values[k - std::size_t{1}] = static_cast<float>(number(drawn.values, k) * factor);
  }
  drawn.error = is_absent(drawn.error) ? drawn.error : drawn.error * factor;
  return drawn;
}

}  // namespace

std::vector<ResponseView::Curve> ResponseView::curves(Pane pane) const {
  std::vector<Curve> curves;
  for (const ResponseChannel& channel : channels) {
    const auto type = channel.type(pane);
    if (type && std::ranges::find(curves, *type, &Curve::type) == curves.end()) {
      curves.push_back({*type, &channel});
    }
  }
  return curves;
}

std::string ResponseView::title(Pane pane, const ResponseChannel& channel) const {
  std::string title = text(pane).title;
  if (has_modes()) {
    title.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(title.front())));
    title = channel.name + " " + title;
  }
  return title;
}

std::vector<ResponseView> response_views(const OccamResponse& response) {
  std::vector<ResponseView> views{resistivity_view(resistivity_channels(response)),
                                  {"Tipper",
                                   {{{"Real tipper", "Re Hz/Hy"}, {"Imaginary tipper", "Im Hz/Hy"}}},
                                   tipper_channels(response)},
                                  {"Impedance",
                                   {{{"Real impedance", "Re Z sqrt(T) (ohm sqrt(s))"},
                                     {"Imaginary impedance", "Im Z sqrt(T) (ohm sqrt(s))"}}},
                                   impedance_channels(response)}};
  std::erase_if(views, [](const ResponseView& view) { return view.channels.empty(); });
  if (views.empty()) {
    views.push_back(resistivity_view({{tm_mode.name, {tm_mode.resistivity, tm_mode.phase}}}));
  }
  return views;
}

DrawnDatum drawn_datum(const OccamResponse& response, DataType type, int site_number, int frequency_number) {
  DrawnDatum drawn{.values = response.row(type, site_number, frequency_number)};
  if (is_absent(number(drawn.values, ResponseValue::observed))) {
    return drawn;
  }
  drawn.error = datum_error(drawn.values);
  const TypeMeaning* const meaning = find_meaning(type);
  switch (meaning != nullptr ? meaning->quantity : Quantity::phase) {
    case Quantity::resistivity:
      return logarithms(drawn);
    case Quantity::real_impedance:
    case Quantity::imaginary_impedance:
      return times(
          drawn, 1.0 / std::sqrt(response.resp_frequencies[static_cast<std::size_t>(frequency_number) - 1]));
    default:
      return drawn;
  }
}

}  // namespace Module_occam
