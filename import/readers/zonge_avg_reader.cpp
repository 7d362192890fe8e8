#include "import/readers/zonge_avg_reader.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "core/absent_value.h"
#include "core/file_names.h"
#include "core/line_reader.h"
#include "core/number_text.h"
#include "formats/head_dates.h"
#include "formats/zonge/zonge_avg_parser.h"
#include "formats/zonge/zonge_avg_set.h"
#include "formats/zonge/zonge_stn_file.h"
#include "import/file_formats.h"
#include "import/readers/edi_curves.h"
#include "import/readers/reader_steps.h"
#include "import/readers/site_curves.h"
#include "import/readers/station_places.h"
#include "import/readers/tipper_curves.h"

namespace Module_data_file {

using formats::remark_ignored;
using formats::remark_unreadable;
using formats::edi::EdiElement;
using formats::edi::EdiTipper;
using formats::transfer_function::Component;
using formats::transfer_function::Point;
using formats::transfer_function::TransferFunction;
using formats::transfer_function::Value;
using formats::zonge::AvgStation;
using formats::zonge::ZongeStation;

namespace {

constexpr std::array<Component, 4> elements{Component::zxx, Component::zxy, Component::zyx, Component::zyy};

// These files have errors of resistivity and of phase that repeats have shown, independent of each other. The
// variance that goes with the one would take the other's place.
void take_own_errors(TransferFunction& function) {
  for (Point& point : function.points) {
    for (const Component component : elements) {
      point.of(component).variance = formats::transfer_function::not_given;
    }
  }
}

// A curve whose table names no component stands as that of xy.
void move_curve(TransferFunction& function, Component component) {
  if (component != Component::zxy) {
    for (Point& point : function.points) {
      point.of(component) = std::exchange(point.of(Component::zxy), Value{});
    }
  }
}

std::vector<ZongeStation> stations_beside(FileTask& task) {
  std::vector<ZongeStation> places;
  if (const std::optional<std::string> stn_file = formats::zonge::find_beside(task.file, "stn")) {
    places = formats::zonge::read_stn_file(*stn_file, task.report, formats::zonge::UnreadPlace::left_out);
    std::ranges::stable_sort(places, {}, &ZongeStation::station);
    // A file of zeros has no heights; among others a 0 is one at sea level.
    if (std::ranges::all_of(places, [](const ZongeStation& each) { return each.elevation == 0.0; })) {
      std::ranges::for_each(places, [](ZongeStation& each) { each.has_elevation = false; });
    }
  }
  return places;
}

class AverageStore {
 public:
  AverageStore(FileTask& task, std::vector<AvgStation>& stations)
      : task_(task), stations_(stations), places_(stations_beside(task)) {}

  /// @return false after a failure to store, whose message was shown
  bool store() {
    set_up_header();
    for (AvgStation& station : stations_) {
      prepare(station);
    }
    const std::vector<float> phases = phases_of_all();
    turn_ = turns_ey(task_.record, [&] { return mostly_in_third_quadrant(phases); });
    note_signs(phases);
    for (const AvgStation& station : stations_) {
      if (!take(station)) {
        return false;
      }
      if (task_.progress) {
        task_.progress(task_.report.sections, static_cast<std::int64_t>(stations_.size()));
      }
    }
    remark_on_places();
    return true;
  }

 private:
  void set_up_header();
  void take_set();
  void prepare(AvgStation& station);
  [[nodiscard]] std::vector<float> phases_of_all() const;
  void note_signs(const std::vector<float>& phases);
  StationPlace place_of(const AvgStation& station);
  void remark_on_places();
  bool take(const AvgStation& station);
  bool take_curves(const AvgStation& station, const SiteReadings& readings);

  FileTask& task_;
  std::vector<AvgStation>& stations_;
  std::vector<ZongeStation> places_;  // of the .stn file, by number
  std::string data_type_;             // of a set that this program has written; empty for any other file
  bool turn_ = false;
  std::int64_t between_ = 0;  // stations that lie between those of the .stn file
  std::int64_t without_ = 0;  // that it doesn't have
  std::string utm_zone_;      // of the map coordinates that were taken from the file itself
};

// The header's row is about all stations; what it has only once is that of the first.
void AverageStore::set_up_header() {
  ReadingRecord& record = task_.record;
  const AvgStation& first = stations_.front();
  record.EventNumber = 0;
  record.Station = first.station;
  record.DipoleLength = record.StationSpacing = static_cast<float>(first.dipole.value_or(usual_dipole));
  record.Orientation = static_cast<float>(first.function.site.x_azimuth.value_or(0.0));
  record.Filter = filter_zonge_avg;
  const std::string& date = first.function.site.date;
  if (const std::optional<double> days = formats::head_date(date)) {
    record.DateCollected = record.DateAnalysed = *days;
  } else if (!date.empty()) {
    remark_unreadable(task_.report, 0,
                      "date " + formats::in_quotes(date) + " can't be read, taken as 1 January 1900");
  }
  if (!first.names_component) {
    take_set();
  }
}

void AverageStore::take_set() {
  const std::string name = Module_util::file_name_only(task_.file);
  const std::optional<std::string> data_type = formats::zonge::data_type_in_name(name);
  data_type_ = data_type.value_or(std::string(tensor_data_types[1]));
  if (!data_type) {
    remark_unreadable(
        task_.report, 0,
        "neither its table nor its name, which ends with no data type, say what the file holds; it "
        "is taken as ExHy");
  }
  if (const std::optional<std::string> mde_file = formats::zonge::find_beside(task_.file, "mde")) {
    const std::string name_of_line = formats::zonge::line_of_mde(*mde_file);
    const auto line = line_of_file(name_of_line, task_.record.choices.line_direction);
    if (line && !line->empty()) {
      task_.record.line_in_file = name_of_line;
      task_.record.LineNumber = *line;
    }
  }
}

void AverageStore::prepare(AvgStation& station) {
  take_own_errors(station.function);
  const auto element = std::ranges::find(tensor_data_types, data_type_);
  if (!station.names_component && element != tensor_data_types.end()) {
    move_curve(station.function, elements[static_cast<std::size_t>(element - tensor_data_types.begin())]);
  }
}

std::vector<float> AverageStore::phases_of_all() const {
  std::vector<float> phases;
  for (const AvgStation& station : stations_) {
    std::ranges::copy(own_phases_of_yx(station.function), std::back_inserter(phases));
  }
  return phases;
}

void AverageStore::note_signs(const std::vector<float>& phases) {
  const auto has_sign = [](bool negative) {
    return [negative](float phase) { return !is_absent(phase) && (phase < 0.0F) == negative; };
  };
  task_.report.all_yx_phases_negative = data_type_.empty() && std::ranges::any_of(phases, has_sign(true)) &&
                                        std::ranges::none_of(phases, has_sign(false));
}

// A dipole is centred between the stakes at its ends, and these may be what the .stn file numbers.
StationPlace AverageStore::place_of(const AvgStation& station) {
  const formats::transfer_function::Site& site = station.function.site;
  StationPlace place;
  place.site = {site.latitude, site.longitude, site.elevation, site.datum};
  constexpr double dipoles_in_gap = 2.0;
  const double longest_gap = dipoles_in_gap * station.dipole.value_or(usual_dipole);
  if (const auto found = formats::zonge::place_among(places_, station.station, longest_gap)) {
    between_ += std::ranges::binary_search(places_, station.station, {}, &ZongeStation::station) ? 0 : 1;
    place.map = MapPosition{found->x, found->y};
    place.site.elevation = found->has_elevation ? std::optional(found->elevation) : place.site.elevation;
    return place;
  }
  without_ += places_.empty() ? 0 : 1;
  if (station.place) {
    place.site.elevation = station.place->elevation;
    const bool converts = task_.record.choices.convert_coordinates && site.latitude && site.longitude;
    if (!converts) {
      place.map = MapPosition{station.place->east, station.place->north};
      utm_zone_ = utm_zone_.empty() ? station.place->utm_zone : utm_zone_;
    }
  }
  return place;
}

void AverageStore::remark_on_places() {
  using formats::zonge::stations_missing;
  if (between_ > 0) {
    remark_ignored(task_.report, 0,
                   stations_missing(between_) + "; placed in proportion between those of it on both sides");
  }
  if (!utm_zone_.empty()) {
    remark_ignored(task_.report, 0,
                   "map coordinates of $Rx.Center, of UTM zone " + formats::in_quotes(utm_zone_) +
                       ", are taken as they stand, as those of the survey's map");
  }
  if (without_ > 0) {
    remark_unreadable(task_.report, 0, stations_missing(without_) + ", which gives no place there");
  }
}

bool AverageStore::take(const AvgStation& station) {
  ReadingRecord& record = task_.record;
  const TransferFunction& function = station.function;
  const SiteReadings readings(function);
  remark_on_site_tipper(readings, task_.report);
  if (readings.empty()) {
    remark_ignored(task_.report, 0, "station " + plain_text(station.station) + " has no values",
                   "stations without values");
    return true;
  }
  record.Station = station.station;
  record.DipoleLength = static_cast<float>(station.dipole.value_or(usual_dipole));
  record.axes = {};
  if (function.site.x_azimuth) {
    record.axes.HxAzimuth = static_cast<float>(*function.site.x_azimuth);
  }
  find_station_at(place_of(station), task_);
  if (!store_header_once(task_) || !take_curves(station, readings)) {
    return false;
  }
  ++task_.report.sections;
  task_.report.frequencies =
      std::max(task_.report.frequencies, static_cast<std::int32_t>(function.points.size()));
  ++record.EventNumber;  // within a file an event holds one reading of a kind
  return true;
}

// What this program writes are the points that count, whatever their signs.
void count_all(Module_database::Curve& curve) {
  for (std::size_t index = 0; index < curve.count(); ++index) {
    for (const int part : {Module_database::field_resistivity, Module_database::field_phase}) {
      curve.counts_at(part, index) = curve.is_present(part, index) ? 1 : 0;
    }
  }
}

bool AverageStore::take_curves(const AvgStation& station, const SiteReadings& readings) {
  ReadingRecord& record = task_.record;
  record.axes.EyTurned = turn_                     ? Module_database::ey_turned
                         : station.names_component ? Module_database::ey_as_measured
                                                   : Module_database::ey_not_known;
  bool has_yx = false;
  for (const EdiElement element : readings.elements) {
    const std::string data_type(station.names_component ? tensor_data_types[element] : data_type_);
    fill_site_curve(station.function, element, turn_, record.curve);
    if (!station.names_component) {
      count_all(record.curve);
    }
    if (!take_reading(task_, data_type)) {
      return false;
    }
    add_to_scan_list(record, {data_type});
    has_yx = has_yx || element == formats::edi::element_yx;
  }
  for (const EdiTipper component : readings.tipper) {
    fill_site_tipper(station.function, component, record.curve);
    if (!take_tipper_reading(task_, component)) {
      return false;
    }
    add_to_scan_list(record, {Module_database::tipper_data_types[component]});
  }
  task_.report.sections_turned += turn_ && has_yx ? 1 : 0;
  return true;
}

int read_file(FileTask& task) {
  LineReader lines(task.file);
  std::vector<AvgStation> stations = formats::zonge::read_zonge_avg(lines, task.report);
  remark_on_nul_bytes(lines, task.report);
  return stations.empty() || AverageStore(task, stations).store() ? 0 : -1;
}

}  // namespace

int read_averages(FileTask& task) {
  return run_reader(task, [&] { return read_file(task); });
}

}  // namespace Module_data_file
