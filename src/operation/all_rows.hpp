#pragma once

#include "operation/side_by_side.hpp"

#include <optional>

namespace telvox::operation {

struct Trial;

/// The rows of the window's list that need no hand at a cable, done side by side: those over a modem or the
/// network, and those that have a port of their own.
class AllRows final : public LongWork {
  public:
    struct Opened {
        const DeviceList &list;
        const std::vector<Order> &orders; ///< by row
        ResultFile &results;
        Values base; ///< what the form holds without a row
        std::function<std::string()> now;
    };

    /// `later` is its own; its tick is to call `tick`.
    AllRows(Telvox &program, PortScan &ports, MakePorts make, Timer &later);

    /// Looks which rows could be done now; returns how many.
    [[nodiscard]] std::size_t look(const Opened &opened);
    /// How many of those that are to be done need somebody.
    [[nodiscard]] std::size_t left() const { return left_; }
    /// Begins with what was looked at. `identifies`: the devices are asked who they are; `again`: what fails
    /// is tried once more at the end.
    void begin(bool identifies, bool again);
    void tick();
    void hold(bool on) { work_->hold(on); }
    [[nodiscard]] bool held() const { return running() && work_->held(); }
    /// Jobs that have ended, for the history; the name of an entry of the port lists there.
    std::function<void(std::vector<DoneJob>)> done = [](const std::vector<DoneJob> &) {};
    std::function<std::string(const std::string &entry)> port_name = [](const std::string &entry) {
        return entry;
    };
    /// All is over.
    std::function<void()> over = [] {};

    [[nodiscard]] bool running() const override { return runs_; }
    [[nodiscard]] Progress progress() const override;
    void cancel() override {
        repeats_ = false;
        work_->cancel();
    }
    [[nodiscard]] bool running(std::size_t row) const { return running() && work_->running(row); }
    /// What the row's program said last.
    [[nodiscard]] std::string step(std::size_t row) const;
    /// "5 von 12 Zeilen erledigt, 3 laufen, 1 ohne Erfolg"
    [[nodiscard]] std::string summary() const;
    /// Why a result could not be written, if one could not.
    [[nodiscard]] std::string unwritten() { return std::exchange(unwritten_, {}); }

  private:
    [[nodiscard]] Way way_of(const Trial &trial) const;
    void begin_rows(bool held);

    Telvox &program_;
    PortScan &ports_;
    MakePorts make_;
    Timer &later_;
    std::optional<Opened> opened_;
    std::vector<Way> ways_;
    std::vector<bool> chosen_; ///< rows that are done
    std::size_t left_ = 0, failed_ = 0;
    bool identifies_ = true, again_ = false;
    bool runs_ = false;
    bool repeats_ = false; ///< those that failed come once more
    std::unique_ptr<SideBySide> work_;
    std::map<std::size_t, std::string> steps_;
    std::string unwritten_;
};

} // namespace telvox::operation
