#include "ui/jobs.hpp"
#include "ui/questions.hpp"

namespace telvox {

namespace {

constexpr Check cable_checks[] = {cable_chosen};

constexpr Launch set_pin = {
    .checks = cable_checks, .counter = &JobState::bytePin_Counter, .cable_only = true};
constexpr Launch set_msn = {
    .checks = cable_checks, .counter = &JobState::byteMSN_Counter, .cable_only = true};
constexpr Launch set_line_type = {
    .checks = cable_checks, .counter = &JobState::byteISDN_Anschluss_Counter, .cable_only = true};

/// An empty number takes the one that the device has away from it.
constexpr Question empty_pin[] = {{.strikes = [](const Desk &d) { return d.frmPin.tboPin.text.empty(); },
                                   .text = "Die PIN wird gelöscht. Fortfahren?",
                                   .kind = Question::Kind::question,
                                   .field = [](Desk &d) -> Control * { return &d.frmPin.tboPin; }}};
constexpr Question empty_msn[] = {{.strikes = [](const Desk &d) { return d.frmMSN.tboMSN.text.empty(); },
                                   .text = "Die MSN wird gelöscht. Fortfahren?",
                                   .kind = Question::Kind::question,
                                   .field = [](Desk &d) -> Control * { return &d.frmMSN.tboMSN; }}};

/// The queries of the GSM status dialog lock its buttons and blank their fields.
constexpr Launch query_pin = {.checks = cable_checks,
                              .flag = &JobState::boolPIN_Status_lesen,
                              .counter = &JobState::bytePin_Status_Counter,
                              .cable_only = true,
                              .prepare = [](Desk &d) {
                                  d.frmGSM_Status.tboStatus.text = d.frmGSM_Status.tboPIN_hinterlegt.text =
                                      "-";
                                  d.frmGSM_Status.enable_buttons(false);
                              }};
constexpr Launch query_registration = {.checks = cable_checks,
                                       .flag = &JobState::boolREG_lesen,
                                       .counter = &JobState::byteGSM_Reg_Counter,
                                       .cable_only = true,
                                       .prepare = [](Desk &d) {
                                           d.frmGSM_Status.tboReg_zustand.text = unknown;
                                           d.frmGSM_Status.enable_buttons(false);
                                       }};
constexpr Launch query_signal = {.checks = cable_checks,
                                 .flag = &JobState::boolFeld_lesen,
                                 .counter = &JobState::byteGSM_Signal_Counter,
                                 .cable_only = true,
                                 .prepare = [](Desk &d) {
                                     d.frmGSM_Status.forget_signal();
                                     d.frmGSM_Status.enable_buttons(false);
                                 }};
constexpr Launch query_imei = {.checks = cable_checks,
                               .flag = &JobState::boolIMEI_lesen,
                               .counter = &JobState::byteIMEI_Counter,
                               .cable_only = true,
                               .prepare = [](Desk &d) {
                                   d.frmGSM_Status.tboIMEI.text = unknown;
                                   d.frmGSM_Status.enable_buttons(false);
                               }};

} // namespace

void connect_small_dialogs(Desk &desk, Sequencer &sequencer) {
    FrmModem &main = desk.frmModem;
    main.mnuPin_festlegen.clicked = opens(desk.frmPin);
    main.mnuMSN_festlegen.clicked = opens(desk.frmMSN);
    main.mnuISDN_Anschluss.clicked = opens(desk.frmAnschlussart);
    main.mnuStatus_abfragen.clicked = opens(desk.frmGSM_Status);

    const auto asks_first = [&](Button &button, const Launch &launch, std::span<const Question> questions) {
        starts_and_closes(button, sequencer, launch);
        button.clicked = [&, questions, start = button.clicked] {
            if (sequencer.ready(launch))
                ask_all(desk, questions, start);
        };
    };
    asks_first(desk.frmPin.cbuPin_Eingabe, set_pin, empty_pin);
    asks_first(desk.frmMSN.cbuMSN_einstellen, set_msn, empty_msn);
    starts_and_closes(desk.frmAnschlussart.cmdAnschlussart_einstellen, sequencer, set_line_type);
    starts(desk.frmGSM_Status.cbuPIN_Status, sequencer, query_pin);
    starts(desk.frmGSM_Status.cbuReg_zustand, sequencer, query_registration);
    starts(desk.frmGSM_Status.cbuSignalstaerke, sequencer, query_signal);
    starts(desk.frmGSM_Status.cbuIMEI, sequencer, query_imei);
}

} // namespace telvox
