#pragma once

#include "simulator/unit.hpp"
#include "simulator/wire.hpp"

#include <memory>

namespace telvox::simulator {

/// A device on its own cable. It understands its own serial format only, unless its family adapts itself, and
/// is mute in every other.
class Cable final : public Device {
  public:
    explicit Cable(std::shared_ptr<Unit> unit, const SerialFormat &own = {2400, 'e', 8, 1});

    void open(bool on, Time now) override;
    void format(const SerialFormat &format, Time now) override;
    void dtr(bool on, Time now) override;
    void receive(std::string_view bytes, Time now) override;
    std::string transmit(Time now) override;
    [[nodiscard]] bool carrier(Time now) override;
    [[nodiscard]] std::optional<Time> next() const override;

  private:
    void run(Time now);
    [[nodiscard]] bool understood() const { return unit_->nature().adapts_format || host_ == own_; }

    std::shared_ptr<Unit> unit_;
    SerialFormat own_;
    SerialFormat host_;
    Wire to_unit_;
    Wire to_host_;
    bool open_ = false;
};

} // namespace telvox::simulator
