// Shape and inner places of a button.
#pragma once

#include "ui/geometry.h"
#include "ui/raster.h"

namespace tarnvale {

/// True for the pixels that belong to a button of this type and size.
bool IsInButtonRegion(int type, Size size, Point at);

/// Makes the pixels outside the region transparent.
void ClipToButtonRegion(int type, Canvas& canvas);

/// The rectangle that holds caption and picture; the focus rectangle is drawn on
/// it. Never of negative size.
Rect CaptionRectangle(int type, Size size);

struct CaptionPlaces {
  Rect caption;   ///< the caption is centred in it
  Point picture;  ///< upper left corner of the picture
};

/// Places caption and picture in the caption rectangle. `position`: the picture
/// is placed 0 left, 1 right, 2 on top, 3 at the bottom, 4 and any other behind.
CaptionPlaces PlaceCaption(Rect area, Size text, Size picture, int position);

}  // namespace tarnvale
