#pragma once

#include "core/records/service_record.hpp"
#include "telvox.hpp"

#include <ctime>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace telvox::operation {

/// Watches a program and tells of each job, and each action on the network, that has ended: what it sent,
/// what the device answered, how it came out.
class Journal : private Observer {
  public:
    using Now = std::function<std::time_t()>;

    /// `done` hears of a job within the event that ended it.
    Journal(
        Telvox &program, std::function<void(DoneJob)> done, Now now = [] { return std::time(nullptr); });
    ~Journal() { program_.desk.observers.remove(*this); }
    Journal(const Journal &) = delete;
    Journal &operator=(const Journal &) = delete;

    /// The row that is being done; empty: none.
    std::function<std::string()> device = [] { return std::string(); };
    /// The name of a port, by its entry in the port lists, and of the "Netzwerk".
    std::function<std::string(const std::string &)> port_name = [](const std::string &entry) {
        return entry;
    };

  private:
    void started(const Button &by) override;
    void ended(const JobEnd &end) override;
    void came_to(const JobEnd &end) override { came_to_ = end; }
    void happened() override;
    [[nodiscard]] DoneJob begun(const Button &by) const;
    void tell();

    Telvox &program_;
    std::function<void(DoneJob)> done_;
    Now now_;
    std::map<const Button *, DoneJob> running_; ///< a job, and an action on the network beside it
    std::optional<std::pair<const Button *, DoneJob>> ended_; ///< what it came to may be told yet
    std::optional<JobEnd> came_to_;
    bool repeats_ = false;          ///< the last job was asked by itself, and will be once more
    std::string imei_of_row_, row_; ///< what the device of this row has said
};

} // namespace telvox::operation
