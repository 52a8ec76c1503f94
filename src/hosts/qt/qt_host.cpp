#include "hosts/qt/qt_host.h"

#include "hosts/qt/peers/accessible.h"
#include "hosts/qt/qt_style.h"

namespace tarnvale {
namespace {

constexpr const char* kPlatformVariable = "QT_QPA_PLATFORM";

}  // namespace

QtHost::Preparation::Preparation() {
  // Chosen: X11 where a Wayland session offers it. The program places its popups.
  if (!qEnvironmentVariableIsSet(kPlatformVariable) &&
      qEnvironmentVariableIsSet("WAYLAND_DISPLAY") && qEnvironmentVariableIsSet("DISPLAY")) {
    qputenv(kPlatformVariable, "xcb;wayland");
    chose_platform = true;
  }
  // The program's look is its own, whatever the desktop's theme.
  QApplication::setDesktopSettingsAware(false);
  QApplication::setQuitOnLastWindowClosed(false);
}

QtHost::QtHost(int& argc, char** argv, FileSystem& files, const PathTranslation& paths)
    : application_(argc, argv),
      windows_(loop_, files, paths.to_program),
      dialogs_(windows_, paths),
      tray_(loop_),
      sockets_(loop_) {
  // The programs that this one starts choose for themselves.
  if (preparation_.chose_platform) qunsetenv(kPlatformVariable);
  QtStyle::Install();
  InstallAccessibility();
}

}  // namespace tarnvale
