// made_edi.h: EDI texts made to measure.
#pragma once
#include <string>
#include <string_view>
#include <vector>

/// One section with a >FREQ block and whatever blocks are given as text behind it.
struct MadeSection {
  std::string sectid = "\"12\"";
  int count = 3;                            // NFREQ
  std::string frequencies = "100. 10. 1.";  // values of >FREQ
  std::string blocks = ">RHOXY //3\n1 2 3\n>PHSXY //3\n45 -45 30\n";
};

/// A whole file: head, two local and two remote magnetic channels, sections, >END.
std::string made_edi(const std::vector<MadeSection>& sections = {MadeSection{}});

/// The same without the remote channels.
std::string made_local_edi(const std::vector<MadeSection>& sections = {MadeSection{}});

/// `text` with each `from` replaced by `to`.
std::string replaced(std::string text, std::string_view from, std::string_view to);
