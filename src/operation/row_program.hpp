#pragma once

#include "core/lists/result_file.hpp"
#include "operation/own_ports.hpp"
#include "operation/plan.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace telvox::operation {

/// A program with ports of its own that does one order beside others: a row of a list, or the search at a
/// port.
class RowProgram final : public MessageBoxes, private Observer {
  public:
    /// `despite`: questions are answered Ja. `base`: what the form holds before.
    RowProgram(Order order, std::unique_ptr<OwnPorts> ports, const DataFolders &folders, bool despite = false,
               const Values &base = {});

    ~RowProgram() { program_.Form_Unload(); }

    /// Called once when the job is over, in the middle of its last event.
    std::function<void()> over = [] {};
    /// Hears each status text, what goes into the log of a network dialog, and what was said or asked on the
    /// way and had to be answered.
    std::function<void(std::string_view)> step = [](std::string_view) {};
    std::function<void(std::string_view)> logs = [](std::string_view) {};
    std::function<void(const std::string &text, bool asks)> remark = [](const std::string &, bool) {};
    /// Whose device it was that has this IMEI: see `Plan`.
    void done_before(std::function<std::string(const std::string &imei)> whose) {
        plan_.done_before = std::move(whose);
    }
    void start();
    /// The user ends it: a call is hung up first.
    void cancel();
    /// How it came out, once it is over; time and port are left to the caller.
    [[nodiscard]] const Attempt &result() const { return *result_; }
    [[nodiscard]] bool is_over() const { return result_.has_value(); }
    [[nodiscard]] Telvox &program() { return program_; }
    /// A message in which devices that the order names by path have that name.
    [[nodiscard]] std::string by_path(std::string message) const {
        return at_the_form_.by_path(std::move(message));
    }

    void show(const Message &message, Answered answered) override;

  private:
    void ended_with(const WorkEnd &work);
    void status(std::string_view text) override { step(text); }
    void logged(std::string_view text) override { logs(text); }
    void end(Attempt attempt);

    Order order_;
    bool despite_;
    std::unique_ptr<OwnPorts> ports_;
    Telvox::Ports given_;
    Telvox program_;
    Operator at_the_form_;
    Plan plan_{program_, at_the_form_};
    std::string refusal_; ///< the last thing that was said before the job began
    std::optional<Attempt> result_;
};

} // namespace telvox::operation
