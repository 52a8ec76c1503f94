// The sheets of the gallery.
#pragma once

#include <string>
#include <vector>

#include "ui/raster.h"

namespace tarnvale {

/// One picture of the gallery.
struct GallerySheet {
  std::string file;  ///< name without folder and extension
  Raster picture;
};

/// Every state of one button type, at scale 1 and 2.
GallerySheet ButtonSheet(int type);
/// Colour schemes, soft bevel, special effects.
GallerySheet ButtonColorSheet();
/// Pictures: positions, mask, grey, disabled, pressed.
GallerySheet ButtonPictureSheet();
/// Ten modes at several percents.
GallerySheet ProgressSheet();
GallerySheet GroupSheet();
GallerySheet CheckBoxSheet();

}  // namespace tarnvale
