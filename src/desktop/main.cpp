#include "core/port_choice.hpp"
#include "desktop/message_boxes.hpp"
#include "desktop/ports/os.hpp"
#include "desktop/ports/qt_serial_port.hpp"
#include "desktop/ports/qt_timer.hpp"
#include "desktop/window_set.hpp"
#include "telvox.hpp"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <cstdio>

namespace {

using namespace telvox;

CommonOptions parse(Arguments arguments) {
    CommonOptions options;
    while (arguments.next())
        if (!take_common_option(arguments, options))
            arguments.refuse();
    return options;
}

int run(QApplication &application, const CommonOptions &options) {
    PortMap ports(options);
    QtSerialPort comSeriell(ports);
    QtSerialPort scanner(ports);
    QtTimer Timer1;
    desktop::QtMessageBoxes boxes;
    Telvox program({.comSeriell = comSeriell, .scanner = scanner, .Timer1 = Timer1, .boxes = boxes},
                   data_folders(options));
    comSeriell.comm_event = [&](CommEvent event) { program.comSeriell_OnComm(event); };
    Timer1.tick = [&] { program.Timer1_Timer(); };

    desktop::WindowSet windows(program, [&](const QString &entry) {
        const auto number = parse_port_number(entry.toStdString());
        return QString::fromStdString(number ? ports.tool_tip(*number) : std::string());
    });
    boxes.owner = [&] { return windows.front(); };
    windows.ended = [&] {
        program.Form_Unload();
        QCoreApplication::quit();
    };
    windows.draw();
    return application.exec();
}

} // namespace

int main(int argc, char **argv) {
    CommonOptions options;
    try {
        options = parse(Arguments(os::arguments(argc, argv)));
    } catch (const UsageError &error) {
        std::fprintf(stderr, "telvox: %s\n", error.what());
        return 2;
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName("telvox");
    QApplication::setApplicationDisplayName(program_title);
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    // Qt's own texts, such as the menus of text boxes.
    QTranslator german;
    if (german.load("qtbase_de", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&german);
    return run(application, options);
}
