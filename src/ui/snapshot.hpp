#pragma once

#include "ui/desk.hpp"

#include <functional>
#include <span>
#include <vector>

namespace telvox {

/// What windows and session hold at a moment, to be had back.
class Snapshot {
  public:
    /// Of all windows, which of them are open, and of the session.
    explicit Snapshot(Desk &desk);
    /// Of some controls only.
    explicit Snapshot(std::span<Control *const> controls);

    void restore() const;

  private:
    template <class Value> void keep(Value &value) {
        restorers_.emplace_back([&value, kept = value] { value = kept; });
    }
    void keep_control(Control &control);

    std::vector<std::function<void()>> restorers_;
};

} // namespace telvox
