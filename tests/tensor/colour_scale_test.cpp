#include "tensor/colour_scale.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

using namespace Module_tensor;

namespace {

struct Linear {
  double red = 0.0;
  double green = 0.0;
  double blue = 0.0;
};

double linear(std::uint8_t component) {
  const double share = component / 255.0;
  return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

Linear linear(const graph::Colour& colour) {
  return {linear(colour.red), linear(colour.green), linear(colour.blue)};
}

// CIE 1976 L*, D65.
double lightness(const Linear& colour) {
  const double y = 0.2126 * colour.red + 0.7152 * colour.green + 0.0722 * colour.blue;
  return y > 0.008856 ? 116.0 * std::cbrt(y) - 16.0 : 903.3 * y;
}

// As dichromats see it: Vienot, Brettel & Mollon (1999), Color Research and Application 24, 243-252.
Linear to_protanope(const Linear& c) {
  const double seen = 0.11238 * c.red + 0.88762 * c.green;
  return {seen, seen, 0.00401 * c.red - 0.00401 * c.green + c.blue};
}
Linear to_deuteranope(const Linear& c) {
  const double seen = 0.29275 * c.red + 0.70725 * c.green;
  return {seen, seen, -0.02234 * c.red + 0.02234 * c.green + c.blue};
}

// CIE 1976 L*a*b*.
double distance(const Linear& first, const Linear& second) {
  const auto lab = [](const Linear& c) {
    const auto f = [](double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116.0; };
    const double x = f((0.4124 * c.red + 0.3576 * c.green + 0.1805 * c.blue) / 0.9505);
    const double y = f(0.2126 * c.red + 0.7152 * c.green + 0.0722 * c.blue);
    const double z = f((0.0193 * c.red + 0.1192 * c.green + 0.9505 * c.blue) / 1.089);
    return std::array{116.0 * y - 16.0, 500.0 * (x - y), 200.0 * (y - z)};
  };
  const auto a = lab(first);
  const auto b = lab(second);
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

std::vector<Linear> colours(ScalePalette palette, bool inverted = false) {
  std::vector<Linear> result;
  const graph::Palette entries = scale_palette(palette, inverted);
  for (int i = graph::first_palette_entry; i <= graph::last_palette_entry; ++i) {
    result.push_back(linear(entries[static_cast<std::size_t>(i)]));
  }
  return result;
}

}  // namespace

TEST(Colour_scale, Sequential_colours_grow_lighter_by_even_steps) {
  const auto palette = colours(ScalePalette::sequential);
  const double whole = lightness(palette.back()) - lightness(palette.front());
  EXPECT_GT(whole, 70.0);
  constexpr std::size_t step = 16;
  for (std::size_t i = 0; i + step < palette.size(); ++i) {
    const double part = lightness(palette[i + step]) - lightness(palette[i]);
    EXPECT_NEAR(part / whole, step / 253.0, 0.35 * step / 253.0) << i;
  }
}

TEST(Colour_scale, Diverging_colours_are_lightest_in_the_middle_and_alike_at_both_sides) {
  const auto palette = colours(ScalePalette::diverging);
  const std::size_t middle = palette.size() / 2;
  for (std::size_t i = 8; i < palette.size(); ++i) {
    const double difference = lightness(palette[i]) - lightness(palette[i - 8]);
    if (i < middle) {
      EXPECT_GT(difference, 0.0) << i;
    } else if (i - 8 > middle) {
      EXPECT_LT(difference, 0.0) << i;
    }
  }
  for (std::size_t i = 0; i < middle; ++i) {
    EXPECT_NEAR(lightness(palette[i]), lightness(palette[palette.size() - 1 - i]), 10.0) << i;
  }
}

TEST(Colour_scale, Own_palettes_say_the_same_to_people_who_dont_see_red_or_green) {
  for (const auto& seen : {to_protanope, to_deuteranope}) {
    const auto sequential = colours(ScalePalette::sequential);
    const auto diverging = colours(ScalePalette::diverging);
    constexpr std::size_t tenth = 25;
    for (std::size_t i = 0; i + tenth < sequential.size(); ++i) {
      EXPECT_GT(distance(seen(sequential[i]), seen(sequential[i + tenth])), 5.0) << i;
    }
    // The two signs at equal distances from the middle, but for the twelfth of the scale next to it.
    const std::size_t last = diverging.size() - 1;
    for (std::size_t i = 0; i < last / 2 - last / 12; ++i) {
      EXPECT_GT(distance(seen(diverging[i]), seen(diverging[last - i])), 15.0) << i;
    }
  }
}

TEST(Colour_scale, Values_find_their_colours_and_an_inverted_scale_the_opposite_ones) {
  for (std::size_t palette = 0; palette < scale_palette_names.size(); ++palette) {
    const ColourScale scale{static_cast<ScalePalette>(palette), 1.0, 3.0, false};
    ColourScale opposite = scale;
    opposite.inverted = true;
    const graph::Palette entries = scale_palette(scale.palette, false);
    const graph::Palette inverted = scale_palette(scale.palette, true);
    EXPECT_EQ(scale.colour_of(-5.0), entries[2]);
    EXPECT_EQ(scale.colour_of(3.5), entries[255]);
    EXPECT_EQ(scale.colour_of(2.0), entries[129]);
    EXPECT_EQ(opposite.colour_of(-5.0), entries[255]);
    for (const double value : {1.0, 1.3, 2.0, 2.9, 3.0}) {
      EXPECT_EQ(opposite.colour_of(value),
                inverted[static_cast<std::size_t>(graph::palette_entry(value, 1.0, 3.0))]);
    }
  }
}
