#include <gtest/gtest.h>

#include <QCoreApplication>

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  // The program's event loop needs no desktop.
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
