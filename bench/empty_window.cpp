// An empty main window as the toolkit's designer makes one, with a menu bar and a status bar and nothing in
// them: what every program of this kind costs.

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    window.setWindowTitle("Leeres Fenster");
    window.menuBar();
    window.statusBar();
    window.show();
    return QApplication::exec();
}
