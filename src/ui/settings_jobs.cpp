#include "ui/jobs.hpp"

namespace telvox {

namespace {

constexpr Check change_checks[] = {
    filled<&FrmModem::cobSchnittstelle>(
        "Zur Änderung muss die Schnittstelle ausgewählt werden,\ran der das Telvox-A angeschlossen ist."),
};

/// The device is spoken to as the dialog says that it is set now, whatever was used before.
constexpr Launch change_interface = {
    .checks = change_checks,
    .flag = &JobState::boolUART_umstellen,
    .counter = &JobState::byteSchnittstellenaenderung_Counter,
    .cable_only = true,
    .as_shown = true,
    .prepare = [](Desk &d) { d.frmEinstellungen.lock(); },
    .advice = "Mit OK bleiben die neuen Einstellungen gespeichert.",
};

void open(Desk &desk) {
    FrmEinstellungen &form = desk.frmEinstellungen;
    if (!form.open) {
        form.chkVerlauf.value = desk.remembered.history;
        form.chkWie_zuletzt.value = desk.remembered.as_left;
    }
    form.load();
}

/// Saves what the dialog shows and closes it; it stays open when that fails.
void save(Desk &desk) {
    FrmEinstellungen &form = desk.frmEinstellungen;
    if (desk.remembered.history != form.chkVerlauf.value ||
        desk.remembered.as_left != form.chkWie_zuletzt.value)
        remember(desk.folders.settings, desk.remembered, [&](Remembered &all) {
            all.history = form.chkVerlauf.value;
            all.as_left = form.chkWie_zuletzt.value;
        });
    if (prz_Einstellungen_speichern(desk.session, desk.folders.settings, form.direkt.texts(),
                                    form.fern.texts(), desk.outbox)) {
        form.unload();
        desk.observers.tell(&Observer::settings_saved);
    }
}

/// A device whose new format is forgotten cannot be reached any more.
void leave(Desk &desk) {
    FrmEinstellungen &form = desk.frmEinstellungen;
    if (!form.unsaved())
        return form.unload();
    desk.outbox.ask_or_go_back(
        "Die neue Schnittstelleneinstellung ist noch nicht gespeichert. Jetzt speichern?", [&](bool yes) {
            if (!yes)
                return form.unload();
            form.show_session(); // what else was changed in the dialog is cancelled
            save(desk);
        });
}

} // namespace

void connect_settings(Desk &desk, Sequencer &sequencer) {
    FrmEinstellungen &form = desk.frmEinstellungen;
    desk.frmModem.mnuEinstellungen.clicked = [&] { open(desk); };
    starts(form.cmdUART_Einstellung_aendern, sequencer, change_interface);
    form.cmdOK.clicked = [&] { save(desk); };
    form.cmdCancel.clicked = [&] { leave(desk); };
}

} // namespace telvox
