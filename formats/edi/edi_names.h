// edi_names.h: what an EDI file calls its site, where its sections have no name.
#pragma once
#include <cstdint>
#include <string>

namespace formats::edi {

struct EdiNames {
  std::string DATAID;         // of the head, as written without its quotes; empty if it is missing
  std::int32_t sections = 0;  // of the kind of the first one
};

/// Goes through the tags of a file. Throws std::runtime_error if it can't be read.
EdiNames read_edi_names(const std::string& file);

}  // namespace formats::edi
