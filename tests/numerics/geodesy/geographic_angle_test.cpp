#include "numerics/geodesy/geographic_angle.h"

#include <gtest/gtest.h>

using numerics::geodesy::GeographicAngle;
using numerics::geodesy::read_geographic_angle;

TEST(Geographic_angle, Is_read_in_the_forms_that_people_write) {
  struct Case {
    const char* text;
    GeographicAngle kind;
    double degrees;
  };
  constexpr GeographicAngle latitude = GeographicAngle::latitude;
  constexpr GeographicAngle longitude = GeographicAngle::longitude;
  const Case cases[] = {
      {"-22:49:25.4", latitude, -(22.0 + 49.0 / 60.0 + 25.4 / 3600.0)},
      {"+139:17:40.7", longitude, 139.0 + 17.0 / 60.0 + 40.7 / 3600.0},
      {"-0:30:00", latitude, -0.5},  // the sign is before a zero
      {"-00:00:36", longitude, -0.01},
      {"22:30", latitude, 22.5},
      {"22:30 S", latitude, -22.5},
      {"22:30S", latitude, -22.5},
      {"s22.5", latitude, -22.5},
      {"70:15:00w", longitude, -70.25},
      {"E 70 15 00", longitude, 70.25},
      {"12:34: 9.99", latitude,
       12.0 + 34.0 / 60.0 + 9.99 / 3600.0},  // padded with a blank, as some files are
      {" 33.123456 ", latitude, 33.123456},
      {"-33.123456", latitude, -33.123456},
      {"3.5E1", latitude, 35.0},
      {"35E", longitude, 35.0},
      {"22\xC2\xB0"
       "30'36\"N",
       latitude, 22.51},
      {"10:59:60.00", latitude, 11.0},  // seconds rounded up by the writer
      {"90", latitude, 90.0},
      {"359.5", longitude, 359.5},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const std::optional<double> read = read_geographic_angle(c.text, c.kind);
    ASSERT_TRUE(read.has_value());
    EXPECT_NEAR(*read, c.degrees, 1e-12);
  }
}

TEST(Geographic_angle, Is_none_for_anything_else) {
  for (const char* const text : {"",         " ",      "S",        "-",        ":",       "abc",    "12:34x",
                                 "-33:30S",  "33:30E", "12:61:00", "12:30:61", "12.5:30", "12:-30", "1:2:3:4",
                                 "90:00:01", "91",     "nan",      "inf",      "1e400",   "12,5"}) {
    SCOPED_TRACE(text);
    EXPECT_FALSE(read_geographic_angle(text, GeographicAngle::latitude).has_value());
  }
  EXPECT_FALSE(read_geographic_angle("33:30N", GeographicAngle::longitude).has_value());
  EXPECT_FALSE(read_geographic_angle("360:00:01", GeographicAngle::longitude).has_value());
}
