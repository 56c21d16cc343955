#include "operation/trial.hpp"

#include "core/text.hpp"
#include "operation/operator.hpp"
#include "telvox.hpp"

namespace telvox::operation {

namespace {

class NoPort final : public SerialPort {
  public:
    void CommPort(int number) override { number_ = number; }
    [[nodiscard]] int CommPort() const override { return number_; }
    void Settings(const SerialFormat &) override {}
    std::string PortOpen(bool open) override {
        open_ = open;
        return {};
    }
    [[nodiscard]] bool PortOpen() const override { return open_; }
    void DTREnable(bool) override {}
    void Output(std::string_view) override {}
    std::string Input() override { return {}; }
    void drain(milliseconds) override {}
    void watch_carrier(bool) override {}

  private:
    int number_ = 0;
    bool open_ = false;
};

class NoTimer final : public Timer {
  public:
    void Interval(milliseconds) override {}
    void Enabled(bool) override {}
    [[nodiscard]] milliseconds now() const override { return {}; }
};

class NoTcpClient final : public TcpClient {
  public:
    void connect(const std::string &, int) override {}
    void send(std::string_view) override {}
    void close() override {}
};

class NoProcesses final : public Processes {
  public:
    [[nodiscard]] Tools tools() const override { return Tools::of_linux; }
    void run(const ShellCommand &, milliseconds) override {}
    void kill() override {}
};

class NamedPorts final : public PortScan {
  public:
    explicit NamedPorts(const std::function<bool(const std::string &)> &exists) : exists_(exists) {}
    [[nodiscard]] std::vector<PortInfo> ports() override { return {}; }
    [[nodiscard]] int number_of(const std::string &device) override { return exists_(device) ? 1 : 0; }

  private:
    const std::function<bool(const std::string &)> &exists_;
};

/// Keeps the last that was said.
class Answers final : public MessageBoxes {
  public:
    explicit Answers(bool despite) : despite_(despite) {}
    void show(const Message &message, Answered answered) override {
        last = message;
        if (answered)
            answered(!message.asks || despite_);
    }
    Message last;

  private:
    bool despite_;
};

} // namespace

Trial try_out(const Order &order, const DataFolders &folders, bool despite,
              const std::function<bool(const std::string &)> &exists) {
    NoPort port;
    NoTimer timer, network_timer;
    NoTcpClient tcp;
    NoProcesses processes;
    NamedPorts named(exists);
    Answers answers(despite);
    Telvox program({.comSeriell = port,
                    .scan = named,
                    .Timer1 = timer,
                    .boxes = answers,
                    .Timer2 = network_timer,
                    .Winsock = tcp,
                    .processes = processes},
                   folders);
    Operator at_the_form(program, named);
    at_the_form.work(order);
    if (!program.busy())
        return {.refusal = joined_lines(at_the_form.by_path(answers.last.text)) +
                           (answers.last.asks ? " (Nein; --trotzdem bedeutet Ja)" : ""),
                .option = at_the_form.named_by_check(order)};
    const bool remote = program.desk.frmModem.optFernverbindung.value;
    const Given *given =
        port.PortOpen() ? order.find(remote ? "--modemanschluss" : "--schnittstelle") : nullptr;
    return {.port = given ? given->value : "", .remote = remote};
}

} // namespace telvox::operation
