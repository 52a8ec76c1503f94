// Files that are dragged onto a field.
#pragma once

#include <QDropEvent>
#include <QMimeData>
#include <QStringList>
#include <QUrl>

namespace tarnvale {

/// True when the drag carries files; it is then accepted or refused already.
inline bool AnswerFileDrag(QDropEvent& event, bool takes_files) {
  if (!event.mimeData()->hasUrls()) return false;
  if (takes_files) {
    event.setDropAction(Qt::CopyAction);
    event.accept();
  } else {
    event.ignore();
  }
  return true;
}

/// The native paths of what was dropped; what isn't a local file is left out.
inline QStringList FilesOf(const QDropEvent& event) {
  QStringList files;
  for (const QUrl& url : event.mimeData()->urls()) {
    if (url.isLocalFile()) files << url.toLocalFile();
  }
  return files;
}

}  // namespace tarnvale
