#include "operation/profiles.hpp"

#include "core/files/files.hpp"
#include "core/files/system_error.hpp"
#include "core/port_choice.hpp"
#include "core/usage_error.hpp"
#include "operation/backups.hpp"
#include "operation/trial.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace telvox::operation {

namespace {

constexpr const char *filter = "Profile (*.telvox)";

/// The entries of "Zuletzt verwendet".
std::array<MenuEntry *, Remembered::most_profiles> recent_entries(FrmModem &main) {
    return {&main.mnuProfil1, &main.mnuProfil2, &main.mnuProfil3, &main.mnuProfil4, &main.mnuProfil5};
}

std::string file_name(const std::string &path) { return text_of(path_of(path).filename()); }

bool has_secret(const Profile &profile) {
    const auto any = [](std::span<const Option> options, const Values &values) {
        return std::any_of(options.begin(), options.end(), [&](const Option &option) {
            const Given *given = option.secret ? find(values, option.name) : nullptr;
            return given && !given->value.empty();
        });
    };
    return any(way_options(), profile.main) ||
           std::any_of(profile.dialogs.begin(), profile.dialogs.end(),
                       [&](const auto &dialog) { return any(dialog.first->options, dialog.second); });
}

/// "&" before a digit is the entry's key; in a file's name it is just a character.
std::string menu_caption(std::size_t number, std::string name) {
    for (std::size_t at = 0; (at = name.find('&', at)) != std::string::npos; at += 2)
        name.insert(at, 1, '&');
    return "&" + std::to_string(number) + " " + name;
}

} // namespace

Profiles::Profiles(Telvox &program, PortScan &ports)
    : program_(program), desk_(program.desk), ports_(ports), operator_(program, ports) {
    FrmModem &main = desk_.frmModem;
    main.mnuProfil_oeffnen.clicked = [this] { ask_to_open(); };
    main.mnuSicherung.clicked = [this] { ask_for_backup(); };
    main.mnuProfil_speichern.clicked = [this] { ask_to_save(); };
    const auto entries = recent_entries(main);
    for (std::size_t i = 0; i < entries.size(); ++i)
        entries[i]->clicked = [this, i] { open(std::string(desk_.remembered.profiles.at(i))); };
    desk_.observers.add(*this);
    show_recent();
}

void Profiles::ask_to_open() {
    desk_.files.ask({.title = "Profil öffnen", .filter = filter}, [this](const FileAnswer &answer) {
        if (!answer.path.empty())
            open(answer.path);
    });
}

void Profiles::ask_for_backup() {
    std::vector<Backup> all = backups(desk_.folders);
    if (all.empty())
        return desk_.outbox.show_unrecorded(
            "Es gibt noch keine Sicherungen. Eine entsteht jedes Mal, wenn GPRS oder IP-Telemetrie vor dem "
            "Schreiben gelesen wird.");
    std::vector<FrmSicherungen::Line> lines;
    for (const Backup &one : all)
        lines.push_back({one.imei, one.time, one.what});
    desk_.frmSicherungen.wanted = [this, all = std::move(all)](std::size_t line) {
        open(text_of(all.at(line).file));
    };
    desk_.frmSicherungen.show(std::move(lines));
}

void Profiles::ask_to_save() {
    desk_.files.ask({.title = "Profil speichern",
                     .filter = filter,
                     .saves = true,
                     .suggested = path_,
                     .tick = "Passwörter, Schlüssel und PIN mit speichern (unverschlüsselt)"},
                    [this](const FileAnswer &answer) {
                        if (!answer.path.empty())
                            save(answer.path, answer.ticked);
                    });
}

void Profiles::open(const std::string &path) {
    try {
        if (program_.busy())
            throw UsageError(already_running);
        if (list_is_open())
            throw UsageError(
                "Zuerst muss die Liste geschlossen werden; ein Profil gilt für alle ihre Geräte.");
        Profile profile = parse_profile(profile_of_file(path), file_name(path));
        // One that names a variant is for another device, so nothing of the last one is left.
        const bool anew = find(profile.main, "typ");
        try_out(profile, anew ? Values{} : main_window_values(desk_, false),
                {.folders = desk_.folders,
                 .exists = [&](const std::string &device) { return ports_.number_of(device) != 0; }});
        program_.together([&] {
            if (anew)
                operator_.begin_with({});
            operator_.fill_main_window(profile.main);
        });
        take_over(std::move(profile), path, "geöffnet");
    } catch (const UsageError &failure) {
        program_.together([&] {
            desk_.outbox.show_unrecorded(std::string("Das Profil wurde nicht geöffnet.\r") + failure.what());
        });
    }
}

void Profiles::save(const std::string &path, bool secrets) {
    const std::string text = profile_text(desk_, profile_, secrets);
    if (const int error =
            replace_file(path_of(path), with_local_ends(text), secrets ? Readers::owner : Readers::as_before);
        error != 0)
        return desk_.outbox.show_unrecorded("Das Profil konnte nicht gespeichert werden.\r" +
                                            german_reason(error));
    take_over(parse_profile(text, file_name(path)), path, "gespeichert");
}

void Profiles::leave_to_others() {
    for (const Section &section : sections())
        if (section.form(desk_).open)
            open_.insert(&section);
}

namespace {

/// Choosing a variant fills these in.
constexpr const char *set_by_the_variant[] = {"service-center", "anbieter",  "netz",
                                              "passwort",       "nachricht", "amt"};

/// What a list's port is known by at the next start: its device, for other numbers may be given then.
std::string port_of(const Desk &desk, const ComboBox &list) {
    for (const PortInfo &port : desk.ports)
        if (port_entry(port.number) == list.text && !port.device.empty())
            return port.device;
    return list.text;
}

} // namespace

void Profiles::begin_as_left() {
    const Remembered left = desk_.remembered;
    if (!left.as_left)
        return;
    if (!left.profile.empty())
        open(left.profile);
    Values values = main_window_values(desk_, true);
    if (const Given *variant = find(values, "typ"); variant && variant->value != left.variant)
        for (const char *option : set_by_the_variant)
            values.erase(option);
    const auto put = [&](const char *option, const std::string &value) {
        if (!value.empty())
            values[option] = {value, {}};
    };
    put("typ", left.variant);
    put("verbindung", left.way);
    for (const auto &[option, device] :
         {std::pair{"schnittstelle", left.cable_port}, {"modemanschluss", left.modem_port}})
        if (parse_port_number(device))
            put(option, device);
        else if (const int number = device.empty() ? 0 : ports_.number_of(device); number != 0)
            put(option, port_entry(number));
    operator_.begin_with(values);
}

void Profiles::note_left(const std::string &geometry) {
    if (!desk_.remembered.as_left)
        return;
    remember(desk_.folders.settings, desk_.remembered, [&](Remembered &left) {
        left.variant = value_of(*find_option("typ"), desk_);
        left.way = value_of(*find_option("verbindung"), desk_);
        left.cable_port = port_of(desk_, desk_.frmModem.cobSchnittstelle);
        left.modem_port = port_of(desk_, desk_.frmModem.cobModem_Port);
        left.geometry = geometry;
        left.profile = path_;
    });
}

void Profiles::happened() {
    if (!path_.empty())
        desk_.frmModem.caption =
            file_name(path_) + (program_.changed_since_saved() ? "* – " : " – ") + program_title;
    for (const Section &section : sections()) {
        const bool open = section.form(desk_).open, was_open = open_.contains(&section);
        if (open == was_open)
            continue;
        if (!open)
            open_.erase(&section);
        else
            open_.insert(&section);
        if (path_.empty())
            continue;
        if (const auto values = profile_.dialogs.find(&section); open && values != profile_.dialogs.end())
            fill_dialog(section, values->second);
        if (!open && !list_is_open()) // what a list put into it is one device's
            profile_.dialogs[&section] = values_of(section.options, desk_, secrets_);
    }
}

/// What was right when the profile was opened may have become impossible.
void Profiles::fill_dialog(const Section &section, const Values &values) {
    try {
        operator_.fill(section.options, values);
    } catch (const UsageError &failure) {
        desk_.outbox.show_unrecorded(std::string("Das Profil füllt diesen Dialog nur zum Teil.\r") +
                                     failure.what());
    }
}

void Profiles::take_over(Profile profile, const std::string &path, const std::string &what_happened) {
    secrets_ = has_secret(profile);
    profile_ = std::move(profile);
    std::error_code error; // remembered, it must mean the same file from another folder too
    path_ = text_of(std::filesystem::absolute(path_of(path), error));
    remember(desk_.folders.settings, desk_.remembered, [&](Remembered &all) {
        std::erase(all.profiles, path_);
        all.profiles.insert(all.profiles.begin(), path_);
        all.profiles.resize(std::min(all.profiles.size(), Remembered::most_profiles));
    });
    program_.saved();
    program_.together([&] {
        show_recent();
        program_.tell("Profil \"" + file_name(path_) + "\" " + what_happened);
    });
}

void Profiles::show_recent() {
    const std::vector<std::string> &recent = desk_.remembered.profiles;
    const auto entries = recent_entries(desk_.frmModem);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        entries[i]->visible = i < recent.size();
        if (i < recent.size()) {
            entries[i]->caption = menu_caption(i + 1, file_name(recent[i]));
            entries[i]->tool_tip = recent[i];
        }
    }
    desk_.frmModem.mnuZuletzt.enabled = !recent.empty();
}

} // namespace telvox::operation
