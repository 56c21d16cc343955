#include "desktop/file_dialogs.hpp"
#include "desktop/help_window.hpp"
#include "desktop/message_boxes.hpp"
#include "desktop/readable_style.hpp"
#include "desktop/record_file.hpp"
#include "desktop/window_set.hpp"
#include "operation/history_pane.hpp"
#include "operation/journal.hpp"
#include "operation/list_pane.hpp"
#include "operation/profiles.hpp"
#include "operation/record_pane.hpp"
#include "operation/search_window.hpp"
#include "operation/status_queries.hpp"
#include "ports/os.hpp"
#include "ports/qt_ports.hpp"
#include "telvox.hpp"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTimer>
#include <QTranslator>
#include <cstdio>

namespace {

using namespace telvox;

struct Call {
    CommonOptions options;
    std::string profile;
    std::string record; ///< the command line has a record printed: to this file, pages from standard input
    bool help = false;
};

Call parse(Arguments arguments) {
    Call call;
    while (arguments.next()) {
        if (arguments.name() == "--help") {
            call.help = true;
        } else if (arguments.name() == "--profil") {
            arguments.once();
            call.profile = arguments.value();
        } else if (arguments.name() == "--nachweis-drucken") {
            arguments.once();
            call.record = arguments.value();
        } else if (!take_common_option(arguments, call.options)) {
            arguments.refuse();
        }
    }
    return call;
}

int run(QApplication &application, const Call &call) {
    QtPorts ports(call.options);
    desktop::QtMessageBoxes boxes;
    const DataFolders folders = data_folders(call.options);
    desktop::Help help(folders.lists);
    Telvox::Ports given = ports.for_program(boxes);
    given.help = &help;
    desktop::QtFileDialogs files;
    given.files = &files;
    Telvox program(given, folders);
    ports.connect(program);

    desktop::WindowSet windows(program);
    boxes.owner = files.owner = [&] { return windows.front(); };
    operation::WorkLog log(folders.settings);
    std::function<void(const std::string &)> hint;
    const auto note = [&](std::vector<DoneJob> jobs) {
        const std::string failure = log.add(std::move(jobs), program.desk.remembered.history);
        if (!failure.empty())
            hint(failure);
    };
    operation::Journal journal(program, [&](DoneJob job) { note({std::move(job)}); });
    journal.port_name = [&](const std::string &entry) { return ports.map->told(entry); };
    operation::Profiles profiles(program, ports.scan);
    operation::ListPane list(program, ports.scan, profiles);
    QtTimer later;
    operation::AllRows all(program, ports.scan, ports_beside(ports.map), later);
    later.tick = [&] { all.tick(); };
    all.done = note;
    list.port_name = all.port_name = journal.port_name;
    list.with(all);
    QtSerialPort watched(*ports.map);
    QtTimer look;
    operation::CableWatch watch(watched, look);
    look.tick = [&] { watch.tick(); };
    list.with(watch);
    journal.device = [&] { return list.running(); };
    hint = [&](const std::string &text) { list.hint(text); };
    desktop::QtRecordPrinter printer;
    operation::HistoryPane history(program, log);
    operation::RecordPane record(program, log, printer);
    record.list = [&] { return list.record(); };
    history.make_record = [&](const HistoryLine &line) { record.open(&line); };
    operation::SearchWindow search(program, ports.scan, ports_beside(ports.map));
    search.search().done = note;
    search.search().port_name = journal.port_name;
    QtTimer pause;
    operation::StatusQueries queries(program, pause);
    pause.tick = [&] { queries.tick(); };
    windows.ended = [&] {
        profiles.note_left(windows.geometry());
        program.Form_Unload();
        QCoreApplication::quit();
    };
    if (program.desk.remembered.as_left)
        windows.as_left = program.desk.remembered.geometry;
    windows.draw();
    call.profile.empty() ? profiles.begin_as_left() : profiles.open(call.profile);
    return application.exec();
}

/// Prints a record whose pages come separated by form feeds, without any window.
int print_record(int argc, char **argv, const std::string &path) {
#ifndef _WIN32
    qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
    const QGuiApplication application(argc, argv);
    desktop::RecordFile file(path);
    std::string page;
    for (int c = std::getchar(); c != EOF; c = std::getchar())
        if (c == '\f')
            file.add(std::exchange(page, {}));
        else
            page += static_cast<char>(c);
    file.add(page);
    const std::string why = file.end();
    if (!why.empty())
        static_cast<void>(os::print(why + "\n", stderr));
    return why.empty() ? 0 : 1;
}

} // namespace

int main(int argc, char **argv) {
    os::reserve_standard_streams();
    Call call;
    try {
        call = parse(Arguments(os::arguments(argc, argv)));
    } catch (const UsageError &error) {
        static_cast<void>(os::print(std::string("telvox: ") + error.what() + "\n", stderr));
        return 2;
    }
    if (call.options.version) {
        return os::print(version_text("telvox"), stdout) ? 0 : 1;
    }
    if (call.help) {
        return os::print("Aufruf: telvox [Optionen]\n\n" +
                             help_line("--profil DATEI", "füllt das Fenster mit einem Profil") +
                             common_options_help(),
                         stdout)
                   ? 0
                   : 1;
    }
    if (!call.record.empty())
        return print_record(argc, argv, call.record);
    if (!os::has_display()) {
        static_cast<void>(os::print(
            "telvox: Es gibt hier keine grafische Oberfläche; ohne sie arbeitet telvox-cli.\n", stderr));
        return 1;
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName("telvox");
    desktop::follow_system_colours(application);
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    // Qt's own texts, such as the menus of text boxes; nobody sees one before the window.
    QTranslator german;
    QTimer::singleShot(0, &german, [&german] {
        if (german.load("qtbase_de", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
            QApplication::installTranslator(&german);
    });
    return run(application, call);
}
