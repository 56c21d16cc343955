#pragma once

#include "telvox.hpp"
#include "ui/snapshot.hpp"

#include <string>
#include <vector>

namespace telvox::operation {

/// What the main window is filled in with, and what of the session goes with it. That it was kept under a
/// name and restored stands in the record, for what is entered afterwards means nothing without it.
class MainWindowState {
  public:
    MainWindowState(Telvox &program, std::string name);

    /// How the record says `ports_too`.
    static constexpr const char *with_ports = "ports";

    /// `ports_too`: the chosen ports and the formats as well, which belong to the computer and not to a
    /// device.
    void restore(Telvox &program, bool ports_too) const;

  private:
    std::string name_;
    Snapshot inputs_;
    Session session_;
    std::string cable_, modem_;
};

} // namespace telvox::operation
