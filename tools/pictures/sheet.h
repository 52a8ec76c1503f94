// Sheets of pictures: several drawings on one ground.
#pragma once

#include "ui/raster.h"

namespace tarnvale {

/// The canvas's device pixels as a picture.
Raster TakePicture(const Canvas& canvas);

/// An empty sheet of one colour.
Raster MakeSheet(int width, int height, Color ground);

/// Copies a picture onto a sheet. Transparent pixels leave the sheet as it is;
/// what lies outside is cut off.
void PutOnSheet(Raster& sheet, const Raster& picture, int x, int y);

}  // namespace tarnvale
