#pragma once

#include "core/lists/list_run.hpp"
#include "operation/journal.hpp"
#include "operation/list_order.hpp"
#include "operation/row_program.hpp"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace telvox::operation {

/// Where a row's job goes.
struct Way {
    std::string label;    ///< "COM 3", or the device's path
    std::string resource; ///< one for everything that only one job at a time can use
    std::string device;   ///< the path, where the list names the port by it and it is the row's only one
};

/// Whether a row is still to be done. One that was begun when the program was killed may have changed its
/// device already, or alarmed somebody: not unasked (`again`).
[[nodiscard]] bool is_to_do(const std::optional<Attempt> &last, bool again = false);

/// Does rows of a list side by side, each by a program with ports of its own: those of one resource one after
/// the other, all others at once. Each beginning and each result is in the result file before anything else
/// happens; once it cannot be written nothing more starts.
class SideBySide {
  public:
    struct Rows {
        const DeviceList &list;
        ResultFile &results;
        std::vector<Way> ways; ///< by row
        std::function<bool(std::size_t row)> is_to_do;
        std::function<Order(std::size_t row)> order;
        Values base = {}; ///< what the form holds before a row is filled in
        MakePorts make;
        DataFolders folders;
        bool despite = false;             ///< questions are answered Ja
        std::function<std::string()> now; ///< the time, as the result file has it
        std::function<std::string(const std::string &entry)> port_name; ///< of an entry of the port lists
    };

    /// `later` is its own; its tick is to call `tick`.
    SideBySide(Rows rows, Timer &later);

    // Told within an event of the row's program, but for `ended` and `over`.
    std::function<void(std::size_t row, RowProgram &)> starts = [](std::size_t, RowProgram &) {};
    std::function<void(std::size_t row, const Attempt &)> ended = [](std::size_t, const Attempt &) {};
    /// Jobs that have ended, for the history.
    std::function<void(std::vector<DoneJob>)> done = [](const std::vector<DoneJob> &) {};
    /// A result could not be written: why (German).
    std::function<void(const std::string &why)> unwritten = [](const std::string &) {};
    /// Nothing runs any more, and nothing more will.
    std::function<void()> over = [] {};

    void begin();
    void tick();
    /// While it is held nothing more starts; what runs goes on.
    void hold(bool on);
    [[nodiscard]] bool held() const { return held_; }
    /// Ends all that runs, calls with their hang-up.
    void cancel();
    [[nodiscard]] bool cancelled() const { return cancelled_; }

    /// Something runs, or waits to be let on.
    [[nodiscard]] bool running() const { return runs_; }
    [[nodiscard]] bool running(std::size_t row) const { return running_.contains(row); }
    [[nodiscard]] std::size_t rows_running() const { return running_.size(); }
    [[nodiscard]] std::size_t rows_ended() const { return ended_; }
    [[nodiscard]] std::size_t rows_to_do() const { return to_do_; }

  private:
    void start_rows();
    void start_row(std::size_t row);
    bool note(std::vector<std::pair<std::size_t, Attempt>> attempts);
    std::string done_before(std::size_t row, const std::string &imei);

    Rows rows_;
    Timer &later_;
    ListRun run_;
    struct Running {
        std::unique_ptr<RowProgram> program;
        std::unique_ptr<Journal> journal;
    };
    std::map<std::size_t, Running> running_;
    std::vector<DoneJob> done_;     ///< not yet told
    std::vector<std::size_t> over_; ///< rows, not yet noted
    /// Row, by IMEI and job: several may be at work at the same time.
    std::map<std::pair<std::string, std::string>, std::size_t> at_devices_;
    std::size_t to_do_ = 0, ended_ = 0;
    bool runs_ = false, held_ = false, cancelled_ = false;
};

} // namespace telvox::operation
