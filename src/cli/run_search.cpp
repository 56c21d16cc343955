#include "cli/run_search.hpp"

#include "cli/follow.hpp"
#include "cli/interrupt.hpp"
#include "core/files/remembered.hpp"
#include "operation/search.hpp"
#include "operation/work_log.hpp"
#include "ports/qt_ports.hpp"

#include <QCoreApplication>

namespace telvox::cli {

namespace {

/// A block of lines that another call takes with "--aus", an empty line before each but the first.
void print(const Search &search, bool json, Output &out) {
    bool first = true;
    for (const Search::At &at : search.ports()) {
        if (at.found.empty())
            continue;
        const std::string port = name_of(at.port), type = at.found.at("typ").value,
                          format = at.found.at("com-direkt").value;
        if (json)
            out.line(json_line({{"schnittstelle", port}, {"typ", type}, {"com-direkt", format}}));
        else
            out.line((std::exchange(first, false) ? "" : "\n") + ("schnittstelle=" + port) + "\ntyp=" + type +
                     "\ncom-direkt=" + format);
    }
}

} // namespace

int run_search(QCoreApplication &application, const Call &call, Outputs &out) {
    QtPorts ports(call.common);
    const DataFolders folders = data_folders(call.common);
    const Remembered remembered = read_remembered(folders.settings);
    WorkLog log(folders.settings);
    Search search(ports_beside(ports.map), folders);
    search.done = [&](std::vector<DoneJob> jobs) {
        if (const std::string why = log.add(std::move(jobs), remembered.history); !why.empty())
            out.remarks.line("telvox-cli: " + why);
    };
    search.port_name = [&](const std::string &entry) { return ports.map->told(entry); };
    search.starts = [&](RowProgram &program, const PortInfo &port) {
        follow(program, name_of(port), call, out);
    };
    search.told = [&](const Search::At &at) {
        out.remarks.line(name_of(at.port) + ": " + at.said);
        if (!search.running())
            QCoreApplication::quit();
    };
    int interrupted = 0;
    on_interrupt([&](int code) {
        interrupted = code;
        search.cancel();
    });
    const std::vector<PortInfo> all = ports.scan.ports();
    for (const PortInfo &port : all)
        if (!port.refusal.empty())
            out.remarks.line(name_of(port) + ": " + port.refusal);
    search.begin(all, call.values);
    if (search.running())
        application.exec();
    print(search, call.json, out.results);
    if (interrupted != 0)
        return interrupted;
    if (search.found() == 0)
        out.remarks.line(nobody_found);
    return search.found() != 0 ? job_succeeded : job_failed;
}

} // namespace telvox::cli
