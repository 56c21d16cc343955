#include "ports/network_ports.hpp"

#include <QTimer>

namespace telvox {

namespace {

class SimulatedTcpClient final : public ReportingTcpClient {
  public:
    explicit SimulatedTcpClient(PortMap &ports) : ports_(ports) {
        wake_.setSingleShot(true);
        wake_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&wake_, &QTimer::timeout, &wake_, [this] { collect(); });
    }

    void connect(const std::string &address, int port) override {
        connection_ = ports_.world().network.connect(address, port, ports_.now());
        sleep();
    }
    void send(std::string_view bytes) override {
        if (connection_)
            connection_->receive(bytes, ports_.now());
        sleep();
    }
    void close() override {
        connection_.reset();
        sleep();
    }

  private:
    void collect() {
        const std::string bytes = connection_ ? connection_->transmit(ports_.now()) : "";
        sleep();
        if (!bytes.empty())
            arrived(bytes);
    }
    /// Until the module next has something.
    void sleep() {
        const auto next = connection_ ? connection_->next() : std::nullopt;
        if (!next)
            return wake_.stop();
        wake_.start(std::max(*next - ports_.now(), simulator::Time(1)));
    }

    PortMap &ports_;
    std::unique_ptr<simulator::Connection> connection_;
    QTimer wake_;
};

/// Linux' tools as far as they are asked for, on the simulated network.
class SimulatedProcesses final : public ReportingProcesses {
  public:
    explicit SimulatedProcesses(PortMap &ports) : ports_(ports) {
        QObject::connect(&next_, &QTimer::timeout, &next_, [this] { go_on(); });
    }

    [[nodiscard]] Tools tools() const override { return Tools::of_linux; }

    void run(const ShellCommand &command, milliseconds) override {
        command_ = command;
        end_ = {};
        requests_ = 0;
        next_.start(command.program == "ping" ? between_requests : quick);
    }
    void kill() override { next_.stop(); }

  private:
    static constexpr milliseconds between_requests{400};
    static constexpr milliseconds quick{20};
    static constexpr int all_requests = 4;

    void go_on() {
        const auto &arguments = command_.arguments;
        if (command_.program == "ping") {
            request(arguments.back());
            if (requests_ < all_requests)
                return;
        } else if (arguments.at(0) == "route") {
            const std::string &address = arguments.back();
            end_.output = address + (address.starts_with("192.168.0.") ? "" : " via 192.168.0.254") +
                          " dev sim0 src 192.168.0.1\n";
        } else if (!ports_.world().network.bind(arguments.at(2), arguments.at(4))) {
            end_.exit_status = 1;
        }
        next_.stop();
        ended(end_);
    }

    void request(const std::string &address) {
        const auto answer = ports_.world().network.ping(address, ports_.now());
        const std::string sequence = "icmp_seq=" + std::to_string(++requests_);
        end_.output += answer ? "64 Bytes von " + address + ": " + sequence +
                                    " ttl=64 Zeit=" + std::to_string(answer->count()) + " ms\n"
                              : "noch keine Antwort für " + sequence + "\n";
    }

    PortMap &ports_;
    ShellCommand command_;
    ProcessEnd end_;
    int requests_ = 0;
    QTimer next_;
};

} // namespace

std::unique_ptr<ReportingTcpClient> make_simulated_tcp_client(PortMap &ports) {
    return std::make_unique<SimulatedTcpClient>(ports);
}

std::unique_ptr<ReportingProcesses> make_simulated_processes(PortMap &ports) {
    return std::make_unique<SimulatedProcesses>(ports);
}

} // namespace telvox
