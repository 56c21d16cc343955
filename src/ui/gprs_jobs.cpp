#include "core/ip_address.hpp"
#include "core/text.hpp"
#include "ui/jobs.hpp"
#include "ui/questions.hpp"

namespace telvox {

namespace {

constexpr Check remote_checks[] = {modem_chosen, number_entered};
constexpr Check direct_checks[] = {cable_chosen};

void lock_gprs(Desk &desk) { desk.frmGPRS.lock(); }
void lock_ipt(Desk &desk) { desk.frmIPT.lock(FrmIPT::Lock::inputs); }

constexpr Launch gprs_write_remote = {.checks = remote_checks,
                                      .flag = &JobState::boolGPRS_parametrieren,
                                      .counter = &JobState::byteAnwahl_Counter,
                                      .prepare = lock_gprs};
constexpr Launch gprs_write_direct = {.checks = direct_checks,
                                      .flag = &JobState::boolGPRS_parametrieren,
                                      .counter = &JobState::byteGPRS_Counter,
                                      .prepare = lock_gprs};
constexpr Launch ipt_write_remote = {.checks = remote_checks,
                                     .flag = &JobState::boolIPT_parametrieren,
                                     .counter = &JobState::byteAnwahl_Counter,
                                     .prepare = lock_ipt};
constexpr Launch ipt_write_direct = {.checks = direct_checks,
                                     .flag = &JobState::boolIPT_parametrieren,
                                     .counter = &JobState::byteIPT_Counter,
                                     .prepare = lock_ipt};
/// Reading is offered over the cable only.
constexpr Launch gprs_read = {.checks = direct_checks,
                              .flag = &JobState::boolGPRS_lesen,
                              .counter = &JobState::byteGPRS_lese_Counter,
                              .prepare = lock_gprs};
constexpr Launch ipt_read = {.checks = direct_checks,
                             .flag = &JobState::boolIPT_lesen,
                             .counter = &JobState::byteIPT_lese_Counter,
                             .prepare = [](Desk &d) { d.frmIPT.lock(FrmIPT::Lock::buttons); }};

template <auto Field> Control *field_of_gprs(Desk &desk) { return &(desk.frmGPRS.*Field); }

/// The two questions about a target's port, which only a target that is used needs.
template <auto Port, bool (FrmGPRS::*Used)() const>
constexpr Question invalid_port = {.strikes =
                                       [](const Desk &d) {
                                           constexpr unsigned last_port = 65535;
                                           return (d.frmGPRS.*Used)() &&
                                                  number_exceeds((d.frmGPRS.*Port).text, last_port);
                                       },
                                   .text = "Es wurde keine gültige Portnummer (0-65535) eingetragen.",
                                   .field = field_of_gprs<Port>};
template <auto Port, bool (FrmGPRS::*Used)() const>
constexpr Question no_port = {
    .strikes = [](const Desk &d) { return (d.frmGPRS.*Used)() && (d.frmGPRS.*Port).text.empty(); },
    .text = "Es wurde keine Portnummer eingetragen.",
    .field = field_of_gprs<Port>};

constexpr Question gprs_questions[] = {
    {.strikes = [](const Desk &d) { return d.session.strGRPS_APN.empty(); },
     .text = "Es wurde kein APN eingetragen."},
    {.strikes = [](const Desk &d) { return d.frmGPRS.uses_ip() && !func_IP_pruefen(d.frmGPRS.tboIP.text); },
     .text = "Es wurde keine gültige IP-Adresse eingetragen.",
     .field = field_of_gprs<&FrmGPRS::tboIP>},
    invalid_port<&FrmGPRS::tboIP_Port, &FrmGPRS::uses_ip>,
    no_port<&FrmGPRS::tboIP_Port, &FrmGPRS::uses_ip>,
    {.strikes = [](const Desk &d) { return d.frmGPRS.uses_domain() && d.frmGPRS.tboDomain.text.empty(); },
     .text = "Es wurde keine Domain Adresse eingetragen.",
     .field = field_of_gprs<&FrmGPRS::tboDomain>},
    invalid_port<&FrmGPRS::tboDomain_Port, &FrmGPRS::uses_domain>,
    no_port<&FrmGPRS::tboDomain_Port, &FrmGPRS::uses_domain>,
    {.strikes = [](const Desk &d) { return number_exceeds(d.frmGPRS.tboKeepAlive.text, 0); },
     .text = "Achtung !\r"
             "Der Keep Alive Timer wurde auf einen Wert größer 0 Minuten eingestellt.\r"
             "Dadurch werden regelmässig Datenpakete versendet, wodurch zusätzliche Kosten entstehen können.",
     .kind = Question::Kind::notice},
    {.strikes = [](const Desk &d) { return d.frmGPRS.tboKeepAlive.text.empty(); },
     .text = "Es wurde kein Keep Alive Timerwert eingetragen.\r(Werkseinstellung: 0 min)",
     .kind = Question::Kind::objection,
     .field = field_of_gprs<&FrmGPRS::tboKeepAlive>},
};

/// The transfer is scrambled with keys of exactly this many characters; the device cuts longer ones.
template <auto Key> bool key_too_short(const Desk &desk) {
    constexpr std::size_t key_length = 64;
    const FrmIPT &form = desk.frmIPT;
    return form.chkIPT_Betrieb.value && form.optScrambled.value && length((form.*Key).text) < key_length;
}

constexpr Question ipt_questions[] = {
    {.strikes =
         [](const Desk &d) { return d.frmIPT.chkIPT_Betrieb.value && d.frmIPT.tboBenutzer.text.empty(); },
     .text = "Es wurde kein Benutzer eingetragen."},
    {.strikes =
         [](const Desk &d) { return d.frmIPT.chkIPT_Betrieb.value && d.frmIPT.tboPasswort.text.empty(); },
     .text = "Es wurde kein Passwort eingetragen."},
    {.strikes = key_too_short<&FrmIPT::tboFix_Scrambled_Key>,
     .text = "Fixed Scramble Key muss 64 Zeichen lang sein!",
     .kind = Question::Kind::objection},
    {.strikes = key_too_short<&FrmIPT::tboClg_Scrambled_Key>,
     .text = "Challenge Scramble Key muss 64 Zeichen lang sein!",
     .kind = Question::Kind::objection},
};

/// Opens a dialog, unless a job that was started from it still runs without it: it would come up with other
/// values than those that are being written.
void open(Desk &desk, Form &form, bool own_job_runs) {
    if (own_job_runs && !form.open)
        return desk.outbox.show(already_running);
    form.load();
}

} // namespace

void connect_gprs_dialogs(Desk &desk, Sequencer &sequencer) {
    FrmModem &main = desk.frmModem;
    main.mnuGPRS_konfig.clicked = [&] {
        open(desk, desk.frmGPRS, desk.jobs.boolGPRS_parametrieren || desk.jobs.boolGPRS_lesen);
    };
    main.mnuIPT_konfig.clicked = [&] {
        open(desk, desk.frmIPT, desk.jobs.boolIPT_parametrieren || desk.jobs.boolIPT_lesen);
    };

    const auto ask_and_start = [&](const Launch &launch, std::span<const Question> questions,
                                   const Button &by) {
        if (sequencer.ready(launch))
            ask_all(desk, questions, [&] { sequencer.start(launch, by); });
    };
    const bool &remote = main.optFernverbindung.value;
    desk.frmGPRS.cbuGPRS_schreiben.clicked = [&, ask_and_start] {
        desk.frmGPRS.limit_keep_alive(); // a key press starts the job without the box losing the focus
        ask_and_start(remote ? gprs_write_remote : gprs_write_direct, gprs_questions,
                      desk.frmGPRS.cbuGPRS_schreiben);
    };
    desk.frmIPT.cbuIPT_schreiben.clicked = [&, ask_and_start] {
        ask_and_start(remote ? ipt_write_remote : ipt_write_direct, ipt_questions,
                      desk.frmIPT.cbuIPT_schreiben);
    };
    starts(desk.frmGPRS.cbuGPRS_lesen, sequencer, gprs_read);
    starts(desk.frmIPT.cbuIPT_lesen, sequencer, ipt_read);
    starts(desk.frmGPRS.cbuGPRS_vergleichen, sequencer, gprs_read);
    starts(desk.frmIPT.cbuIPT_vergleichen, sequencer, ipt_read);

    desk.frmGPRS.cbuGPRS_Abbrechen.clicked = [&] { desk.frmGPRS.unload(); };
    desk.frmIPT.cbuIPT_Abbrechen.clicked = [&] { desk.frmIPT.unload(); };
}

} // namespace telvox
