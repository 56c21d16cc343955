#pragma once

#include "rig/rig.hpp"
#include "simulator/device.hpp"

#include <algorithm>
#include <functional>

namespace telvox::test {

/// The program, a line, and a simulated device at its far end.
class Bench {
  public:
    explicit Bench(simulator::Device &device) : device_(device) {
        rig.on_output = [this](std::string_view bytes) {
            device_.receive(bytes, rig.now);
            rig.port.stuck = device_.plug() == simulator::Plug::jammed;
        };
        rig.on_format = [this](const SerialFormat &format) { device_.format(format, rig.now); };
        rig.on_open = [this](bool on) { device_.open(on, rig.now); };
        rig.on_dtr = [this](bool on) { device_.dtr(on, rig.now); };
    }

    /// Turns the clock, the device's events and the program's ticks in the order of their times, until the
    /// session is idle or the limit is reached.
    void run(milliseconds limit, milliseconds intervene_at = {},
             const std::function<void()> &intervene = {}) {
        bool carrier = device_.carrier(rig.now);
        bool intervened = !intervene;
        const milliseconds end = rig.now + limit;
        while (rig.served->busy() && rig.now < end) {
            milliseconds next = std::min(end, rig.timer.on ? rig.timer.due : end);
            next = std::min(next, device_.next().value_or(end));
            if (!intervened && intervene_at <= next) {
                next = intervene_at;
                intervened = true;
                rig.turn_to(next);
                intervene();
            }
            rig.turn_to(next);
            rig.arrive(device_.transmit(rig.now));
            if (device_.plug() == simulator::Plug::pulled && std::exchange(rig.port.is_open, false))
                rig.served->comSeriell_OnComm(CommEvent::lost);
            if (const bool now = device_.carrier(rig.now); now != carrier) {
                carrier = now;
                if (rig.port.watches)
                    rig.served->comSeriell_OnComm(now ? CommEvent::carrier_rise : CommEvent::carrier_fall);
            }
        }
    }

    void fill_in(OptionButton &type, bool remote, const char *number) {
        rig.program.choose(f.optAnalog);
        rig.program.choose(remote ? f.optFernverbindung : f.optDirektverbindung);
        rig.program.choose(type);
        if (remote && !f.optFernverbindung.value)
            rig.program.choose(f.optFernverbindung);
        rig.choose_cable_port(3);
        rig.choose_modem_port(3);
        rig.program.enter(f.tboRufnummer_Modem, number);
        rig.program.enter(f.tboRufnummer_Empfaenger, "01711234567");
        rig.program.enter(f.tboService_Center, "0900");
        rig.program.enter(f.tboAlarmmeldung, "Öl läuft über");
        rig.boxes.clear();
    }

    Rig rig;
    FrmModem &f = rig.program.desk.frmModem;

  private:
    simulator::Device &device_;
};

} // namespace telvox::test
