// edi_spectra_reader.h: EDI files of cross-spectra into the survey.
#pragma once
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "import/readers/section_stations.h"
#include "numerics/geodesy/coordinate_transforms.h"

namespace Module_data_file {

/// Reads each section of the file, estimating the impedance tensor of each frequency; an import stores it as
/// four readings, one for each tensor element, and with a channel of Hz its tipper as two. A FieldReader. A
/// frequency without a tensor is left out, and a section without any is not stored; the report says why.
[[nodiscard]] int read_edi_spectra(FileTask& task);

/// What a section's tensors show.
struct SpectraLook {
  SectionHead head;
  std::vector<float> frequencies;  // Hz; those that have a tensor
  std::vector<float> yx_phases;    // degrees, for each of them
};

struct SpectraHead {
  bool has_remote = false;  // channels of a remote reference
  std::optional<numerics::geodesy::GeographicPlace> place;
};

/// Goes through the sections of a file that an import would take, and has `take` look at each. What can't be
/// read goes into the report. Throws std::runtime_error if the file can't be read.
SpectraHead look_at_spectra(const std::string& file, formats::FileReport& report,
                            const std::function<void(const SpectraLook&)>& take);

}  // namespace Module_data_file
