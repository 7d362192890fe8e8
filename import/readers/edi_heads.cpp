#include "import/readers/edi_heads.h"

namespace Module_data_file {

using formats::FileReport;
using formats::remark_unreadable;
using formats::edi::EdiChannel;
using formats::edi::EdiSectionHead;

SectionHead section_head(const EdiSectionHead& section) {
  SectionHead head;
  head.line_number = section.line_number;
  head.name = section.SECTID;
  return head;
}

void take_file_place(const formats::edi::EdiPlace& place, ReadingRecord& record) {
  if (place.geographic) {
    record.place.latitude = place.geographic->latitude;
    record.place.longitude = place.geographic->longitude;
  }
  record.place.elevation = place.elevation;
  record.place.datum = place.datum;
}

void take_section_place(const EdiSectionHead& section, ReadingRecord& record, FileReport& report) {
  record.Orientation = 0.0F;
  record.axes = {};
  record.MapX = record.MapY = 0.0;
  record.Elevation = record.place.elevation.value_or(0.0);
  if (!section.local_hx) {
    remark_unreadable(report, section.line_number,
                      "the section names no local HX channel; place and orientation are 0");
    return;
  }
  const EdiChannel& hx = *section.local_hx;
  record.Orientation = record.axes.HxAzimuth = static_cast<float>(hx.AZM);
  record.MapX = hx.Y;
  record.MapY = hx.X;
  if (hx.Z != 0.0) {
    record.Elevation = hx.Z;
  }
}

}  // namespace Module_data_file
