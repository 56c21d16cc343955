// Time that the receive handler takes per byte, by how much is already in the buffer and how the bytes come.
// The bytes are noise in which no reply stands, so every awaited text is searched for all the time.

#include "rig/rig.hpp"

#include <benchmark/benchmark.h>

namespace telvox {
namespace {

/// range(0): bytes already in the buffer; range(1): bytes per receive event. The largest buffer is one whose
/// memory does not happen to double just then.
void receive(benchmark::State &state) {
    const auto filled = static_cast<std::size_t>(state.range(0));
    const auto chunk = static_cast<std::size_t>(state.range(1));
    constexpr std::size_t measured = 64 * 1024;
    const std::string noise(measured, 'T'); // first letter of the awaited text
    for (auto _ : state) {
        state.PauseTiming();
        test::Rig rig;
        FrmModem &f = rig.program.desk.frmModem;
        rig.program.choose(f.optGSM);
        rig.choose_cable_port(3);
        rig.program.click(f.cbuTest);
        rig.turn_by(milliseconds{100});
        rig.arrive(std::string(filled, 'x'), 4096);
        state.ResumeTiming();
        rig.arrive(noise, chunk);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(measured));
}
BENCHMARK(receive)->ArgNames({"filled", "chunk"})->ArgsProduct({{1 << 10, 1 << 14, 1'100'000}, {1, 64}});

} // namespace
} // namespace telvox

BENCHMARK_MAIN();
