// Files that are dragged onto a field.
#pragma once

#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QStringList>
#include <QUrl>

#include <utility>
#include <vector>

#include "hosts/qt/peers/peer.h"
#include "platform/files.h"

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

/// The same files by the program's paths; what no path can name is left out.
inline std::vector<Path> ProgramPathsOf(const QStringList& files, const PeerContext& context) {
  std::vector<Path> paths;
  for (const QString& file : files) {
    Path path = context.program_path(QFile::encodeName(file).toStdString());
    if (!path.empty()) paths.push_back(std::move(path));
  }
  return paths;
}

}  // namespace tarnvale
