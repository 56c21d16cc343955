// A list of fifty rows at fifty ports over a list of one: time, memory and processor time of the command line
// itself. Behind each port, a pseudo-terminal, stands a simulated device that this program runs. Exit 1 if a
// figure is above its limit.

#include "simulator/cable.hpp"
#include "simulator/gsm.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace telvox::simulator;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::size_t many = 50;
constexpr int rounds = 3;
constexpr double time_limit = 1.05;
constexpr double memory_limit_kb = 1024;

struct Figures {
    double seconds = 0;
    double processor_seconds = 0;
    double memory_kb = 0;
};

/// A device behind a pseudo-terminal.
struct SimulatedPort {
    SimulatedPort() {
        ::grantpt(master);
        ::unlockpt(master);
        path = ::ptsname(master);
        slave =
            ::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC); // the line stands while nobody has opened it
        termios raw{};
        ::tcgetattr(slave, &raw);
        ::cfmakeraw(&raw);
        ::tcsetattr(slave, TCSANOW, &raw);
        device.open(true, Time(0));
    }
    ~SimulatedPort() {
        ::close(slave);
        ::close(master);
    }
    SimulatedPort(const SimulatedPort &) = delete;
    SimulatedPort &operator=(const SimulatedPort &) = delete;

    int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    int slave = -1;
    std::string path;
    Cable device{std::make_shared<Gsm>(Generation::newer)};
};

/// Runs the devices until the program has ended.
Figures run_devices(std::vector<std::unique_ptr<SimulatedPort>> &ports, pid_t program) {
    const auto begin = Clock::now();
    const auto now = [&] { return std::chrono::duration_cast<Time>(Clock::now() - begin); };
    std::vector<pollfd> lines;
    for (const auto &port : ports)
        lines.push_back({.fd = port->master, .events = POLLIN, .revents = 0});
    int status = 0;
    rusage used{};
    while (::wait4(program, &status, WNOHANG, &used) == 0) {
        Time wait{20};
        for (const auto &port : ports)
            if (const auto next = port->device.next())
                wait = std::clamp(*next - now(), Time(1), wait);
        ::poll(lines.data(), lines.size(), static_cast<int>(wait.count()));
        for (const auto &port : ports) {
            char bytes[256];
            if (const auto size = ::read(port->master, bytes, sizeof bytes); size > 0)
                port->device.receive({bytes, static_cast<std::size_t>(size)}, now());
            const std::string answer = port->device.transmit(now());
            if (!answer.empty() && ::write(port->master, answer.data(), answer.size()) < 0)
                std::perror("write");
        }
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        std::exit(EXIT_FAILURE);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return {.seconds = std::chrono::duration<double>(Clock::now() - begin).count(),
            .processor_seconds = seconds(used.ru_utime) + seconds(used.ru_stime),
            .memory_kb = static_cast<double>(used.ru_maxrss)};
}

Figures run(const std::string &program, const fs::path &folder, std::size_t rows) {
    std::vector<std::unique_ptr<SimulatedPort>> ports;
    const std::string list = folder / "liste.csv";
    fs::remove(folder / "liste-ergebnis.csv");
    std::ofstream file(list);
    file << "name;typ;schnittstelle;empfaenger;service-center;alarmtext\n";
    for (std::size_t i = 0; i < rows; ++i) {
        ports.push_back(std::make_unique<SimulatedPort>());
        file << "Pumpwerk " << i << ";gsm;" << ports.back()->path << ";01711234567;+491710760000;Pumpe 3\n";
    }
    file.close();
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(STDOUT_FILENO);
        ::open("/dev/null", O_WRONLY);
        ::execl(program.c_str(), program.c_str(), "liste", list.c_str(), nullptr);
        std::_Exit(EXIT_FAILURE);
    }
    return run_devices(ports, child);
}

double median(std::vector<Figures> &of, double Figures::*what) {
    std::sort(of.begin(), of.end(), [&](const Figures &a, const Figures &b) { return a.*what < b.*what; });
    return of[of.size() / 2].*what;
}

} // namespace

int main(int, char **argv) {
    const std::string program = fs::absolute(argv[0]).parent_path() / "telvox-cli";
    const fs::path folder = fs::temp_directory_path() / ("telvox_bench_" + std::to_string(::getpid()));
    fs::create_directories(folder);
    std::vector<Figures> one, fifty;
    for (int round = 0; round < rounds; ++round) {
        one.push_back(run(program, folder, 1));
        fifty.push_back(run(program, folder, many));
    }
    fs::remove_all(folder);
    const auto both = [&](double Figures::*what) {
        return std::pair(median(one, what), median(fifty, what));
    };
    const auto [time_one, time_many] = both(&Figures::seconds);
    const auto [processor_one, processor_many] = both(&Figures::processor_seconds);
    const auto [memory_one, memory_many] = both(&Figures::memory_kb);
    const double memory_each = (memory_many - memory_one) / (many - 1);
    std::printf("time:      %.2f s for one row, %.2f s for %zu: %.3f\n", time_one, time_many, many,
                time_many / time_one);
    std::printf("processor: %.1f ms for one row, %.1f ms for %zu: %.1f ms for each further one\n",
                processor_one * 1e3, processor_many * 1e3, many,
                (processor_many - processor_one) * 1e3 / (many - 1));
    std::printf("memory:    %.0f KB for one row, %.0f KB for %zu: %.0f KB for each further one\n", memory_one,
                memory_many, many, memory_each);
    return time_many / time_one <= time_limit && memory_each <= memory_limit_kb ? EXIT_SUCCESS : EXIT_FAILURE;
}
