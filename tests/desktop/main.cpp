// The tests of the desktop run in one application object, offscreen unless told otherwise.
#include <gtest/gtest.h>

#include <QApplication>

#include "desktop/theme.h"

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  kelvaron::applyTheme(application);
  return RUN_ALL_TESTS();
}
