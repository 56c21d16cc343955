#pragma once

#include "core/files/settings_file.hpp"
#include "operation/list_order.hpp"
#include "operation/order.hpp"

#include <functional>

namespace telvox::operation {

/// Where something is tried out: on a program of its own, whose ports lead nowhere.
struct TrialWorld {
    DataFolders folders;
    /// Whether a device named by its path is there.
    std::function<bool(const std::string &device)> exists;
    bool despite = false; ///< questions are answered Ja
    bool listed = false;  ///< as a row of a list
    bool presses = true;  ///< the button too: its checks and questions have their say, and nothing is sent
};

/// What became of an order that was tried out.
struct Trial {
    std::string refusal; ///< what a check or an unanswered question said, one line; empty: the job would run
    std::string option;  ///< that it is about; empty if it is about none
    std::string port;    ///< that the job takes, as the order names it; empty: it goes over the network
    bool remote = false; ///< the port is a modem's
    bool merges = false; ///< a copy of what is read will be kept
};

/// Tries an order on a form that holds `base`. Throws UsageError for a value or control that the form
/// refuses.
[[nodiscard]] Trial try_out(const Order &order, const Values &base, const TrialWorld &world);

/// Tries a profile, with all the dialogs that it fills. Throws UsageError.
void try_out(const Profile &profile, const Values &base, const TrialWorld &world);

/// Takes a row that would run; may throw UsageError that says why it must not.
using RowTried = std::function<void(std::size_t row, const Order &order, const Trial &trial)>;

/// Tries the rows of a list that are to be done. Throws UsageError with all mistakes (the first twenty), each
/// with its line and column.
void try_out(const DeviceList &list, const ForAllRows &all, const Values &base, const TrialWorld &world,
             const std::function<bool(std::size_t row)> &is_to_do, const RowTried &tried);

} // namespace telvox::operation
