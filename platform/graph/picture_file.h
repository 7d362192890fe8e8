// picture_file.h: a picture or document, written in one step.
#pragma once
#include <QBuffer>
#include <QString>

namespace graph {

/// Collects the bytes in memory and writes them in one step, so that an earlier file at the path stays until
/// the new one is on the disk.
class PictureFile {
 public:
  explicit PictureFile(const QString& path);

  /// Where to write the bytes.
  QIODevice& device() { return bytes_; }

  /// Throws std::runtime_error with the system's description; an earlier file is then as before.
  void finish();

 private:
  QString path_;
  QBuffer bytes_;
};

}  // namespace graph
