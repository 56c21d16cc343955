#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace telvox {

/// What the window remembers from one start to the next, in `Fenster.ini`: UTF-8 lines "name=wert".
struct Remembered {
    static constexpr std::size_t most_profiles = 5;

    bool protocol = false;             ///< "protokoll=ein|aus": the protocol is shown
    bool history = true;               ///< "verlauf=": jobs that have ended are written down
    std::vector<std::string> profiles; ///< "profil=PFAD", a line each, the last used first (UTF-8)
    std::string done_by, place;        ///< "ausgefuehrt-von=", "ort=": what records say of the user
    bool as_left = false;              ///< "wie-zuletzt=": the window begins as it was left
    /// How it was left: "zuletzt-typ=" and so on, empty where that is not known.
    std::string variant, way, cable_port, modem_port, geometry, profile;

    bool operator==(const Remembered &) const = default;
};

/// Reads it from the folder. What is missing, malformed or unknown there is as it is at the first start.
[[nodiscard]] Remembered read_remembered(const std::filesystem::path &folder);

/// Writes it, as a whole or not at all. Where that is not possible nothing is remembered and nobody hears of
/// it: it is a comfort, and no work is lost.
void write_remembered(const std::filesystem::path &folder, const Remembered &remembered);

/// Changes it, and the same in the file: the rest of that another window may have written since.
void remember(const std::filesystem::path &folder, Remembered &own,
              const std::function<void(Remembered &)> &change);

} // namespace telvox
