// The main of the tests that show windows.

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QStringList>
#include <QTemporaryFile>
#include <gmock/gmock.h>

int main(int argc, char **argv) {
    testing::InitGoogleMock(&argc, argv);
    // Activation and focus need a platform that decides alone, without a window manager. Beside its usual
    // screen there are small ones: 1024 x 600, 1366 x 768 at 150 %, and 1920 x 1080 at 200 %.
    QTemporaryFile screens;
    if (!screens.open())
        return 1;
    constexpr const char *screen = R"({"name":"%1","x":%2,"y":0,"width":%3,"height":%4,"logicalDpi":96,)"
                                   R"("logicalBaseDpi":96,"dpr":1})";
    QStringList all;
    constexpr QSize sizes[] = {{800, 800}, {1024, 600}, {911, 512}, {960, 540}};
    for (const QSize &size : sizes)
        all << QString(screen).arg(all.size()).arg(2000 * all.size()).arg(size.width()).arg(size.height());
    screens.write((R"({"synchronousWindowSystemEvents":false,"windowFrameMargins":true,"screens":[)" +
                   all.join(',') + "]}")
                      .toUtf8());
    screens.close();
    // By its bare name: a drive's colon would end it.
    const QString folder = QDir::currentPath();
    QDir::setCurrent(QFileInfo(screens).path());
    qputenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + QFileInfo(screens).fileName()).toUtf8());
    // Where the system's fonts are not asked for; wine keeps variables of Qt from programs.
    qputenv("QT_QPA_FONTDIR", qgetenv("TELVOX_FONTS"));
    QApplication application(argc, argv);
    QDir::setCurrent(folder);
    QApplication::setFont(QFont("DejaVu Sans", 9)); // where sizes are expected, those of this one
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
