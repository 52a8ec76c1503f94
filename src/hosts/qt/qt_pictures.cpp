#include "hosts/qt/qt_pictures.h"

#include <QDir>

#include "hosts/qt/qt_text.h"

// A library's resource has to be registered, by a function outside all namespaces.
static void LoadPictures() {
  Q_INIT_RESOURCE(pictures);
}

namespace tarnvale {

QIcon PictureNamed(const std::string& name) {
  LoadPictures();
  QIcon picture;
  if (name.empty()) return picture;
  const QDir sizes(":/pictures/" + ToQt(name));
  for (const QString& size : sizes.entryList()) picture.addFile(sizes.filePath(size));
  return picture;
}

}  // namespace tarnvale
