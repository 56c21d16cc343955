#pragma once

#include "telvox.hpp"

#include <functional>
#include <memory>
#include <string>

namespace telvox::operation {

/// The outside of one more program, all its own.
class OwnPorts {
  public:
    virtual ~OwnPorts() = default;
    /// What the program is made with.
    [[nodiscard]] virtual Telvox::Ports for_program(MessageBoxes &boxes) = 0;
    /// Events go to the program from now on.
    virtual void connect(Telvox &program) = 0;
};

/// Makes the outside of programs that run beside others. Numbers of ports are the same for all of them; with
/// a device's path that device is the only one there is.
using MakePorts = std::function<std::unique_ptr<OwnPorts>(const std::string &device)>;

} // namespace telvox::operation
