#pragma once

#include "telvox.hpp"
#include "ui/snapshot.hpp"

#include <string>
#include <vector>

namespace telvox::operation {

/// What the main window is filled in with, and what of the session goes with it.
class MainWindowState {
  public:
    explicit MainWindowState(Desk &desk);

    /// `ports_too`: the chosen ports and the formats as well, which belong to the computer and not to a
    /// device.
    void restore(Telvox &program, bool ports_too) const;

  private:
    Snapshot inputs_;
    Session session_;
    std::string cable_, modem_;
};

} // namespace telvox::operation
