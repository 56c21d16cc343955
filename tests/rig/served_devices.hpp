#pragma once

#include "rig/far_end.hpp"
#include "simulator/cable.hpp"

#include <algorithm>
#include <chrono>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace telvox::test {

/// Simulated devices, each at a pseudo-terminal, that live in real time on a thread of their own.
class ServedDevices {
  public:
    explicit ServedDevices(const std::vector<std::shared_ptr<simulator::Unit>> &units) {
        for (const auto &unit : units)
            lines_.push_back(std::make_unique<Line>(unit));
        server_ = std::jthread([this](const std::stop_token &stop) {
            while (!stop.stop_requested())
                serve();
        });
    }

    /// What a serial program opens to speak to a device.
    [[nodiscard]] const std::string &path(std::size_t device) const { return lines_[device]->end.path; }
    /// Whether every device has been sent something within ten seconds.
    [[nodiscard]] bool all_hear() {
        for (const Time end = now() + Time{10'000}; now() < end; std::this_thread::sleep_for(Time{5})) {
            const std::scoped_lock lock(access_);
            if (std::all_of(lines_.begin(), lines_.end(), [](const auto &line) { return line->heard; }))
                return true;
        }
        return false;
    }
    /// The adapter of a device is gone.
    void unplug(std::size_t device) {
        const std::scoped_lock lock(access_);
        lines_[device]->end.unplug();
    }

  private:
    using Time = simulator::Time;
    struct Line {
        explicit Line(std::shared_ptr<simulator::Unit> unit) : device(std::move(unit)) {
            device.format(simulator::factory_format, Time{0});
            device.open(true, Time{0});
        }

        simulator::Cable device;
        FarEnd end;
        bool heard = false;
    };

    [[nodiscard]] Time now() const {
        return std::chrono::duration_cast<Time>(std::chrono::steady_clock::now() - began_);
    }

    /// Waits until a device is spoken to or says something, and passes it on.
    void serve() {
        std::vector<pollfd> masters;
        Time until = now() + Time{20}; // for what is unplugged or ends meanwhile
        for (const auto &line : lines_) {
            masters.push_back({.fd = line->end.handle(), .events = POLLIN, .revents = 0});
            until = std::min(until, line->device.next().value_or(until));
        }
        ::poll(masters.data(), masters.size(), static_cast<int>(std::max(until - now(), Time{0}).count()));
        const std::scoped_lock lock(access_);
        for (std::size_t i = 0; i < lines_.size(); ++i)
            pass_on(*lines_[i], (masters[i].revents & POLLIN) != 0);
    }

    void pass_on(Line &line, bool spoken_to) const {
        if (const std::string bytes = spoken_to ? line.end.take() : ""; !bytes.empty()) {
            line.device.receive(bytes, now());
            line.heard = true;
        }
        const std::string said = line.device.transmit(now());
        if (!said.empty() && ::write(line.end.handle(), said.data(), said.size()) < 0)
            line.end.unplug();
    }

    const std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
    std::vector<std::unique_ptr<Line>> lines_;
    std::mutex access_;
    std::jthread server_;
};

} // namespace telvox::test
