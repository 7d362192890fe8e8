#include "batch/rotate_option.h"

#include "tensor/rotated_readings.h"

namespace Batch {

void add_rotate_option(Parser& parser, std::optional<double>& azimuth, const char* help) {
  parser.add_option("--rotate", azimuth, help).checked([](const std::string& text) {
    return Module_tensor::is_rotation_azimuth(Module_tensor::azimuth_of(text))
               ? std::string()
               : text + " is no angle from -180 to 360 degrees";
  });
}

}  // namespace Batch
