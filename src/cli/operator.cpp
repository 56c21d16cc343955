#include "cli/operator.hpp"

#include "core/port_choice.hpp"
#include "core/serial_format.hpp"
#include "ports/os.hpp"

#include <algorithm>

namespace telvox::cli {

namespace {

/// What an option's value chooses.
template <class OfForm> struct Choice {
    const char *value;
    OptionButton OfForm::*button;
};
constexpr Choice<FrmModem> variants[] = {
    {"analog", &FrmModem::optAnalog}, {"isdn", &FrmModem::optISDN},         {"gsm", &FrmModem::optGSM},
    {"gprs", &FrmModem::optGPRS},     {"ethernet", &FrmModem::optEthernet},
};
constexpr Choice<FrmModem> ways[] = {
    {"direkt", &FrmModem::optDirektverbindung},
    {"fern", &FrmModem::optFernverbindung},
};
constexpr Choice<FrmModem> messages[] = {{"sms", &FrmModem::optSMS}, {"fax", &FrmModem::optFAX}};
constexpr Choice<FrmAnschlussart> line_types[] = {
    {"punkt-zu-punkt", &FrmAnschlussart::optAnlagenanschluss},
    {"mehrgeraete", &FrmAnschlussart::optMehrgeraeteanschluss},
};

/// The button that an option's value names, nullptr if the option was not given.
template <class OfForm, std::size_t N>
OptionButton *chosen(const Call &call, const char *option, const Choice<OfForm> (&choices)[N], OfForm &form) {
    const std::string *value = call.find(option);
    if (!value)
        return nullptr;
    std::string known;
    for (const auto &choice : choices) {
        if (*value == choice.value)
            return &(form.*choice.button);
        known += (known.empty() ? "" : ", ") + std::string(choice.value);
    }
    throw UsageError(std::string(option) + ": \"" + *value + "\" gibt es nicht (" + known + ")");
}

/// An option that fills a text box, ticking its check box first.
struct FieldOption {
    const char *option;
    TextBox FrmModem::*box;
    CheckBox FrmModem::*tick = nullptr;
};
constexpr FieldOption field_options[] = {
    {"--rufnummer-modem", &FrmModem::tboRufnummer_Modem},
    {"--empfaenger", &FrmModem::tboRufnummer_Empfaenger},
    {"--amt", &FrmModem::tboAmt, &FrmModem::chkAmt},
    {"--service-center", &FrmModem::tboService_Center},
    {"--passwort", &FrmModem::tboPasswort, &FrmModem::chkPasswort},
    {"--alarmtext", &FrmModem::tboAlarmmeldung},
};

void require_usable(const std::string &what, const Control &control) {
    if (!control.usable())
        throw UsageError(what + ": " + control.name + " steht bei dieser Auswahl nicht zur Verfügung");
}

} // namespace

void Operator::work(const Call &call) {
    FrmModem &main = program_.desk.frmModem;
    choose_variant_and_way(call);
    fill_fields(call);
    if (const auto *value = call.find("--schnittstelle"))
        choose_port("--schnittstelle", main.cobSchnittstelle, *value);
    if (const auto *value = call.find("--modemanschluss"))
        choose_port("--modemanschluss", main.cobModem_Port, *value);

    if (call.job->menu) {
        MenuEntry &entry = main.*call.job->menu;
        require_usable(call.job->name, entry);
        program_.click(entry);
        fill_dialog(call);
    }
    Button &button = call.job->button(program_.desk);
    require_usable(call.job->name, button);
    program_.click(button);
}

void Operator::choose_variant_and_way(const Call &call) {
    FrmModem &main = program_.desk.frmModem;
    OptionButton *way = chosen(call, "--verbindung", ways, main);
    OptionButton *variant = chosen(call, "--typ", variants, main);
    // A variant may depend on the way or reset it, so the way is chosen before it and, if reset, after it.
    if (way)
        choose("--verbindung", *way);
    if (variant)
        choose("--typ", *variant);
    if (way && !way->value)
        choose("--verbindung", *way);
}

void Operator::fill_fields(const Call &call) {
    FrmModem &main = program_.desk.frmModem;
    if (OptionButton *type = chosen(call, "--nachricht", messages, main))
        choose("--nachricht", *type);
    for (const FieldOption &field : field_options) {
        const std::string *value = call.find(field.option);
        if (!value)
            continue;
        if (field.tick) {
            require_usable(field.option, main.*field.tick);
            program_.set(main.*field.tick, true);
        }
        enter(field.option, main.*field.box, *value);
    }
    if (const auto *value = call.find("--com-direkt"))
        set_format("--com-direkt", program_.desk.session.strCOMparameter_direkt, *value);
    if (const auto *value = call.find("--com-fern"))
        set_format("--com-fern", program_.desk.session.strCOMparameter_fern, *value);
}

void Operator::fill_dialog(const Call &call) {
    Desk &desk = program_.desk;
    if (const auto *value = call.find("--pin"))
        enter("--pin", desk.frmPin.tboPin, *value);
    if (const auto *value = call.find("--msn"))
        enter("--msn", desk.frmMSN.tboMSN, *value);
    if (OptionButton *type = chosen(call, "--anschlussart", line_types, desk.frmAnschlussart))
        choose("--anschlussart", *type);
}

void Operator::choose(const char *option, OptionButton &button) {
    require_usable(option, button);
    program_.choose(button);
}

void Operator::enter(const char *option, TextBox &box, const std::string &value) {
    require_usable(option, box);
    program_.enter(box, value);
    if (box.text != value)
        throw UsageError(std::string(option) + ": \"" + value + "\" wird von " + box.name +
                         " nicht angenommen");
}

void Operator::choose_port(const char *option, ComboBox &list, const std::string &value) {
    require_usable(option, list);
    const int number = port_number(option, value);
    program_.offer_port(number);
    program_.select(list, port_entry(number));
}

int Operator::port_number(const char *option, const std::string &value) {
    if (const auto number = parse_port_number(value))
        return *number;
    // Anything else is a device; one that is not there would get a number that says nothing to anybody.
    const bool numeric = value.find_first_not_of("0123456789") == std::string::npos;
    const bool device = !numeric && !value.starts_with("COM") && os::exists(value);
    const int number = device ? ports_.number_of(value) : 0;
    if (number == 0)
        throw UsageError(
            std::string(option) + ": \"" + value +
            "\" ist weder eine COM-Nummer von 1 bis 15 noch ein vorhandenes Gerät, für das eine frei ist");
    return number;
}

void Operator::set_format(const char *option, std::string &parameters, const std::string &value) {
    if (!parse_format(value))
        throw UsageError(std::string(option) + ": \"" + value +
                         "\" ist keine Angabe wie 2400,e,8,1 (Baudrate, Parität, Daten- und Stoppbits)");
    parameters = value;
}

} // namespace telvox::cli
