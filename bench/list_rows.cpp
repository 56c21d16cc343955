// A list of fifty rows at fifty ports over a list of one row, and the search at fifteen ports over that at
// one: how long it takes, and for the list what memory and processor time each further row costs. The ports
// are pseudo-terminals at which this process serves simulated devices; the work is done by telvox-cli, a
// process of its own. Exit 1 if a figure is above its limit.

#include "rig/served_devices.hpp"

#include "simulator/gsm.hpp"
#include "simulator/isdn.hpp"

#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>

namespace telvox {
namespace {

namespace fs = std::filesystem;

constexpr int many = 50;
constexpr int rounds = 5;
constexpr double time_limit = 1.05;
constexpr int all_ports = 15;
constexpr double search_limit = 1.1;
constexpr double memory_limit_mb = 1;

struct Cost {
    double seconds;
    double peak_mb;
    double processor_ms;
};

double milliseconds_of(const timeval &time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

/// Runs telvox-cli; exits if that does not end well.
Cost run(const fs::path &program, std::vector<std::string> arguments) {
    std::vector<char *> given{const_cast<char *>(program.c_str())};
    for (std::string &argument : arguments)
        given.push_back(argument.data());
    given.push_back(nullptr);
    const auto began = std::chrono::steady_clock::now();
    const pid_t child = ::fork();
    if (child == 0) {
        if (!std::freopen("/dev/null", "w", stdout) || !std::freopen("/dev/null", "w", stderr))
            ::_exit(126);
        ::execv(program.c_str(), given.data());
        ::_exit(127);
    }
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - began;
    if (status != 0) {
        std::fprintf(stderr, "telvox-cli %s did not end well\n", arguments.front().c_str());
        std::exit(1);
    }
    return {.seconds = took.count(),
            .peak_mb = static_cast<double>(usage.ru_maxrss) / 1024,
            .processor_ms = milliseconds_of(usage.ru_utime) + milliseconds_of(usage.ru_stime)};
}

Cost search(const fs::path &program, int ports) {
    std::vector<std::shared_ptr<simulator::Unit>> units;
    for (int i = 0; i < ports; ++i)
        units.push_back(std::make_shared<simulator::Isdn>());
    const test::ServedDevices devices(units);
    std::vector<std::string> arguments{"erkennen"};
    for (int i = 0; i < ports; ++i)
        arguments.push_back("--port=" + std::to_string(i + 1) + "=" +
                            devices.path(static_cast<std::size_t>(i)));
    return run(program, arguments);
}

Cost list_of(const fs::path &program, int rows) {
    std::vector<std::shared_ptr<simulator::Unit>> units;
    for (int i = 0; i < rows; ++i) {
        const auto unit = std::make_shared<simulator::Gsm>(simulator::Generation::newer);
        unit->imei = "0010100000" + std::to_string(10'000 + i); // no device twice
        units.push_back(unit);
    }
    const test::ServedDevices devices(units);
    const fs::path folder = fs::temp_directory_path() / ("telvox-bench-" + std::to_string(::getpid()));
    fs::create_directories(folder);
    const std::string list = folder / "liste.csv";
    {
        std::ofstream file(list);
        file << "name;typ;auftrag;schnittstelle;empfaenger;service-center;alarmtext\n";
        for (int i = 0; i < rows; ++i)
            file << i << ";gsm;parametrieren;" << devices.path(static_cast<std::size_t>(i))
                 << ";01711234567;+491710760000;Pumpe " << i << "\n";
    }
    const Cost cost = run(program, {"liste", list});
    fs::remove_all(folder);
    return cost;
}

double median(std::vector<Cost> costs, double Cost::*figure) {
    std::sort(costs.begin(), costs.end(),
              [=](const Cost &a, const Cost &b) { return a.*figure < b.*figure; });
    return costs[costs.size() / 2].*figure;
}

int measure(const fs::path &program) {
    std::vector<Cost> one, all, one_port, ports;
    for (int i = 0; i < rounds; ++i) {
        one.push_back(list_of(program, 1));
        all.push_back(list_of(program, many));
        one_port.push_back(search(program, 1));
        ports.push_back(search(program, all_ports));
    }
    const auto further = [&](double Cost::*figure) {
        return (median(all, figure) - median(one, figure)) / (many - 1);
    };
    const auto ratio = [](const char *what, const std::vector<Cost> &single, const std::vector<Cost> &several,
                          double limit) {
        const double one_s = median(single, &Cost::seconds), all_s = median(several, &Cost::seconds);
        std::printf("%-10s one %.2f s, all %.2f s, ratio %.3f, limit %.2f\n", what, one_s, all_s,
                    all_s / one_s, limit);
        return all_s / one_s <= limit;
    };
    const bool in_time = ratio("list:", one, all, time_limit);
    const bool found_in_time = ratio("search:", one_port, ports, search_limit);
    std::printf("memory:    one row %.1f MB, each further %.3f MB, limit %.0f MB\n",
                median(one, &Cost::peak_mb), further(&Cost::peak_mb), memory_limit_mb);
    std::printf("processor: one row %.0f ms, each further %.1f ms\n", median(one, &Cost::processor_ms),
                further(&Cost::processor_ms));
    return in_time && found_in_time && further(&Cost::peak_mb) <= memory_limit_mb ? 0 : 1;
}

} // namespace
} // namespace telvox

int main(int, char **argv) {
    return telvox::measure(std::filesystem::path(argv[0]).parent_path() / "telvox-cli");
}
