// The little pictures that the host's own parts of a window need.
#pragma once

#include <QIcon>
#include <QPixmap>

#include "ui/message_boxes.h"

namespace tarnvale {

/// The picture beside a message's text, 32 logical pixels wide; empty for kNone.
QPixmap BoxPicture(BoxIcon icon, qreal pixel_ratio);

/// In lists and trees, 16 logical pixels wide.
QIcon FileIcon();
QIcon FolderIcon();
QIcon ComputerIcon();

}  // namespace tarnvale
