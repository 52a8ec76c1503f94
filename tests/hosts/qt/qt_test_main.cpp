#include <gtest/gtest.h>

#include <QApplication>

#include "hosts/qt/peers/accessible.h"
#include "hosts/qt/qt_style.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  QApplication::setDesktopSettingsAware(false);
  QApplication::setQuitOnLastWindowClosed(false);
  const QApplication application(argc, argv);
  tarnvale::QtStyle::Install();
  tarnvale::InstallAccessibility();
  return RUN_ALL_TESTS();
}
