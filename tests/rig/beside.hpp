#pragma once

#include "operation/own_ports.hpp"
#include "rig/bench.hpp"

#include <memory>
#include <vector>

namespace telvox::test {

/// The outsides of programs beside another: the first that is made has the first device at its line, and so
/// on.
class Beside {
  public:
    explicit Beside(std::vector<simulator::Device *> devices) : devices_(std::move(devices)) {}

    operation::MakePorts make() {
        return
            [this](const std::string &) { return std::make_unique<Outside>(*this, *devices_.at(made_++)); };
    }
    /// Turns all clocks together, as long as something is going on, at most so far. Returns how long it took.
    milliseconds run(const std::function<bool()> &going_on, milliseconds limit = milliseconds{300'000}) {
        constexpr milliseconds step{50};
        milliseconds passed{0};
        for (; going_on() && passed < limit; passed += step)
            for (std::size_t i = 0; i < all_.size(); ++i)
                all_[i]->bench.run(step);
        return passed;
    }
    [[nodiscard]] bool any_port_open() const {
        return std::any_of(all_.begin(), all_.end(), [](auto one) { return one->bench.rig.port.is_open; });
    }
    std::size_t made() const { return made_; }

  private:
    struct Outside final : operation::OwnPorts {
        Outside(Beside &of, simulator::Device &device) : beside(of), bench(device) {
            beside.all_.push_back(this);
        }
        ~Outside() override { std::erase(beside.all_, this); }
        Telvox::Ports for_program(MessageBoxes &boxes) override {
            Rig &rig = bench.rig;
            return {.comSeriell = rig.port,
                    .scan = rig.scan,
                    .Timer1 = rig.timer,
                    .boxes = boxes,
                    .Timer2 = rig.timer2,
                    .Winsock = rig.tcp,
                    .processes = rig.processes};
        }
        void connect(Telvox &program) override { bench.rig.served = &program; }

        Beside &beside;
        Bench bench;
    };

    std::vector<simulator::Device *> devices_;
    std::size_t made_ = 0;
    std::vector<Outside *> all_;
};

} // namespace telvox::test
