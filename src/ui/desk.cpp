#include "ui/desk.hpp"

namespace telvox {

std::vector<std::string> Desk::secrets() const {
    const JobValues &sent = job_values;
    std::vector<std::string> all{sent.strPIN,       sent.password,      sent.gprs.password,
                                 sent.ipt.password, sent.ipt.fixed_key, sent.ipt.challenge_key};
    for (const TextBox *box : secret_boxes_)
        all.push_back(box->text);
    return all;
}

JobValues Desk::values() const {
    const FrmModem &f = frmModem;
    return {.type = f.modem_type(),
            .remote = f.optFernverbindung.value,
            .cable_port = f.cobSchnittstelle.text,
            .modem_port = f.cobModem_Port.text,
            .number = f.tboRufnummer_Modem.text,
            .password = f.tboPasswort.text,
            .receiver = f.tboRufnummer_Empfaenger.text,
            .outside_line = f.chkAmt.value ? f.tboAmt.text : std::string(),
            .service_number = f.tboService_Center.text,
            .by_sms = f.optSMS.value,
            .alarm_text = f.tboAlarmmeldung.text,
            .strSMS_Protokoll = session.strSMS_Protokoll,
            .strSMS_Protokoll_ISDN = session.strSMS_Protokoll_ISDN,
            .strSMS_Protokoll_ISDN_fern = session.strSMS_Protokoll_ISDN_fern,
            .strCOMparameter_direkt = session.strCOMparameter_direkt,
            .strCOMparameter_fern = session.strCOMparameter_fern,
            .strCOMparameter_momentan = frmEinstellungen.direkt.settings(),
            .strCOMparameter_gewuenscht = frmEinstellungen.soll.settings(),
            .strPIN = frmPin.tboPin.text,
            .strMSN = frmMSN.tboMSN.text,
            .byteISDN_Anschlussart = frmAnschlussart.line_type(),
            .str_IP = frmEthernet.tboIP.text,
            .str_Port = frmEthernet.tboPort.text,
            .str_Gateway = frmGateway.tboGateway.text,
            .str_Netzmaske = frmGateway.tboNetzmaske.text,
            .gprs = frmGPRS.settings(),
            .ipt = frmIPT.settings()};
}

void Desk::show(const Findings &found) {
    frmGSM_Status.show(found);
    if (found.gprs)
        frmGPRS.show(*found.gprs);
    if (found.ipt)
        frmIPT.show(*found.ipt);
    if (found.recognized)
        if (OptionButton &option = frmModem.option_of(*found.recognized); !option.value)
            option.choose();
    if (found.format)
        session.strCOMparameter_direkt = *found.format;
    if (found.format_changed)
        frmEinstellungen.device_changed();
}

std::vector<std::string> Desk::changed(const Findings &found) const {
    std::vector<std::string> fields;
    if (found.gprs)
        fields = frmGPRS.differences(*found.gprs);
    if (found.ipt)
        for (std::string &field : frmIPT.differences(*found.ipt))
            fields.push_back(std::move(field));
    return fields;
}

} // namespace telvox
