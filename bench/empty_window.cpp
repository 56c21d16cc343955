// An empty main window: what every program on the toolkit costs.

#include <QApplication>
#include <QMainWindow>

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    window.setWindowTitle("Leeres Fenster");
    window.show();
    return QApplication::exec();
}
