#pragma once

#include "cli/call.hpp"
#include "cli/output.hpp"
#include "core/lists/result_file.hpp"
#include "operation/operator.hpp"
#include "ports/qt_ports.hpp"

namespace telvox::cli {

/// The program that does one row of a list, with ports of its own.
class RowProgram final : public MessageBoxes {
  public:
    /// `label` names the row in remarks. Numbers of ports are those of the map.
    RowProgram(const Call &call, Order order, std::string label, std::shared_ptr<PortMap> map,
               const DataFolders &folders, Outputs &out);

    /// Called once when the job is over, as an event of its own, so that the program may be destroyed.
    std::function<void()> over = [] {};
    void start();
    /// The user ends the list: a call is hung up first.
    void cancel();
    /// How it came out, once it is over; time and port are left to the caller.
    [[nodiscard]] Attempt result();

    void show(const Message &message, Answered answered) override;

  private:
    void look_whether_over();

    const Call &call_;
    Order order_;
    std::string label_;
    Outputs &out_;
    QtPorts ports_;
    ShownLog log_;
    Telvox program_;
    Operator at_the_form_;
    QObject alive_; ///< what is still to be called goes with it
    std::string said_;
    bool pressed_ = false;
    bool ending_ = false;
};

} // namespace telvox::cli
