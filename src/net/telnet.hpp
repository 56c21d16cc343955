#pragma once

#include <bitset>
#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace telvox {

/// How far a Telnet dialogue with the Ethernet module is.
struct TelnetState {
    bool user_sent = false;
    bool password_sent = false;
    bool gateway_sent = false;
    bool gateway_confirmed = false;
    bool netmask_sent = false;
    bool netmask_confirmed = false;
    bool address_sent = false;
    bool address_confirmed = false;
    bool reset_sent = false; ///< the module restarts without an answer, so this alone is the success
};
using TelnetFlag = bool TelnetState::*;

/// What the module is to be told; copied when a dialogue starts.
struct TelnetValues {
    std::string gateway;
    std::string netmask;
    std::string address;
};

/// One word of the module's and what it leads to. Setting a flag that was not set shows that the dialogue
/// goes on.
struct Prompt {
    const char *contains = "";
    TelnetFlag given = nullptr;  ///< must be set
    TelnetFlag unless = nullptr; ///< must not be set
    TelnetFlag sets = nullptr;
    const char *send = nullptr;                 ///< command; none: nothing is sent
    std::string TelnetValues::*value = nullptr; ///< behind the command; a carriage return follows
};

/// The dialogues that give the module its gateway and netmask, and its address.
struct TelnetDialogues {
    std::span<const Prompt> gateway;
    std::span<const Prompt> address;
};

/// Takes Telnet's own commands out of what arrives and refuses every option that the far end offers or asks
/// for, each once.
class TelnetFilter {
  public:
    /// The text that remains; answers are appended to `refusals`.
    std::string text(std::string_view bytes, std::string &refusals);

  private:
    enum class In { text, command, option, parameters, parameters_command };
    In in_ = In::text;
    unsigned char command_ = 0;
    std::bitset<512> refused_;
};

/// A dialogue with the module: prompts in, commands out. It knows neither socket nor clock.
class TelnetDialogue {
  public:
    /// What an arrival leads to.
    struct Reaction {
        std::string text;              ///< what the module said
        std::vector<std::string> sent; ///< what is to be sent, each at once
    };

    TelnetDialogue() = default;
    TelnetDialogue(std::span<const Prompt> prompts, TelnetValues values)
        : prompts_(prompts), values_(std::move(values)) {}

    /// Bytes have arrived. Words count in all that came since the last command went out, so they may arrive
    /// in pieces; a word that has acted does not act again. "ERROR" makes all of it count for nothing.
    Reaction arrive(std::string_view bytes);
    /// Half a second has passed. True after five of them without progress: the dialogue is over.
    bool tick();
    [[nodiscard]] const TelnetState &state() const { return state_; }

  private:
    static constexpr int patience = 5;
    static constexpr std::size_t longest = 4096; ///< of what is kept; no module says so much at once

    bool holds(const Prompt &prompt) const;
    void forget();

    std::span<const Prompt> prompts_;
    TelnetValues values_;
    TelnetFilter filter_;
    TelnetState state_;
    std::string heard_;                            ///< since the last command went out
    std::map<std::string_view, std::size_t> used_; ///< where in it to look for a word that has acted
    int idle_ = 0;
};

} // namespace telvox
