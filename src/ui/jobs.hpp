#pragma once

#include "link/recorder.hpp"
#include "net/network_tools.hpp"
#include "sequencer/launch.hpp"
#include "sequencer/sequencer.hpp"
#include "ui/desk.hpp"

/// What starts jobs: per group of windows the launches and the handlers of their buttons.
namespace telvox {

/// A check that a field of the main window is not empty.
template <auto Field> constexpr Check filled(const char *otherwise) {
    return {.holds = [](const Desk &d) { return !(d.frmModem.*Field).text.empty(); },
            .otherwise = otherwise,
            .field = [](Desk &d) -> Control * { return &(d.frmModem.*Field); }};
}

/// The cabled device's port must be chosen.
inline constexpr Check cable_chosen = filled<&FrmModem::cobSchnittstelle>(
    "Zum parametrieren muss die Schnittstelle ausgewählt werden, an der das Telvox-A angeschlossen ist.");
/// Modem port and number must be there for a configuration in a call.
inline constexpr Check modem_chosen = filled<&FrmModem::cobModem_Port>(
    "Zum parametrieren muss die Schnittstelle ausgewählt werden, an der ein Modem angeschlossen ist.");
inline constexpr Check number_entered = filled<&FrmModem::tboRufnummer_Modem>(
    "Um das Telvox-A aus der Ferne zu parametrieren, muss eine Rufnummer eingegeben werden.");

/// Gives the buttons and menu entries of the windows their click handlers.
void connect_main_window(Desk &desk, Sequencer &sequencer);
void connect_small_dialogs(Desk &desk, Sequencer &sequencer);
void connect_gprs_dialogs(Desk &desk, Sequencer &sequencer);
void connect_settings(Desk &desk, Sequencer &sequencer);
void connect_protocol(Desk &desk, Recorder &recorder);
/// `dialogues`: what is said to the module over the network.
void connect_ethernet(Desk &desk, Sequencer &sequencer, NetworkTools &network,
                      const TelnetDialogues &dialogues);

/// A menu entry's handler that opens a window.
[[nodiscard]] inline std::function<void()> opens(Form &form) {
    return [&form] { form.load(); };
}

/// Has a button start a job, which takes its window's values with it: the window closes if it runs.
inline void starts_and_closes(Button &button, Sequencer &sequencer, const Launch &launch) {
    button.clicked = [&] {
        if (sequencer.start(launch, button))
            button.form->unload();
    };
}
/// Has a button start a job in a window that stays open.
inline void starts(Button &button, Sequencer &sequencer, const Launch &launch) {
    button.clicked = [&] { sequencer.start(launch, button); };
}

} // namespace telvox
