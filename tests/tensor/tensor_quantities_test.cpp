#include "tensor/tensor_quantities.h"

#include <algorithm>
#include <cmath>
#include <complex>

#include <gtest/gtest.h>

using namespace Module_tensor;

namespace {

StationTensor station_in_axes(double axes) {
  StationTensor station;
  station.axes = axes;
  station.points.resize(1);
  station.points[0].frequency = 1.0;
  station.points[0].tensor.z = {std::complex(1.0, 2.0), {10.0, 8.0}, {-9.0, -11.0}, {-0.5, -1.0}};
  station.tipper.resize(1);
  station.tipper[0].frequency = 1.0;
  station.tipper[0].tipper.x = {0.10, 0.02};
  station.tipper[0].tipper.y = {-0.25, 0.05};
  return station;
}

}  // namespace

// The same ground, measured in axes of 70 degrees and of north: angles from north, what doesn't depend on
// axes, and elements in axes of 30 degrees are the same.
TEST(Tensor_quantities, Are_the_same_whatever_axes_a_station_was_measured_in) {
  const StationTensor measured = station_in_axes(70.0);
  const StationTensor north = turned_to(measured, 0.0);
  const auto of_measured = points_of(measured);
  const auto of_north = points_of(north);
  ASSERT_EQ(of_measured.size(), 1U);
  const auto depends_on_axes = [](const std::string& name) {
    return name.starts_with("z_") || name.starts_with("tx_") || name.starts_with("ty_") || name == "pt_xx" ||
           name == "pt_xy" || name == "pt_yx" || name == "pt_yy" || name.ends_with("_xy") ||
           name.ends_with("_yx");
  };
  std::size_t compared = 0;
  for (const TensorQuantity& quantity : tensor_quantities(30.0)) {
    SCOPED_TRACE(quantity.name);
    const bool is_turned = quantity.name.find("30") != std::string::npos;
    if (!is_turned && depends_on_axes(quantity.name)) {
      continue;
    }
    const double value = quantity.of(of_measured[0]).value;
    EXPECT_NEAR(quantity.of(of_north[0]).value, value, 1e-9 * (1.0 + std::abs(value)));
    ++compared;
  }
  EXPECT_GT(compared, 40U);
  const auto quantities = tensor_quantities();
  const auto azimuth = std::ranges::find(quantities, "pt_azimuth", &TensorQuantity::name);
  EXPECT_NEAR(azimuth->of(of_measured[0]).value, 9.602 + 70.0, 1e-3);  // 9.602 from x
}

TEST(Tensor_quantities, Have_rows_for_tensors_and_for_tippers_alone) {
  StationTensor station = station_in_axes(0.0);
  station.tipper[0].frequency = 0.5;
  const auto points = points_of(station);
  ASSERT_EQ(points.size(), 2U);
  EXPECT_EQ(points[0].frequency(), 0.5);
  EXPECT_EQ(points[0].tensor(), nullptr);
  EXPECT_EQ(points[1].tipper(), nullptr);
  for (const TensorQuantity& quantity : tensor_quantities(30.0)) {
    SCOPED_TRACE(quantity.name);
    EXPECT_NE(quantity.of(points[0]).has_value(), quantity.of(points[1]).has_value());
  }
}
