#pragma once

#include "simulator/unit.hpp"
#include "simulator/wire.hpp"

#include <memory>

namespace telvox::simulator {

/// A device on its own cable. What comes in another serial format than the receiver's is noise to it, on both
/// sides.
class Cable final : public Device {
  public:
    explicit Cable(std::shared_ptr<Unit> unit) : unit_(std::move(unit)) {}
    /// Carried to another device.
    void carry_to(std::shared_ptr<Unit> unit) { unit_ = std::move(unit); }

    void open(bool on, Time now) override;
    void format(const SerialFormat &format, Time now) override;
    void dtr(bool on, Time now) override;
    void receive(std::string_view bytes, Time now) override;
    std::string transmit(Time now) override;
    [[nodiscard]] bool carrier(Time now) override;
    [[nodiscard]] std::optional<Time> next() const override;
    [[nodiscard]] Plug plug() const override { return unit_->occupied ? Plug::occupied : plug_; }

  private:
    void run(Time now);
    void hear();

    std::shared_ptr<Unit> unit_;
    SerialFormat host_ = factory_format;
    Wire to_unit_;
    Wire to_host_;
    bool open_ = false;
    Plug plug_ = Plug::works; ///< since the port was opened
};

} // namespace telvox::simulator
