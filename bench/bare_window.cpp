// The baseline for the start: a bare window of the toolkit, of the login window's size.
#include <QApplication>
#include <QLabel>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QLabel window(QStringLiteral("A bare window"));
  window.resize(360, 300);
  window.show();
  return QApplication::exec();
}
