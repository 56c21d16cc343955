#pragma once

#include "core/session.hpp"

#include <string>
#include <string_view>

namespace telvox {

struct Control;

/// What the sequencer reads from and shows on the main window.
class Panel {
  public:
    virtual ~Panel() = default;
    [[nodiscard]] virtual ModemType modem_type() const = 0;
    /// The running (or next) job reaches the device through the local modem.
    [[nodiscard]] virtual bool remote() const = 0;
    /// Entry of the port list that counts for the connection way.
    [[nodiscard]] virtual std::string selected_port() const = 0;
    virtual void status(std::string_view text) = 0;
    /// Puts the focus into a field.
    virtual void focus(Control &field) = 0;
    virtual void prz_Eingaben_deaktivieren() = 0;
    virtual void prz_Eingaben_aktivieren() = 0;
};

} // namespace telvox
