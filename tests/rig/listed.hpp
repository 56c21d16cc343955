#pragma once

#include "core/files/files.hpp"
#include "operation/list_pane.hpp"
#include "operation/profiles.hpp"
#include "rig/bench.hpp"
#include "simulator/cable.hpp"
#include "simulator/gsm.hpp"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace telvox::test {

/// A list in the window, and a GSM device at its cable.
class Listed : public testing::Test {
  protected:
    Listed() {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        main.chkListe_pruefen.value = false; // most of these rows are done at one device
    }

    void open(const std::string &text) {
        std::ofstream(folder / "l.csv", std::ios::binary) << text;
        pane.open(text_of(folder / "l.csv"));
    }
    /// Starts the chosen row and lets it end; what the box then says, or without one the status bar.
    std::string run() {
        bench.rig.boxes.clear();
        program.click(main.cbuListe_starten);
        bench.run(milliseconds{300'000});
        return bench.rig.boxes.empty() ? main.StatusBar.text : bench.rig.boxes.back().text;
    }
    /// A column of the pane, by its number.
    std::vector<std::string> column(std::size_t number) {
        std::vector<std::string> cells;
        for (std::size_t row = 0; row < main.tblListe.rows; ++row)
            cells.push_back(main.tblListe.cell(row, number));
        return cells;
    }
    std::string results() {
        std::ostringstream text;
        text << std::ifstream(folder / "l-ergebnis.csv", std::ios::binary).rdbuf();
        return text.str();
    }

    std::filesystem::path folder =
        std::filesystem::temp_directory_path() /
        (std::string("telvox_") + testing::UnitTest::GetInstance()->current_test_info()->name());
    // After the pane has closed its files: Windows insists.
    std::shared_ptr<void> gone{nullptr, [this](void *) { std::filesystem::remove_all(folder); }};
    std::shared_ptr<simulator::Gsm> device = std::make_shared<simulator::Gsm>(simulator::Generation::newer);
    simulator::Cable cable{device};
    Bench bench{cable};
    Telvox &program = bench.rig.program;
    FrmModem &main = bench.f;
    operation::Profiles profiles{program, bench.rig.scan};
    operation::ListPane pane{program, bench.rig.scan, profiles, [] { return std::time_t{0}; }};
};

/// Columns of the pane.
inline constexpr std::size_t name = 1, outcome = 2, message = 3;

} // namespace telvox::test
