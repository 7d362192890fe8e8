#include "numerics/geodesy/datum_shift.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>

#include <proj.h>

namespace numerics::geodesy {

namespace {

constexpr std::int32_t wgs_84 = 4326;

struct DestroyContext {
  void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
};
struct DestroyObject {
  void operator()(PJ* object) const { proj_destroy(object); }
};
struct DestroyList {
  void operator()(PJ_OBJ_LIST* list) const { proj_list_destroy(list); }
};
struct DestroyFactory {
  void operator()(PJ_OPERATION_FACTORY_CONTEXT* factory) const {
    proj_operation_factory_context_destroy(factory);
  }
};
using Context = std::unique_ptr<PJ_CONTEXT, DestroyContext>;
using Object = std::unique_ptr<PJ, DestroyObject>;

Context make_context() {
  Context context(proj_context_create());
  if (context == nullptr) {
    throw std::runtime_error("the projection library can't be started");
  }
  proj_context_set_enable_network(context.get(), 0);
  proj_log_level(context.get(), PJ_LOG_NONE);
  return context;
}

Object system_of(PJ_CONTEXT* context, std::int32_t number) {
  return Object(proj_create_from_database(context, "EPSG", std::to_string(number).c_str(), PJ_CATEGORY_CRS, 0,
                                          nullptr));
}

/// The best first, as PROJ ranks them for a place.
std::unique_ptr<PJ_OBJ_LIST, DestroyList> shifts_at(PJ_CONTEXT* context, std::int32_t datum,
                                                    const GeographicPlace& place) {
  const Object from = system_of(context, datum);
  const Object to = system_of(context, wgs_84);
  const std::unique_ptr<PJ_OPERATION_FACTORY_CONTEXT, DestroyFactory> factory(
      proj_create_operation_factory_context(context, nullptr));
  if (from == nullptr || to == nullptr || factory == nullptr) {
    return nullptr;
  }
  proj_operation_factory_context_set_area_of_interest(context, factory.get(), place.longitude, place.latitude,
                                                      place.longitude, place.latitude);
  proj_operation_factory_context_set_spatial_criterion(context, factory.get(),
                                                       PROJ_SPATIAL_CRITERION_PARTIAL_INTERSECTION);
  // Otherwise the ranking would depend on the grids that a machine has.
  proj_operation_factory_context_set_grid_availability_use(context, factory.get(),
                                                           PROJ_GRID_AVAILABILITY_IGNORED);
  return std::unique_ptr<PJ_OBJ_LIST, DestroyList>(
      proj_create_operations(context, from.get(), to.get(), factory.get()));
}

/// From longitude and latitude to longitude and latitude; null if there is none.
Object best_shift(PJ_CONTEXT* context, std::int32_t datum, const GeographicPlace& place) {
  const auto shifts = shifts_at(context, datum, place);
  const int count = shifts == nullptr ? 0 : proj_list_get_count(shifts.get());
  for (int i = 0; i < count; ++i) {
    const Object shift(proj_list_get(context, shifts.get(), i));
    // A ballpark one takes both datums for the same.
    if (shift != nullptr && proj_coordoperation_get_grid_used_count(context, shift.get()) == 0 &&
        proj_coordoperation_has_ballpark_transformation(context, shift.get()) == 0) {
      return Object(proj_normalize_for_visualization(context, shift.get()));
    }
  }
  return nullptr;
}

/// Letters in upper case and digits, nothing else: "GDA 94" and "gda-94" are one datum.
std::string bare_name(std::string_view name) {
  std::string bare;
  for (const char c : name) {
    if (c >= 'a' && c <= 'z') {
      bare += static_cast<char>(c - 'a' + 'A');
    } else if ((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) {
      bare += c;
    }
  }
  return bare;
}

}  // namespace

bool is_close_to_wgs_84(std::string_view datum_name) {
  // Tied to the same centre of the earth; they have drifted apart by less than 2 m.
  constexpr std::array<std::string_view, 15> names{"WGS84",      "WGS1984",  "WORLDGEODETICSYSTEM1984",
                                                   "GDA94",      "GDA1994",  "GDA2020",
                                                   "ETRS89",     "NAD83",    "NZGD2000",
                                                   "SIRGAS2000", "JGD2000",  "JGD2011",
                                                   "CGCS2000",   "EPSG4326", "HARTEBEESTHOEK94"};
  const std::string bare = bare_name(datum_name);
  return bare.starts_with("ITRF") || std::ranges::find(names, bare) != names.end();
}

std::optional<std::vector<GeographicPlace>> shifted_to_wgs_84(std::int32_t datum,
                                                              std::span<const GeographicPlace> places) {
  std::vector<GeographicPlace> shifted(places.begin(), places.end());
  if (datum == wgs_84 || places.empty()) {
    return shifted;
  }
  thread_local const Context context = make_context();
  const Object shift = best_shift(context.get(), datum, places[places.size() / 2]);
  if (shift == nullptr) {
    return std::nullopt;
  }
  for (GeographicPlace& place : shifted) {
    const PJ_COORD result =
        proj_trans(shift.get(), PJ_FWD, proj_coord(place.longitude, place.latitude, 0.0, 0.0));
    if (!std::isfinite(result.xy.x) || !std::isfinite(result.xy.y)) {
      return std::nullopt;
    }
    place = {result.xy.y, result.xy.x};
  }
  return shifted;
}

}  // namespace numerics::geodesy
