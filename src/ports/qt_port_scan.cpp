#include "ports/qt_port_scan.hpp"

#include "core/port_choice.hpp"

#include <QThread>
#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <set>

namespace telvox {

/// What the ports have said, written by a thread for each.
struct QtPortScan::Answers {
    std::mutex access;
    std::condition_variable changed;
    std::set<std::string> asked; ///< and silent until now
    std::map<std::string, os::Refusal> given;
};

os::Refusal try_port(const std::string &device) {
    const auto seen = os::probe(device);
    return seen ? *seen : open_system_line(device, {}, [](CommEvent) {}).cause;
}

QtPortScan::QtPortScan(PortMap &ports, Try try_it, milliseconds limit)
    : map_(ports),
      scanner_(ports),
      try_(std::move(try_it)),
      limit_(limit),
      answers_(std::make_shared<Answers>()) {}

void QtPortScan::ask(const std::string &device) const {
    answers_->given.erase(device);
    if (!answers_->asked.insert(device).second)
        return; // since an earlier scan
    QThread *thread = QThread::create([answers = answers_, try_it = try_, device] {
        const os::Refusal refusal = try_it(device);
        const std::scoped_lock lock(answers->access);
        answers->given[device] = refusal;
        answers->asked.erase(device);
        answers->changed.notify_all();
    });
    QObject::connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start();
}

os::Refusal QtPortScan::simulated(int number) {
    scanner_.CommPort(number);
    scanner_.PortOpen(true);
    scanner_.PortOpen(false);
    return scanner_.refusal();
}

std::vector<PortInfo> QtPortScan::ports() {
    std::map<int, std::string> devices; // of the system
    std::vector<PortInfo> found;
    for (int number = 1; number <= last_port; ++number)
        if (const Port *port = map_.find(number)) {
            found.push_back(map_.info(number));
            if (!port->simulated)
                devices[number] = port->device;
        }

    std::unique_lock lock(answers_->access);
    for (const auto &[number, device] : devices)
        ask(device);
    answers_->changed.wait_for(lock, limit_, [&] {
        return std::none_of(devices.begin(), devices.end(),
                            [&](const auto &port) { return answers_->asked.contains(port.second); });
    });
    for (PortInfo &info : found) {
        const auto device = devices.find(info.number);
        const auto given = answers_->given.find(info.device);
        const os::Refusal refusal = device == devices.end()          ? simulated(info.number)
                                    : given != answers_->given.end() ? given->second
                                                                     : port_silent;
        info.refusal = refusal.sentence;
        info.in_short = refusal.in_short;
    }
    // One that was unplugged is not there; one that the user named is missed.
    if (!map_.named_by_user())
        std::erase_if(found, [](const PortInfo &info) { return info.refusal == port_absent.sentence; });
    return found;
}

int QtPortScan::number_of(const std::string &device) {
    return os::exists(device) ? map_.number_of(device) : 0;
}

} // namespace telvox
