#pragma once

#include "simulator/mobile.hpp"

namespace telvox::simulator {

/// Device in the mobile network with packet data and IP telemetry. It works with its settings as soon as it
/// is told them and keeps them beyond a start only after "AT**SAVE"; the alarm message is stored in the SIM
/// card's memory at once. While it is in a data connection (`go_online`) it hears nothing but the escape.
class Gprs final : public Mobile {
  public:
    explicit Gprs(const char *number = "001010000000017");

    /// Switch: the device gets into a data connection.
    void go_online();
    /// Whether a data connection exists, escaped from or not.
    [[nodiscard]] bool connected() const { return connected_; }

  private:
    Reply command(std::string_view line) override;
    bool takes(char byte) override;
    void forget() override;
    void started() override;
    Reply set(std::string_view line);
    Reply query(std::string_view name) const;
    Reply begin_message(std::string_view recipient);
    Reply store_message();
    static const Command<Gprs> commands[];

    struct Message {
        std::string recipient;
        std::string text;
    };
    std::optional<Message> message_; ///< whose text is being taken
    bool connected_ = false;
    bool restarts_after_call_ = false;
};

} // namespace telvox::simulator
