#pragma once

#include "core/files/settings_file.hpp"
#include "operation/order.hpp"

#include <functional>

namespace telvox::operation {

/// What became of an order that was tried out.
struct Trial {
    std::string refusal; ///< what a check or an unanswered question said, one line; empty: the job would run
    std::string option;  ///< that it is about; empty if it is about none
    std::string port;    ///< that the job takes, as the order names it; empty: it goes over the network
    bool remote = false; ///< the port is a modem's
};

/// Tries an order on a program of its own, whose ports lead nowhere: everything is filled in and the button
/// is pressed, so that every check and question has its say and nothing is sent. `despite`: questions are
/// answered Ja; `exists` says whether a device named by its path is there. Throws UsageError for a value or
/// control that the form refuses.
[[nodiscard]] Trial try_out(const Order &order, const DataFolders &folders, bool despite,
                            const std::function<bool(const std::string &device)> &exists);

} // namespace telvox::operation
