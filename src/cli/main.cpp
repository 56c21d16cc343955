#include "cli/call.hpp"
#include "cli/interrupt.hpp"
#include "cli/operator.hpp"
#include "cli/tracing_port.hpp"
#include "desktop/ports/os.hpp"
#include "desktop/ports/qt_serial_port.hpp"
#include "desktop/ports/qt_timer.hpp"
#include "telvox.hpp"

#include <QCoreApplication>
#include <algorithm>
#include <cstdio>

namespace {

using namespace telvox;

/// Exit codes, a contract with the users' scripts.
enum Exit { job_succeeded = 0, job_failed = 1, call_refused = 2 };

void print(std::FILE *stream, std::string text) {
    std::replace(text.begin(), text.end(), '\r', '\n');
    std::fprintf(stream, "%s\n", text.c_str());
    std::fflush(stream);
}

class PrintedBoxes final : public MessageBoxes {
  public:
    void show(const Message &message) override { print(stdout, message.text); }
};

int exit_code(Outcome outcome) {
    return outcome == Outcome::succeeded ? job_succeeded
           : outcome == Outcome::failed  ? job_failed
                                         : call_refused;
}

int run(QCoreApplication &application, const cli::Call &call) {
    PortMap ports(call.common);
    QtSerialPort port(ports);
    QtSerialPort scanner(ports);
    QtTimer Timer1;
    PrintedBoxes boxes;
    cli::TracingPort traced(port, [](const std::string &line) { print(stderr, line); });
    SerialPort &comSeriell = call.trace ? static_cast<SerialPort &>(traced) : port;
    Telvox program({.comSeriell = comSeriell, .scanner = scanner, .Timer1 = Timer1, .boxes = boxes},
                   data_folders(call.common));
    program.desk.status_changed = [](std::string_view text) { print(stderr, std::string(text)); };

    const auto end_when_idle = [&] {
        if (!program.busy())
            QCoreApplication::quit();
    };
    port.comm_event = [&](CommEvent event) {
        program.comSeriell_OnComm(event);
        end_when_idle();
    };
    Timer1.tick = [&] {
        program.Timer1_Timer();
        end_when_idle();
    };
    int interrupted = 0;
    cli::on_interrupt([&](int code) {
        interrupted = code;
        QCoreApplication::quit();
    });

    cli::Operator(program, ports).work(call);
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
