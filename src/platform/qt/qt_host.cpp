#include "platform/qt/qt_host.h"

#include "platform/qt/peers/accessible.h"
#include "platform/qt/qt_style.h"

namespace tarnvale {

QtHost::Preparation::Preparation() {
  // The program's look is its own, whatever the desktop's theme.
  QApplication::setDesktopSettingsAware(false);
  QApplication::setQuitOnLastWindowClosed(false);
}

QtHost::QtHost(int& argc, char** argv, FileSystem& files, ProgramPath program_path)
    : application_(argc, argv), windows_(loop_, files, std::move(program_path)) {
  QtStyle::Install();
  InstallAccessibility();
}

}  // namespace tarnvale
