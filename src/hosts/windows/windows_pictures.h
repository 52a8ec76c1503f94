// The pictures of assets/, which the build renders and puts into the program.
#pragma once

#include <string>

#include "hosts/windows/system_headers.h"
#include "ui/raster.h"

namespace tarnvale {

/// A picture at a size in device pixels, which its own shape keeps within; empty for an
/// empty name. Valid as long as the program runs.
const Raster& PictureNamed(const std::string& name, int width, int height);

/// An icon at a width and height that the system names (SM_CXSMICON), for the caller to
/// destroy; null when there is none of the name.
HICON IconNamed(const std::string& name, int width_metric, int height_metric);

/// A pointer that points by the picture's centre, for the caller to destroy; null for an empty
/// one.
HCURSOR PointerOf(const Raster& picture);

}  // namespace tarnvale
