#include "formats/transfer_function/sound_numbers.h"

#include <cmath>

#include "formats/field_values.h"

namespace formats::transfer_function {

namespace {

constexpr double full_turn = 360.0;  // degrees
constexpr double half_turn = 180.0;

bool is_sound(double number) { return std::abs(number) <= largest_value; }  // false for NaN

void keep_if(bool kept, double& number) { number = kept ? number : not_given; }

void drop_unsound_numbers(Value& value) {
  if (!is_sound(value.value.real()) || !is_sound(value.value.imag())) {
    value.value = {not_given, not_given};
  }
  for (double* const number : {&value.resistivity, &value.phase}) {
    keep_if(is_sound(*number), *number);
  }
  for (double* const error : {&value.variance, &value.resistivity_error, &value.phase_error}) {
    keep_if(is_sound(*error) && *error > 0.0, *error);
  }
}

}  // namespace

bool is_frequency(double number) { return number >= 1.0 / largest_value && number <= largest_value; }

bool take_place(Site& site, double latitude, double longitude) {
  const bool is_place = std::abs(latitude) <= 90.0 && std::abs(longitude) <= full_turn;
  if (!is_place) {
    return false;
  }
  if (latitude != 0.0 || longitude != 0.0) {
    site.latitude = latitude;
    const double turned = longitude > half_turn ? longitude - full_turn : longitude;
    site.longitude = turned < -half_turn ? turned + full_turn : turned;
  }
  return true;
}

void drop_unsound_numbers(TransferFunction& function) {
  for (Point& point : function.points) {
    for (Value& value : point.values) {
      drop_unsound_numbers(value);
    }
  }
}

}  // namespace formats::transfer_function
