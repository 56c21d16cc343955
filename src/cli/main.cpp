#include "cli/call.hpp"
#include "cli/interrupt.hpp"
#include "cli/output.hpp"
#include "operation/operator.hpp"
#include "ports/os.hpp"
#include "ports/qt_ports.hpp"
#include "telvox.hpp"

#include <QCoreApplication>
#include <iostream>

namespace {

using namespace telvox;

/// Exit codes, a contract with the users' scripts.
enum Exit { job_succeeded = 0, job_failed = 1, call_refused = 2, device_objected = 3 };

struct Outputs {
    cli::Output results{stdout};
    cli::Output remarks{stderr};
};

/// Messages about the job are its result; what asks, or only warns before it goes on, is a remark, and so is
/// the success of a job whose result is values.
class PrintedBoxes final : public MessageBoxes {
  public:
    PrintedBoxes(Outputs &out, bool despite) : out_(out), despite_(despite) {}

    void show(const Message &message, Answered answered) override {
        const bool result = by->pressed() && !answered && !message.asks && !values_follow();
        (result ? out_.results : out_.remarks).line(by->by_path(message.text));
        if (message.asks)
            out_.remarks.line(despite_ ? "(Ja)" : "(Nein; --trotzdem bedeutet Ja)");
        if (answered)
            answered(!message.asks || despite_);
    }

    const operation::Operator *by = nullptr;
    std::function<bool()> values_follow;

  private:
    Outputs &out_;
    bool despite_;
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

/// The log of a network dialog: shown as it grows, or only when the job has not ended well, because it says
/// what to do then. What arrives may end anywhere in a line.
class ShownLog {
  public:
    ShownLog(cli::Output &to, bool at_once) : to_(to), at_once_(at_once) {}

    void take(std::string_view text) {
        text_ += text;
        if (text_.size() > longest)
            text_.erase(0, text_.size() - longest);
        const auto whole_lines = text_.rfind('\n');
        if (at_once_ && whole_lines != std::string::npos) {
            to_.line(text_.substr(0, whole_lines));
            text_.erase(0, whole_lines + 1);
        }
    }
    void end(bool well) {
        if (text_.ends_with('\n'))
            text_.pop_back();
        if (!text_.empty() && (at_once_ || !well))
            to_.line(text_);
    }

  private:
    static constexpr std::size_t longest = 65536;
    cli::Output &to_;
    bool at_once_;
    std::string text_;
};

int run(QCoreApplication &application, const cli::Call &call, Outputs &out) {
    QtPorts ports(call.common);
    PrintedBoxes boxes(out, call.despite);
    Telvox program(ports.for_program(boxes), data_folders(call.common));
    ports.connect(program);
    if (call.trace)
        program.record().added = [&](const RecordLine &line) {
            if (line.kind != RecordLine::Kind::input)
                out.remarks.line(text_of(line));
        };
    else
        program.desk.status_listeners.emplace_back(
            [&](std::string_view text) { out.remarks.line(std::string(text)); });
    ShownLog log(out.remarks, call.trace);
    program.desk.log_listeners.emplace_back([&](std::string_view text) { log.take(text); });

    program.redraw = [&] {
        if (!program.busy())
            QCoreApplication::quit();
    };
    int interrupted = 0;
    cli::on_interrupt([&](int code) {
        interrupted = code;
        program.cancel(); // a call is hung up first
    });

    operation::Operator at_the_form(program, ports.scan);
    const auto values_follow = [&] {
        const Outcome outcome = program.outcome();
        return call.job->result &&
               (call.job->look || outcome == Outcome::succeeded || outcome == Outcome::objected);
    };
    boxes.by = &at_the_form;
    boxes.values_follow = values_follow;
    if (!at_the_form.work(call))
        return job_failed;
    if (program.busy())
        application.exec();
    const bool ended_well = program.outcome() == Outcome::succeeded || program.outcome() == Outcome::objected;
    log.end(ended_well);
    const bool kept = !ended_well || at_the_form.keep(call);
    program.Form_Unload();
    if (interrupted != 0)
        return interrupted;
    if (const std::string result = values_follow() ? call.job->result(program.desk) : ""; !result.empty())
        out.results.line(result);
    if (call.job->look)
        return job_succeeded;
    if (program.outcome() == Outcome::refused)
        if (const std::string option = at_the_form.named_by_check(call); !option.empty())
            out.remarks.line("telvox-cli: siehe " + option);
    if (!kept) {
        out.remarks.line("telvox-cli: Das Gerät spricht jetzt mit --com-direkt " +
                         program.desk.session.strCOMparameter_direkt);
        return job_failed;
    }
    return exit_code(program.outcome());
}

int serve(QCoreApplication &application, cli::Call call, Outputs &out) {
    if (call.common.version || call.help || call.completion) {
        std::string text = call.help         ? cli::help_text(call.job)
                           : call.completion ? cli::completion_list()
                                             : version_text("telvox-cli");
        text.pop_back();
        out.results.line(text);
        return job_succeeded;
    }
    cli::complete_call(call, std::cin);
    return run(application, call, out);
}

} // namespace

int main(int argc, char **argv) {
    os::reserve_standard_streams();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("telvox-cli");
    Outputs out;
    int code = call_refused;
    try {
        code = serve(application, cli::parse_call(os::arguments(argc, argv)), out);
    } catch (const UsageError &error) {
        out.remarks.line(std::string("telvox-cli: ") + error.what());
    }
    if (const std::string why = out.results.end(); !why.empty()) {
        out.remarks.line("telvox-cli: Die Ausgabe ließ sich nicht schreiben. " + why);
        return code == job_succeeded ? job_failed : code;
    }
    return code;
}
