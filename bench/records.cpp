// The record of a list of so many devices as PDF, its time and what memory each further device costs; and the
// time from the click to the first picture of a history of ten thousand lines. "records DATEI.pdf" leaves the
// record there. Exit 1 if a figure is above its limit.

#include "core/files/files.hpp"
#include "desktop/record_file.hpp"
#include "desktop/window_set.hpp"
#include "operation/history_pane.hpp"
#include "operation/record_pages.hpp"
#include "rig/rig.hpp"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>
#include <fstream>
#include <sys/resource.h>

namespace telvox {
namespace {

constexpr std::size_t few = 100, many = 1000;
constexpr double record_limit_s = 5, memory_limit_mb = 8, history_limit_s = 0.3;

double peak_mb() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

double seconds(const QElapsedTimer &timer) { return static_cast<double>(timer.nsecsElapsed()) / 1e9; }

DoneJob job(std::size_t number) {
    DoneJob done{.line = {.time = "2026-11-23 14:05:09",
                          .variant = "GSM",
                          .imei = "35693803564380" + std::to_string(number % 10),
                          .port = "COM 3",
                          .job = "Modem konfigurieren",
                          .outcome = RowOutcome::succeeded,
                          .message = "Das Modem wurde erfolgreich parametriert."},
                 .device = "Zeile " + std::to_string(number + 2) + ", Pumpwerk " + std::to_string(number)};
    done.way = "Direktverbindung mit Kabel, COM 3";
    done.kind = DoneJob::Kind::writes;
    done.settings = {{"Service-Center Nummer", "+491710760000"},
                     {"Nummer des Empfängers", "01711234567"},
                     {"Alarmmeldung", "Pumpe " + std::to_string(number) + " ausgefallen, Überlauf möglich"}};
    return done;
}

/// Writes the record of so many devices; returns the seconds.
double write_record(const std::string &path, std::size_t devices) {
    std::vector<DoneJob> jobs;
    for (std::size_t i = 0; i < devices; ++i)
        jobs.push_back(job(i));
    QElapsedTimer timer;
    timer.start();
    const RecordPages pages =
        operation::record_of(jobs, {.by = "Jörg Müller", .place = "Süd", .made = "2026-11-23 15:00:00"});
    desktop::RecordFile file(path);
    for (std::size_t i = 0; i < pages.count; ++i)
        file.add(pages.page(i));
    if (const std::string why = file.end(); !why.empty())
        std::fprintf(stderr, "%s\n", why.c_str());
    return seconds(timer);
}

double open_history(const std::filesystem::path &folder) {
    std::vector<HistoryLine> lines;
    for (std::size_t i = 0; i < History::most_lines; ++i)
        lines.push_back(job(i).line);
    std::ofstream(folder / History::file_name, std::ios::binary) << history_table(lines);
    test::Rig rig;
    operation::WorkLog log(folder);
    operation::HistoryPane pane(rig.program, log);
    desktop::WindowSet windows(rig.program);
    windows.draw();
    QApplication::processEvents();
    QElapsedTimer timer;
    timer.start();
    rig.program.click(rig.program.desk.frmModem.mnuVerlauf);
    QWidget &window = windows.window(rig.program.desk.frmVerlauf);
    window.repaint();
    QApplication::processEvents();
    return seconds(timer);
}

int measure(const std::string &kept) {
    const QTemporaryDir folder;
    const std::string path = folder.path().toStdString();
    write_record(path + "/few.pdf", few);
    const double before = peak_mb();
    const double took = write_record(kept.empty() ? path + "/many.pdf" : kept, many);
    const double grew = peak_mb() - before;
    const double opened = open_history(path_of(path));
    std::printf("record of %zu devices: %.2f s, limit %.0f s; %.1f MB more than for %zu, limit %.0f MB\n",
                many, took, record_limit_s, grew, few, memory_limit_mb);
    std::printf("history of %zu lines: opened in %.3f s, limit %.1f s\n", History::most_lines, opened,
                history_limit_s);
    return took <= record_limit_s && grew <= memory_limit_mb && opened <= history_limit_s ? 0 : 1;
}

} // namespace
} // namespace telvox

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    return telvox::measure(argc > 1 ? argv[1] : "");
}
