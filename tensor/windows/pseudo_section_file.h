// pseudo_section_file.h: pseudo-sections as PNG and PDF.
#pragma once
#include <QSize>
#include <span>
#include <string>

#include "tensor/windows/pseudo_section_painter.h"

namespace Module_tensor {

/// Writes sections side by side, by the ending of the path.
/// @param size  of each, device-independent pixels
/// @return 0, or -1 after a message; an earlier file at the path is then as before
[[nodiscard]] int save_pseudo_sections(const std::string& path,
                                       std::span<const PseudoSectionPicture> pictures,
                                       const PseudoSectionView& view, QSize size);

}  // namespace Module_tensor
