// The window while a line makes noise: processor time, the longest time in which it hears nobody, and memory.
//   bench_protocol_noise ein|aus [SECONDS] [BYTES PER SECOND]
// with the protocol shown or hidden. The noise comes through a pseudo-terminal; jobs run one after the other,
// so that the port is open nearly all the time.

#include "desktop/window_set.hpp"
#include "ports/qt_ports.hpp"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <random>
#include <sys/resource.h>
#include <unistd.h>

namespace telvox {
namespace {

struct Unread final : MessageBoxes {
    void show(const Message &, Answered) override {}
};

double processor_seconds() {
    rusage use{};
    ::getrusage(RUSAGE_SELF, &use);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(use.ru_utime) + seconds(use.ru_stime);
}

double resident_megabytes() {
    std::ifstream statm("/proc/self/statm");
    long all = 0, resident = 0;
    statm >> all >> resident;
    return static_cast<double>(resident) * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

int run(bool shown, int seconds, int rate) {
    const int line = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (line < 0 || ::grantpt(line) != 0 || ::unlockpt(line) != 0)
        return 1;
    CommonOptions options;
    take_port(std::string("3=") + ::ptsname(line), options);
    QtPorts ports(options);
    Unread boxes;
    Telvox program(ports.for_program(boxes), {"/nonexistent", {}});
    ports.connect(program);
    desktop::WindowSet windows(program);
    FrmModem &f = program.desk.frmModem;
    f.mnuProtokoll.value = f.fraProtokoll.visible = shown;
    windows.draw();
    program.choose(f.optGSM);
    program.focus(f.cobSchnittstelle);
    program.select(f.cobSchnittstelle, f.cobSchnittstelle.items.empty() ? "" : f.cobSchnittstelle.items[0]);

    QTimer starts;
    QObject::connect(&starts, &QTimer::timeout, [&] {
        if (!program.busy())
            program.click(f.cbuTest);
    });
    starts.start(20);

    std::minstd_rand random;
    std::size_t sent = 0;
    std::string piece;
    double first_half = 0;
    qint64 longest_gap = 0, refused = 0;
    QElapsedTimer whole, since_last;
    QTimer beat;
    beat.setTimerType(Qt::PreciseTimer);
    QObject::connect(&beat, &QTimer::timeout, [&] {
        longest_gap = std::max(longest_gap, since_last.restart());
        piece.resize(static_cast<std::size_t>(whole.elapsed() * rate / 1000) - sent);
        sent += piece.size();
        for (char &byte : piece)
            byte = static_cast<char>(random() >> 8);
        if (::write(line, piece.data(), piece.size()) < 0)
            ++refused;
        if (first_half == 0 && whole.elapsed() > seconds * 500)
            first_half = resident_megabytes();
        if (whole.elapsed() > seconds * 1000)
            QCoreApplication::exit();
    });
    const double before = resident_megabytes(), processor = processor_seconds();
    whole.start();
    since_last.start();
    beat.start(10);
    QCoreApplication::exec();
    std::printf("protocol %s: %zu bytes, %zu lines in %d s; processor %.2f s, longest gap %lld ms, "
                "memory %.1f, %.1f, %.1f MB (before, half, end)\n",
                shown ? "shown" : "hidden", sent, program.record().gone() + program.record().lines().size(),
                seconds, processor_seconds() - processor, static_cast<long long>(longest_gap), before,
                first_half, resident_megabytes());
    program.Form_Unload();
    ::close(line);
    return 0;
}

} // namespace
} // namespace telvox

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    const auto number = [&](int at, int otherwise) { return argc > at ? std::atoi(argv[at]) : otherwise; };
    return telvox::run(argc > 1 && std::string_view(argv[1]) == "ein", number(2, 60), number(3, 11520));
}
