#include "operation/search.hpp"

#include "core/port_choice.hpp"
#include "dialogues/families.hpp"

#include <algorithm>

namespace telvox::operation {

std::string name_of(const PortInfo &port) {
    return port.device.empty() ? port_entry(port.number) : port.device;
}

void Search::begin(const std::vector<PortInfo> &ports, const Values &given) {
    programs_.clear();
    ports_.clear();
    cancelled_ = false;
    for (const PortInfo &port : ports)
        if (port.refusal.empty())
            ports_.push_back({.port = port});
    for (std::size_t at = 0; at < ports_.size(); ++at) {
        Order order{.job = find_job("erkennen"), .values = given};
        order.values["schnittstelle"] = {port_entry(ports_[at].port.number), {}};
        programs_.push_back(std::make_unique<RowProgram>(std::move(order), make_(""), folders_));
        starts(*programs_.back(), ports_[at].port);
        programs_.back()->over = [this, at, before = programs_.back()->over] {
            before();
            over(at);
        };
    }
    // One that cannot be opened is over before the next begins.
    for (const auto &program : programs_)
        program->start();
}

void Search::over(std::size_t at) {
    At &here = ports_[at];
    here.over = true;
    RowProgram &program = *programs_[at];
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
    for (const auto &program : programs_)
        program->cancel();
}

bool Search::running() const {
    return std::any_of(programs_.begin(), programs_.end(),
                       [](const auto &program) { return !program->is_over(); });
}

Progress Search::progress() const {
    Progress last;
    for (const auto &program : programs_)
        if (const Progress its = program->program().progress();
            !program->is_over() && (last.step == 0 || its.step < last.step))
            last = its;
    return last;
}

std::size_t Search::found() const {
    return static_cast<std::size_t>(
        std::count_if(ports_.begin(), ports_.end(), [](const At &at) { return !at.found.empty(); }));
}

} // namespace telvox::operation
