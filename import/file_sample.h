// file_sample.h: one file as the choices of an import would take it, for a look before the import.
#pragma once
#include <map>
#include <string>
#include <vector>

#include "import/file_decode.h"
#include "import/readers/edi_mt_reader.h"

namespace Module_data_file {

struct FileSample {
  SampleFields fields;
  std::string fault;               // what keeps the choices from being imported; empty if nothing does
  std::vector<std::string> notes;  // "This file has impedances only"
};

/// Gives samples of files; each file is read through once in the sampler's life.
class FileSampler {
 public:
  /// Fields that the choices don't give yet are empty. A file that can't be read has its fault and no date.
  FileSample sample(const std::string& file, const ImportChoices& choices);

 private:
  const EdiTraits& traits_of(const std::string& file);

  std::map<std::string, EdiTraits> traits_;
};

}  // namespace Module_data_file
