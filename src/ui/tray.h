// The notification area of the desktop.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/property.h"

namespace tarnvale {

class MenuItem;
class PictureBox;

enum class TrayCommand : std::uint32_t { kAdd = 0, kModify = 1, kDelete = 2 };

/// One icon of the notification area, in the classic layout.
struct TrayRecord {
  static constexpr std::size_t kTipCharacters = 64;

  std::uint32_t size = 88;  ///< of the classic record, in bytes
  /// Gets the mouse messages of the icon as mouse moves. An icon is known by
  /// its hook and its id.
  PictureBox* hook = nullptr;
  std::uint32_t id = 1;
  std::uint32_t flags = 7;               ///< message, icon and tip are valid
  std::uint32_t callback_message = 512;  ///< mouse move
  /// The name of an icon resource, as Window::Icon.
  std::string icon;
  /// Ends at its first NUL, or at its end.
  std::string tip = std::string(kTipCharacters, '\0');
  /// For an area that opens an icon's menu by itself, when the icon is added: its
  /// rows are clicked from there, and the right button is not reported. Must
  /// live as long as the icon.
  MenuItem* menu = nullptr;
};

/// What a mouse does on an icon: the numbers of the classic window messages. A
/// host reports each by `hook->MouseMove` with this number times the twips of a
/// pixel as its X.
enum TrayMessage : std::int32_t {
  kTrayLeftDown = 513,
  kTrayLeftUp = 514,
  kTrayLeftDouble = 515,
  kTrayRightDown = 516,
  kTrayRightUp = 517,
  kTrayRightDouble = 518,
};

class NotificationArea {
 public:
  virtual ~NotificationArea() = default;

  /// Adds, changes or takes away an icon. False, and nothing happens, when it
  /// is there already, or isn't, or there is no notification area.
  virtual bool Notify(TrayCommand command, const TrayRecord& record) = 0;

  /// The desktop has a notification area now. Follows it when it comes and
  /// goes.
  Property<bool> IsPresent{false};
};

}  // namespace tarnvale
