#include "operation/journal.hpp"

#include "core/text.hpp"
#include "dialogues/mobile.hpp"
#include "operation/jobs.hpp"
#include "operation/sent_settings.hpp"

#include <algorithm>
#include <utility>

namespace telvox::operation {

namespace {

std::string without_key(std::string caption) {
    std::erase(caption, '&');
    return caption.substr(0, caption.find("…"));
}

/// The last thing that was said of a job, on one line.
std::string message_of(const JobEnd &end) {
    return end.said.empty()
               ? ""
               : joined_lines(end.said.back().text +
                              (end.outcome == Outcome::differs ? "\r" + end.said.back().advice : ""));
}

/// "Modem konfigurieren", and of a dialog "GPRS Konfiguration: Einstellungen schreiben".
std::string title_of(const Button &by, const Desk &desk) {
    const std::string caption = without_key(by.caption);
    return by.form == &desk.frmModem ? caption : by.form->caption + ": " + caption;
}

bool on_network(const Button &by, const Desk &desk) {
    return by.form == &desk.frmIPoEthernet || &by == &desk.frmGateway.cbuVerbindung_pruefen ||
           &by == &desk.frmGateway.cbuEthernet_GW_Konfigurieren;
}

/// Where an action on the network goes.
std::string address_of(const Button &by, const Desk &desk) {
    const FrmIPoEthernet &form = desk.frmIPoEthernet;
    return by.form != &form                     ? desk.frmGateway.tboIP.text
           : form.optIP_Erstkonfiguration.value ? form.tboNeue_IP.text
                                                : form.tboAlte_IP.text;
}

/// What the job has found out, empty for one that asks nothing.
std::string answer(const Button &by, Desk &desk) {
    for (const JobCommand &job : job_commands())
        if (job.button && job.result && &job.button(desk) == &by)
            return found_out(job, desk);
    return {};
}

} // namespace

Journal::Journal(Telvox &program, std::function<void(DoneJob)> done, Now now)
    : program_(program), done_(std::move(done)), now_(std::move(now)) {
    program_.desk.observers.add(*this);
}

DoneJob Journal::begun(const Button &by) const {
    Desk &desk = program_.desk;
    DoneJob job{.line = {.variant = without_key(desk.frmModem.option_of(desk.frmModem.modem_type()).caption),
                         .job = title_of(by, desk)}};
    if (on_network(by, desk)) {
        job.line.port = job.way = port_name("Netzwerk") + ", " + address_of(by, desk);
    } else { // of a port that could not be opened the job has taken no values along
        const JobValues values = desk.jobs.running ? desk.job_values : desk.values();
        job.line.port = values.remote ? port_name(values.modem_port) + ", Rufnummer " + values.number
                                      : port_name(values.cable_port);
        job.way = (values.remote ? "Fernverbindung über Modem an " : "Direktverbindung mit Kabel, ") +
                  job.line.port;
    }
    job.settings = sent_by(by, desk);
    job.kind = &by == &desk.frmModem.cbuTest ? DoneJob::Kind::alarm_test
               : job.settings.empty()        ? DoneJob::Kind::other
                                             : DoneJob::Kind::writes;
    return job;
}

void Journal::tell() {
    if (!ended_)
        return;
    auto [by, job] = *std::exchange(ended_, std::nullopt);
    if (came_to_ && came_to_->by == by) {
        const JobEnd end = *std::exchange(came_to_, std::nullopt);
        job.line.outcome = row_outcome(end.outcome);
        job.line.message = message_of(end);
    }
    done_(std::move(job));
}

void Journal::started(const Button &by) {
    tell();
    DoneJob &job = running_[&by] = begun(by);
    const bool repeats = program_.desk.frmGSM_Status.chkLaufend.value;
    job.again = std::exchange(repeats_, repeats) && repeats;
}

/// What a device says of itself on the way counts too.
void Journal::happened() {
    tell();
    repeats_ &= program_.desk.frmGSM_Status.chkLaufend.value;
    if (const std::string imei = dialogues::imei_in(program_.received()); !imei.empty())
        for (auto &[by, job] : running_)
            if (!on_network(*by, program_.desk))
                job.line.imei = imei;
}

void Journal::ended(const JobEnd &end) {
    const auto running = running_.extract(end.by);
    if (running.empty())
        return;
    tell();
    DoneJob job = running.mapped();
    Desk &desk = program_.desk;
    const bool well = went_well(end.outcome), serial = !on_network(*end.by, desk);
    job.line.time = local_time(now_());
    job.line.outcome = row_outcome(end.outcome);
    job.device = device();
    if (well)
        job.line.message = answer(*end.by, desk);
    else // what was to be sent may not have arrived
        job.settings.clear();
    if (job.line.message.empty())
        job.line.message = message_of(end);
    if (std::exchange(row_, job.device) != job.device || row_.empty())
        imei_of_row_.clear();
    if (!job.line.imei.empty())
        imei_of_row_ = job.line.imei;
    job.line.imei = imei_of_row_;
    if (Settings read = well ? read_by(*end.by, desk) : Settings{}; !read.empty()) {
        job.kind = DoneJob::Kind::reads;
        job.settings = std::move(read);
    }
    if (well && serial && desk.findings.signal)
        job.signal = desk.frmGSM_Status.lblSignalwert.caption;
    if (end.by == &desk.frmModem.cbuErkennen && desk.findings.recognized)
        job.line.variant = without_key(desk.frmModem.option_of(*desk.findings.recognized).caption);
    ended_ = {end.by, std::move(job)};
}

} // namespace telvox::operation
