#include "tests/formats/edi/made_edi.h"

std::string made_edi(const std::vector<MadeSection>& sections) {
  std::string text =
      ">HEAD\n"
      "  DATAID=\"MADE\"\n"
      "  ACQDATE=10/21/19\n"
      "  FILEDATE=2019-10-22\n"
      "  UNITS=M\n"
      ">=DEFINEMEAS\n"
      ">HMEAS ID=1.001 CHTYPE=HX X=11 Y = 22. Z=33 AZM= 12.5\n"
      ">HMEAS ID=2.001 CHTYPE=HY X=0 Y=0 Z=0 AZM=90\n"
      ">EMEAS ID=3.001 CHTYPE=EX X=0 Y=0 X2=50 Y2=0\n"
      ">EMEAS ID=4.001 CHTYPE=EY X=0 Y=0 X2=0 Y2=50\n"
      ">HMEAS ID=5.001 CHTYPE=HX X=900 Y=900 Z=900 AZM=45\n"
      ">HMEAS ID=6.001 CHTYPE=HY X=900 Y=900 Z=900 AZM=135\n";
  for (const MadeSection& section : sections) {
    text += ">=MTSECT\n  SECTID=" + section.sectid + "\n  NFREQ=" + std::to_string(section.count) +
            "\n  HX=1.001\n  HY=2.001\n  EX=3.001\n  EY=4.001\n  RX=5.001\n\n>FREQ //" +
            std::to_string(section.count) + "\n" + section.frequencies + "\n" + section.blocks;
  }
  return text + ">END\n";
}

std::string made_local_edi(const std::vector<MadeSection>& sections) {
  const std::string text = made_edi(sections);
  const std::size_t remote = text.find(">HMEAS ID=5.001");
  const std::size_t behind = text.find(">=MTSECT");
  return replaced(text.substr(0, remote) + text.substr(behind), "  RX=5.001\n", "");
}

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t place = text.find(from); place != std::string::npos;
       place = text.find(from, place + to.size())) {
    text.replace(place, from.size(), to);
  }
  return text;
}
