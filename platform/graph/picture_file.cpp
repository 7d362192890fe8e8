#include "platform/graph/picture_file.h"

#include <string_view>

#include "platform/files/safe_files.h"

namespace graph {

PictureFile::PictureFile(const QString& path) : path_(path) { bytes_.open(QIODevice::WriteOnly); }

void PictureFile::finish() {
  const QByteArray& bytes = bytes_.data();
  safe_files::write_into_place(path_.toStdString(),
                               std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

}  // namespace graph
