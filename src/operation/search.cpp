#include "operation/search.hpp"

#include "core/port_choice.hpp"
#include "dialogues/families.hpp"

#include <algorithm>

namespace telvox::operation {

std::string name_of(const PortInfo &port) {
    return port.device.empty() ? port_entry(port.number) : port.device;
}

void Search::begin(const std::vector<PortInfo> &ports, const Values &given) {
    asked_.clear();
    ports_.clear();
    cancelled_ = false;
    for (const PortInfo &port : ports)
        if (port.refusal.empty())
            ports_.push_back({.port = port});
    for (std::size_t at = 0; at < ports_.size(); ++at) {
        Order order{.job = find_job("erkennen"), .values = given};
        order.values["schnittstelle"] = {port_entry(ports_[at].port.number), {}};
        Asked &asked = asked_.emplace_back();
        asked.program = std::make_unique<RowProgram>(std::move(order), make_(""), folders_);
        asked.journal = std::make_unique<Journal>(asked.program->program(),
                                                  [this](DoneJob job) { keep(std::move(job)); });
        if (port_name)
            asked.journal->port_name = port_name;
        starts(*asked.program, ports_[at].port);
        asked.program->over = [this, at, before = asked.program->over] {
            before();
            over(at);
        };
    }
    // One that cannot be opened is over before the next begins.
    for (const Asked &asked : asked_)
        asked.program->start();
}

/// That nobody answers at most of the ports is no news; where nobody does at all, it is told once, with the
/// last.
void Search::keep(DoneJob job) {
    const bool is_found = is_done(job.line.outcome);
    if (!is_found && (running() || found() != 0))
        return;
    if (!is_found) {
        job.line.variant.clear();
        job.line.port = job.way = "alle freien Schnittstellen";
        job.line.outcome = cancelled_ ? RowOutcome::cancelled : RowOutcome::failed;
        job.line.message = cancelled_ ? "Die Suche wurde abgebrochen." : nobody_found;
    }
    done({std::move(job)});
}

void Search::over(std::size_t at) {
    At &here = ports_[at];
    here.over = true;
    RowProgram &program = *asked_[at].program;
    const std::string &message = program.result().message;
    here.said = message.substr(0, message.find(" Bitte ")); // what to do about it is the same everywhere
    if (!is_done(program.result().outcome))
        return told(here);
    Desk &desk = program.program().desk;
    here.said = std::string("Telvox-A ") + family_of(desk.frmModem.modem_type()).name;
    for (const char *name : {"typ", "verbindung", "schnittstelle", "com-direkt"})
        here.found[name] = {value_of(*find_option(name), desk), {}};
    told(here);
}

void Search::cancel() {
    cancelled_ = true;
    for (const Asked &asked : asked_)
        asked.program->cancel();
}

bool Search::running() const {
    return std::any_of(asked_.begin(), asked_.end(),
                       [](const Asked &asked) { return !asked.program->is_over(); });
}

Progress Search::progress() const {
    Progress last;
    for (const Asked &asked : asked_)
        if (const Progress its = asked.program->program().progress();
            !asked.program->is_over() && (last.step == 0 || its.step < last.step))
            last = its;
    return last;
}

std::size_t Search::found() const {
    return static_cast<std::size_t>(
        std::count_if(ports_.begin(), ports_.end(), [](const At &at) { return !at.found.empty(); }));
}

} // namespace telvox::operation
