#pragma once

#include "cli/call.hpp"
#include "cli/output.hpp"
#include "core/lists/result_file.hpp"
#include "operation/operator.hpp"
#include "ports/qt_ports.hpp"

namespace telvox::cli {

/// The program that does one row of a list, with ports of its own.
class RowProgram final : public MessageBoxes, private Observer {
  public:
    /// `label` names the row in remarks. Numbers of ports are those of the map.
    RowProgram(const Call &call, Order order, std::string label, std::shared_ptr<PortMap> map,
               const DataFolders &folders, Outputs &out);

    ~RowProgram() { program_.Form_Unload(); }

    /// Called once when the job is over, in the middle of its last event.
    std::function<void()> over = [] {};
    /// Hears each status text.
    std::function<void(std::string_view)> step = [](std::string_view) {};
    void start();
    /// The user ends the list: a call is hung up first.
    void cancel();
    /// How it came out, once it is over; time and port are left to the caller.
    [[nodiscard]] const Attempt &result() const { return *result_; }

    void show(const Message &message, Answered answered) override;

  private:
    void ended(const JobEnd &end) override;
    void status(std::string_view text) override { step(text); }
    void logged(std::string_view text) override { log_.take(text); }
    void end(Attempt attempt);

    const Call &call_;
    Order order_;
    std::string label_;
    Outputs &out_;
    QtPorts ports_;
    ShownLog log_;
    Telvox program_;
    Operator at_the_form_;
    std::string refusal_; ///< the last thing that was said before the job began
    std::optional<Attempt> result_;
};

} // namespace telvox::cli
