// The pictures of assets/, which the build renders and puts into the program.
#pragma once

#include <QIcon>

#include <string>

namespace tarnvale {

/// A picture in all the sizes that it is rendered in; empty for an empty name.
QIcon PictureNamed(const std::string& name);

}  // namespace tarnvale
