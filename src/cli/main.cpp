#include "cli/call.hpp"
#include "cli/interrupt.hpp"
#include "cli/operator.hpp"
#include "cli/tracing_port.hpp"
#include "ports/os.hpp"
#include "ports/qt_ports.hpp"
#include "telvox.hpp"

#include <QCoreApplication>
#include <algorithm>
#include <cstdio>

namespace {

using namespace telvox;

/// Exit codes, a contract with the users' scripts.
enum Exit { job_succeeded = 0, job_failed = 1, call_refused = 2, device_objected = 3 };

void print(std::FILE *stream, std::string text) {
    std::replace(text.begin(), text.end(), '\r', '\n');
    std::fprintf(stream, "%s\n", text.c_str());
    std::fflush(stream);
}

class PrintedBoxes final : public MessageBoxes {
  public:
    void show(const Message &message, Answered answered) override {
        print(message.asks ? stderr : stdout, message.text);
        if (answered)
            answered(!message.asks);
    }
};

int exit_code(Outcome outcome) {
    switch (outcome) {
    case Outcome::succeeded:
        return job_succeeded;
    case Outcome::objected:
        return device_objected;
    case Outcome::failed:
        return job_failed;
    case Outcome::refused:
        break;
    }
    return call_refused;
}

int run(QCoreApplication &application, const cli::Call &call) {
    QtPorts ports(call.common);
    PrintedBoxes boxes;
    cli::TracingPort traced(ports.comSeriell, [](const std::string &line) { print(stderr, line); });
    Telvox program(ports.for_program(boxes, call.trace ? &traced : nullptr), data_folders(call.common));
    ports.connect(program);
    program.desk.status_changed = [](std::string_view text) { print(stderr, std::string(text)); };

    program.redraw = [&] {
        if (!program.busy())
            QCoreApplication::quit();
    };
    int interrupted = 0;
    cli::on_interrupt([&](int code) {
        interrupted = code;
        QCoreApplication::quit();
    });

    cli::Operator(program, ports.map).work(call);
    if (program.busy())
        application.exec();
    program.Form_Unload();
    if (interrupted != 0)
        return interrupted;
    if (program.outcome() == Outcome::succeeded && call.job->result)
        print(stdout, call.job->result(program.desk));
    return exit_code(program.outcome());
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("telvox-cli");
    try {
        const cli::Call call = cli::parse_call(os::arguments(argc, argv));
        if (call.help) {
            std::fputs(cli::help_text().c_str(), stdout);
            return job_succeeded;
        }
        return run(application, call);
    } catch (const UsageError &error) {
        print(stderr, std::string("telvox-cli: ") + error.what());
        return call_refused;
    }
}
