#pragma once

#include "operation/journal.hpp"
#include "operation/row_program.hpp"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace telvox::operation {

inline constexpr const char *nobody_found = "An keiner freien Schnittstelle wurde ein Telvox-A gefunden.";

/// Asks all free ports at the same time which device is there, each by a program of its own: it takes as long
/// as the slowest port.
class Search {
  public:
    /// What is known of one port.
    struct At {
        PortInfo port;
        bool over = false;
        std::string said; ///< which device, or why nothing was found: one line
        Values found;     ///< how the main window reaches the device; empty if there is none
    };

    Search(MakePorts make, DataFolders folders) : make_(std::move(make)), folders_(std::move(folders)) {}

    /// A port is done. Told in the middle of an event of that port's program.
    std::function<void(const At &)> told = [](const At &) {};
    /// For the history: what was found; of a search that finds nothing, that.
    std::function<void(std::vector<DoneJob>)> done = [](const std::vector<DoneJob> &) {};
    /// The name of a port, by its entry in the port lists.
    std::function<std::string(const std::string &entry)> port_name;
    /// Hears of each program before it starts.
    std::function<void(RowProgram &, const PortInfo &)> starts = [](RowProgram &, const PortInfo &) {};

    /// Begins at the ports that can be opened; `given` is what the form holds, the format among it.
    void begin(const std::vector<PortInfo> &ports, const Values &given);
    /// Ends it at all ports.
    void cancel();
    [[nodiscard]] bool running() const;
    [[nodiscard]] bool cancelled() const { return cancelled_; }
    /// How far the last of those is that still run.
    [[nodiscard]] Progress progress() const;
    /// By port, in the order of the ports.
    [[nodiscard]] const std::vector<At> &ports() const { return ports_; }
    [[nodiscard]] std::size_t found() const;

  private:
    /// Asks one port.
    struct Asked {
        std::unique_ptr<RowProgram> program;
        std::unique_ptr<Journal> journal;
    };
    void over(std::size_t at);
    void keep(DoneJob job);

    MakePorts make_;
    DataFolders folders_;
    std::vector<At> ports_;
    std::vector<Asked> asked_; ///< by port
    bool cancelled_ = false;
};

/// What a device at a port is called in a call or a list: by its path, where it has one.
[[nodiscard]] std::string name_of(const PortInfo &port);

} // namespace telvox::operation
