#include "core/files/files.hpp"
#include "core/files/system_error.hpp"
#include "ui/jobs.hpp"

namespace telvox {

namespace {

/// The record's lines as the pane shows them: times one below the other, an empty line between two jobs.
std::vector<LogLine> shown_lines(const Recorder &recorder, std::size_t &from) {
    constexpr std::size_t time_width = 7;
    std::vector<LogLine> shown;
    const auto &lines = recorder.lines();
    for (std::size_t i = std::max(from, recorder.gone()) - recorder.gone(); i < lines.size(); ++i) {
        if (!lines[i].of_dialogue())
            continue;
        if (i > 0 && lines[i - 1].begin != lines[i].begin)
            shown.emplace_back();
        const std::string text = text_of(lines[i]);
        const std::size_t digits = text.find(' ');
        shown.push_back(
            {std::string(time_width - std::min(digits, time_width), ' ') + text, lines[i].rejects});
    }
    from = recorder.gone() + lines.size();
    return shown;
}

void save(Desk &desk, Recorder &recorder, const FileAnswer &answer) {
    const int error =
        answer.path.empty() ? 0 : replace_file(path_of(answer.path), with_local_ends(recorder.transcript()));
    if (error != 0)
        desk.outbox.show_unrecorded("Das Protokoll konnte nicht gespeichert werden.\r" +
                                    german_reason(error));
}

} // namespace

void connect_protocol(Desk &desk, Recorder &recorder) {
    FrmModem &f = desk.frmModem;
    desk.remembered = read_remembered(desk.folders.settings);
    f.mnuProtokoll.value = f.fraProtokoll.visible = desk.remembered.protocol;
    f.mnuProtokoll.clicked = [&] {
        const bool shown = f.mnuProtokoll.value = f.fraProtokoll.visible = !f.mnuProtokoll.value;
        remember(desk.folders.settings, desk.remembered, [=](Remembered &all) { all.protocol = shown; });
    };
    f.tboProtokoll.read = [&](std::size_t &from) { return shown_lines(recorder, from); };
    f.cbuProtokoll_kopieren.clicked = [&] { f.tboProtokoll.wants_copy = true; };
    f.cbuProtokoll_speichern.clicked = [&] {
        desk.files.ask({.title = "Protokoll speichern",
                        .filter = "Protokoll (*.txt)",
                        .saves = true,
                        .suggested = "Protokoll.txt"},
                       [&](const FileAnswer &answer) { save(desk, recorder, answer); });
    };
    // A record without the inputs at its beginning could not be played again.
    f.cbuProtokoll_leeren.clicked = [&] { f.tboProtokoll.begin = recorder.gone() + recorder.lines().size(); };
}

} // namespace telvox
