#include "tensor/windows/pseudo_section_file.h"

#include "core/trap_errors.h"
#include "platform/graph/painted_file.h"
#include "platform/widgets/panel_controls.h"

namespace Module_tensor {

int save_pseudo_sections(const std::string& path, std::span<const PseudoSectionPicture> pictures,
                         const PseudoSectionView& view, QSize size) {
  return trap_errors("An error occurred while saving the pseudo-section: ", [&] {
    const QString title = pictures.empty() ? QString() : pictures.front().title;
    const QSize all(size.width() * static_cast<int>(pictures.size()), size.height());
    graph::write_painted(qt_text(path), title, all, [&](QPainter& painter, const QRectF&) {
      for (const PseudoSectionPicture& picture : pictures) {
        paint_pseudo_section(painter, size, picture, view);
        painter.translate(size.width(), 0.0);
      }
    });
  });
}

}  // namespace Module_tensor
