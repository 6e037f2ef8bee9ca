// The least that a program with windows does before there is something to see.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QWidget window;
  window.resize(800, 600);
  window.show();
  return QApplication::exec();
}
