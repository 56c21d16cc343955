#include "cli/call.hpp"
#include "cli/interrupt.hpp"
#include "cli/output.hpp"
#include "cli/record.hpp"
#include "cli/run_list.hpp"
#include "cli/run_search.hpp"
#include "operation/journal.hpp"
#include "operation/plan.hpp"
#include "operation/status_queries.hpp"
#include "operation/work_log.hpp"
#include "ports/os.hpp"
#include "ports/qt_ports.hpp"
#include "telvox.hpp"

#include <QCoreApplication>
#include <iostream>

namespace {

using namespace telvox;
using cli::Outputs;

/// Messages about the job are its result; what asks, or only warns before it goes on, is a remark, and so is
/// the success of a job whose result is values.
class PrintedBoxes final : public MessageBoxes {
  public:
    PrintedBoxes(Outputs &out, bool despite) : out_(out), despite_(despite) {}

    void show(const Message &message, Answered answered) override {
        const bool result = by->pressed() && !answered && !message.asks && !values_follow();
        (result ? out_.results : out_.remarks).line(by->by_path(message.text));
        if (message.asks)
            out_.remarks.line(cli::answer_to_all(despite_));
        if (answered)
            answered(!message.asks || despite_);
    }

    const operation::Operator *by = nullptr;
    std::function<bool()> values_follow;

  private:
    Outputs &out_;
    bool despite_;
};

/// Watches the one job of the call, or its repetitions.
class Watched final : public Observer {
  public:
    Watched(Telvox &program, const cli::Call &call, Outputs &out)
        : program_(program), call_(call), out_(out), log_(out.remarks, call.trace) {}

    void status(std::string_view text) override {
        if (!call_.trace && !call_.again) // it is in the trace, or told by the values
            out_.remarks.line(std::string(text));
    }
    void logged(std::string_view text) override { log_.take(text); }
    void over(const operation::WorkEnd &work) {
        end = work;
        log_.end(went_well(end.outcome));
        if (call_.again && went_well(end.outcome)) {
            const FrmGSM_Status &form = program_.desk.frmGSM_Status;
            out_.results.line(form.lblAntenne.caption + ", " + form.lblAntenne_Bester.caption);
            measured = true;
            if (out_.results.failed())
                program_.cancel();
        }
        if (!call_.again || !program_.busy())
            QCoreApplication::quit();
    }

    operation::WorkEnd end{{.by = nullptr, .outcome = Outcome::refused, .said = {}}, {}, {}};
    bool measured = false; ///< at least once

  private:
    Telvox &program_;
    const cli::Call &call_;
    Outputs &out_;
    cli::ShownLog log_;
};

int exit_code(Outcome outcome) {
    switch (outcome) {
    case Outcome::succeeded:
        return cli::job_succeeded;
    case Outcome::objected:
        return cli::device_objected;
    case Outcome::differs:
        return cli::device_differs;
    case Outcome::failed:
    case Outcome::cancelled:
        return cli::job_failed;
    case Outcome::refused:
        break;
    }
    return cli::call_refused;
}

/// "APN: internet.alt → internet.neu" of what was changed, of what was compared both and whether they differ.
std::string line_of(const operation::Compared &one, bool compares) {
    const std::string wanted = shown(*one.option, one.wanted), found = shown(*one.option, one.found);
    return one.option->title + std::string(": ") +
           (!compares       ? found + " → " + wanted
            : one.differs() ? "soll " + wanted + ", ist " + found + " (anders)"
                            : found);
}

int run(QCoreApplication &application, const cli::Call &call, Outputs &out) {
    QtPorts ports(call.common);
    PrintedBoxes boxes(out, call.despite);
    Telvox program(ports.for_program(boxes), data_folders(call.common));
    ports.connect(program);
    if (call.trace)
        program.record().added = [&](const RecordLine &line) {
            if (line.of_dialogue())
                out.remarks.line(text_of(line));
        };
    QtTimer pause;
    operation::StatusQueries queries(program, pause); // hears of an end before who asks whether it goes on
    pause.tick = [&] { queries.tick(); };
    Watched job(program, call, out);
    program.desk.observers.add(job);
    int interrupted = 0;
    cli::on_interrupt([&](int code) {
        interrupted = code;
        program.cancel();                  // a call is hung up first
        if (call.again && !program.busy()) // between two measurements
            QCoreApplication::quit();
    });

    operation::Operator at_the_form(program, ports.scan);
    operation::WorkLog log(program.desk.folders.settings);
    operation::Journal journal(program, [&](DoneJob done) {
        done.line.message = at_the_form.by_path(done.line.message);
        const std::string failure = log.add({std::move(done)}, program.desk.remembered.history);
        if (!failure.empty())
            out.remarks.line("telvox-cli: " + failure);
    });
    journal.port_name = [&](const std::string &entry) { return at_the_form.by_path(ports.map->told(entry)); };
    operation::Plan plan(program, at_the_form);
    plan.over = [&](const operation::WorkEnd &work) { job.over(work); };
    const auto values_follow = [&] {
        return call.job->result && (call.job->look || went_well(job.end.outcome));
    };
    boxes.by = &at_the_form;
    boxes.values_follow = values_follow;
    if (call.again) {
        at_the_form.fill_in(call);
        program.set(dynamic_cast<CheckBox &>(call.job->repeats(program.desk)), true);
    } else if (!at_the_form.begin(call)) {
        return cli::job_failed;
    } else if (call.job->look) {
        call.job->look(program);
    } else {
        plan.start(call, false);
    }
    if (program.busy() || plan.busy())
        application.exec();
    const Outcome outcome = job.end.outcome;
    const bool kept = !went_well(outcome) || at_the_form.keep(call);
    program.Form_Unload();
    const std::string unrecorded = cli::write_record(call, log.jobs(), program.desk.remembered);
    if (!unrecorded.empty())
        out.remarks.line("telvox-cli: " + unrecorded);
    if (job.measured && interrupted != 0)
        return cli::job_succeeded; // it ends no other way
    if (interrupted != 0)
        return interrupted;
    for (const operation::Compared &one : job.end.compared)
        if (call.job->compares || (outcome == Outcome::succeeded && one.differs()))
            out.results.line(line_of(one, call.job->compares));
    if (const std::string result = values_follow() ? call.job->result(program.desk) : ""; !result.empty())
        out.results.line(result);
    if (call.job->look)
        return cli::job_succeeded;
    if (outcome == Outcome::refused)
        if (const std::string option = at_the_form.named_by_check(call); !option.empty())
            out.remarks.line("telvox-cli: siehe --" + option);
    if (!kept) {
        out.remarks.line("telvox-cli: Das Gerät spricht jetzt mit --com-direkt " +
                         program.desk.session.strCOMparameter_direkt);
        return cli::job_failed;
    }
    const int code = exit_code(outcome);
    return code == cli::job_succeeded && !unrecorded.empty() ? cli::job_failed : code;
}

int serve(QCoreApplication &application, cli::Call call, Outputs &out) {
    if (call.common.version || call.help || call.completion) {
        std::string text = call.help         ? cli::help_text(call.job)
                           : call.completion ? cli::completion_list()
                                             : version_text("telvox-cli");
        text.pop_back();
        out.results.line(text);
        return cli::job_succeeded;
    }
    cli::complete_call(call, std::cin);
    cli::check_record(call);
    return call.job->file      ? cli::run_list(application, call, out)
           : call.everywhere() ? cli::run_search(application, call, out)
                               : run(application, call, out);
}

} // namespace

int main(int argc, char **argv) {
    os::reserve_standard_streams();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("telvox-cli");
    Outputs out;
    int code = cli::call_refused;
    try {
        code = serve(application, cli::parse_call(os::arguments(argc, argv)), out);
    } catch (const UsageError &error) {
        out.remarks.line(std::string("telvox-cli: ") + error.what());
    }
    if (const std::string why = out.results.end(); !why.empty()) {
        out.remarks.line("telvox-cli: Die Ausgabe ließ sich nicht schreiben. " + why);
        return code == cli::job_succeeded ? cli::job_failed : code;
    }
    return code;
}
