// The tests of the desktop run in one application object, offscreen unless told otherwise.
#include <gtest/gtest.h>

#include <QApplication>

#include "desktop/ports/vlc_library.h"
#include "desktop/shell/theme.h"

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  // The stations of the radio's tests are on this machine. An empty variable also stands for the
  // machines that have one.
  qputenv("http_proxy", "");
  kelvaron::dropEmptyProxy();
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  kelvaron::applyTheme(application);
  return RUN_ALL_TESTS();
}
