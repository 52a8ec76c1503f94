#include "platform/qt/qt_host.h"

#include "platform/qt/peers/accessible.h"
#include "platform/qt/qt_style.h"

namespace tarnvale {

QtHost::Preparation::Preparation() {
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
  QtStyle::Install();
  InstallAccessibility();
}

}  // namespace tarnvale
