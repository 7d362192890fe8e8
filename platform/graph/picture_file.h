// picture_file.h: a picture or document on its way to the disk.
#pragma once
#include <QBuffer>
#include <QString>

namespace graph {

/// Gathers the bytes in memory and puts them into place as a whole, so that an earlier file at the path stays
/// until the new one is on the disk.
class PictureFile {
 public:
  explicit PictureFile(const QString& path);

  /// Takes the bytes.
  QIODevice& device() { return bytes_; }

  /// Throws std::runtime_error with the system's description; an earlier file is then as before.
  void finish();

 private:
  QString path_;
  QBuffer bytes_;
};

}  // namespace graph
