// Any bytes as a transfer function in XML, written as EDI and as XML again: what other packages are given
// says what was read.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>

#include "formats/edi/edi_parser.h"
#include "formats/edi/edi_writer.h"
#include "formats/emtf_xml/emtf_xml.h"
#include "formats/emtf_xml/emtf_xml_writer.h"
#include "fuzz/input_file.h"

namespace tf = formats::transfer_function;

namespace {

/// Nine digits are written.
bool is_alike(double value, double again) {
  return (std::isnan(value) && std::isnan(again)) || std::abs(value - again) <= 1e-8 * std::abs(value);
}

/// Points in the order in which they are written, each frequency once, and those alone that have a value.
tf::SiteDocument document_of(tf::TransferFunction function) {
  tf::SiteDocument site;
  std::erase_if(function.points, [](const tf::Point& point) {
    return std::ranges::none_of(point.values, &tf::Value::has_value);
  });
  std::ranges::sort(function.points, std::ranges::greater{}, &tf::Point::frequency);
  const auto same = [](const tf::Point& a, const tf::Point& b) { return a.frequency == b.frequency; };
  function.points.erase(std::unique(function.points.begin(), function.points.end(), same),
                        function.points.end());
  site.function = std::move(function);
  site.id = "site";
  site.line = "200E";
  site.survey = site.function.site.name;
  site.program = "Brenlox";
  return site;
}

bool says_the_same(const tf::TransferFunction& before, const tf::TransferFunction& after) {
  if (after.points.size() != before.points.size()) return false;
  for (std::size_t i = 0; i < before.points.size(); ++i) {
    // An archive lists periods from short to long.
    const tf::Point& again = after.points[i];
    if (!is_alike(before.points[i].frequency, again.frequency)) return false;
    for (std::size_t c = 0; c < tf::component_count; ++c) {
      const tf::Value& value = before.points[i].values[c];
      if (value.has_value() && (!is_alike(value.value.real(), again.values[c].value.real()) ||
                                !is_alike(value.value.imag(), again.values[c].value.imag()))) {
        return false;
      }
    }
  }
  return true;
}

void check_edi(const tf::SiteDocument& site) {
  const std::string text = formats::edi::edi_text(site);
  LineReader lines(
      write_input_file(reinterpret_cast<const std::uint8_t*>(text.data()), text.size(), "input.edi"));
  formats::FileReport report;
  formats::edi::EdiMtParser parser(lines, report);
  formats::edi::EdiSection section;
  if (!parser.next_section(section) || !report.failure.empty()) std::abort();
  if (section.frequencies.size() != site.function.points.size()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  formats::FileReport report;
  tf::TransferFunction function =
      formats::emtf_xml::read_emtf_xml(std::string(reinterpret_cast<const char*>(data), size), report);
  const tf::SiteDocument site = document_of(std::move(function));
  if (site.function.points.empty()) return 0;
  formats::FileReport again;
  const tf::TransferFunction read =
      formats::emtf_xml::read_emtf_xml(formats::emtf_xml::emtf_xml_text(site), again);
  if (!says_the_same(site.function, read)) std::abort();
  check_edi(site);
  return 0;
}
