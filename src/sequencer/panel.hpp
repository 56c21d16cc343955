#pragma once

#include "core/job_values.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace telvox {

struct Control;

/// What the sequencer reads from and shows on the windows.
class Panel {
  public:
    virtual ~Panel() = default;
    /// What the windows hold, for a job that starts now.
    [[nodiscard]] virtual JobValues values() const = 0;
    /// Shows what the running job has found out so far.
    virtual void show(const Findings &findings) = 0;
    /// The fields that hold something else than was read, because it does not go into them.
    [[nodiscard]] virtual std::vector<std::string> changed(const Findings &findings) const = 0;
    virtual void status(std::string_view text) = 0;
    /// Puts the focus into a field.
    virtual void focus(Control &field) = 0;
    virtual void prz_Eingaben_deaktivieren() = 0;
    virtual void prz_Eingaben_aktivieren() = 0;
};

} // namespace telvox
