#include "operation/record_pane.hpp"

#include "core/files/files.hpp"

#include <algorithm>

namespace telvox::operation {

namespace {

std::string counted(std::size_t number, const char *one, const char *many) {
    return std::to_string(number) + " " + (number == 1 ? one : many);
}

/// "Telvox-A GSM, COM 3"
std::string name_of(const DeviceRecord &device) {
    const DoneJob &job = device.jobs.back();
    return (device.name.empty() ? "Telvox-A " + job.line.variant : device.name) + ", " + job.line.port;
}

} // namespace

RecordPane::RecordPane(Telvox &program, const WorkLog &log, RecordPrinter &printer, Now now)
    : program_(program),
      desk_(program.desk),
      form_(program.desk.frmNachweis),
      log_(log),
      printer_(printer),
      now_(std::move(now)) {
    desk_.frmModem.mnuNachweis.clicked = [this] { open(); };
    form_.cobUmfang.changed = [this] { show(); };
    form_.cbuNachweis_speichern.clicked = [this] { ask_to_save(); };
    form_.cbuNachweis_schliessen.clicked = [this] { close(); };
}

void RecordPane::add(std::string caption, std::string file_name, std::vector<DoneJob> jobs) {
    subjects_.push_back(
        {std::move(caption), std::move(file_name),
         [jobs = std::move(jobs)](RecordFrame frame) { return record_of(jobs, std::move(frame)); }});
}

void RecordPane::open(const HistoryLine *line) {
    if (printing_)
        return form_.load();
    subjects_.clear();
    if (line)
        add("Verlauf: " + line->job + ", " + line->time, "Nachweis", {log_.job_of(*line)});
    if (const auto open_list = list()) {
        const std::string stem = text_of(path_of(open_list->list.source).stem());
        subjects_.push_back({"Liste " + open_list->list.source + " (" +
                                 counted(open_list->rows.size(), "Gerät", "Geräte") + ")",
                             stem + "-nachweis", [this](RecordFrame frame) {
                                 const auto still = list();
                                 return still ? record_of(*still, log_.jobs(), std::move(frame))
                                              : RecordPages{};
                             }});
    }
    const std::vector<DeviceRecord> devices = by_device(log_.jobs());
    if (!devices.empty()) {
        add("Letztes Gerät: " + name_of(devices.back()) + " (" +
                counted(devices.back().jobs.size(), "Vorgang", "Vorgänge") + ")",
            "Nachweis", devices.back().jobs);
        add("Alle Geräte seit dem Programmstart (" + std::to_string(devices.size()) + ")", "Nachweis",
            log_.jobs());
    }
    if (subjects_.empty())
        return desk_.outbox.show_unrecorded(
            "Seit dem Programmstart ist noch kein Vorgang zu Ende gegangen, den ein "
            "Nachweis nennen könnte. Über frühere gibt „Verlauf…“ Auskunft.");
    form_.load();
    form_.cobUmfang.items.clear();
    for (const Subject &subject : subjects_)
        form_.cobUmfang.items.push_back(subject.caption);
    form_.cobUmfang.text = form_.cobUmfang.items.front();
    form_.tboVon.text = desk_.remembered.done_by;
    form_.tboOrt.text = desk_.remembered.place;
    desk_.focus(form_.tboVon); // what is typed at once is the name
    show();
}

void RecordPane::show() {
    for (Control *control : std::initializer_list<Control *>{&form_.cobUmfang, &form_.tboVon, &form_.tboOrt,
                                                             &form_.cbuNachweis_speichern})
        control->enabled = !printing_;
    form_.prbNachweis.visible = printing_;
    form_.cbuNachweis_schliessen.caption = printing_ ? "&Abbrechen" : "S&chließen";
    form_.lblNachweis.caption = printing_ ? "Der Nachweis wird geschrieben …" : " ";
}

const RecordPane::Subject *RecordPane::chosen() const {
    const auto found = std::find_if(subjects_.begin(), subjects_.end(), [&](const Subject &subject) {
        return subject.caption == form_.cobUmfang.text;
    });
    return found == subjects_.end() ? nullptr : &*found;
}

void RecordPane::ask_to_save() {
    if (!chosen())
        return;
    desk_.files.ask({.title = "Nachweis speichern",
                     .filter = "Nachweise (*.pdf *.html)",
                     .saves = true,
                     .suggested = chosen()->file_name + ".pdf"},
                    [this](const FileAnswer &answer) {
                        if (!answer.path.empty() && form_.open && !printing_)
                            print(answer.path);
                    });
}

void RecordPane::print(const std::string &path) {
    const Remembered &remembered = desk_.remembered;
    remember(desk_.folders.settings, desk_.remembered, [&](Remembered &all) {
        all.done_by = form_.tboVon.text;
        all.place = form_.tboOrt.text;
    });
    RecordPages pages =
        chosen()->pages({.by = remembered.done_by, .place = remembered.place, .made = local_time(now_())});
    const std::size_t count = pages.count;
    printing_ = true;
    form_.prbNachweis.maximum = static_cast<int>(count);
    form_.prbNachweis.value = 0;
    show();
    printer_.print(
        path, std::move(pages),
        [this](std::size_t done) {
            program_.together([&] { form_.prbNachweis.value = static_cast<int>(done); });
        },
        [this, path, count](const std::string &failure) {
            program_.together([&] { ended(path, count, failure); });
        });
}

void RecordPane::ended(const std::string &path, std::size_t pages, const std::string &failure) {
    printing_ = false;
    show();
    if (!failure.empty())
        return desk_.outbox.show_unrecorded("Der Nachweis konnte nicht gespeichert werden.\r" + failure);
    form_.lblNachweis.caption = "Gespeichert: " + path + " (" + counted(pages, "Blatt", "Blätter") + ")";
}

void RecordPane::close() {
    if (!printing_)
        return form_.unload();
    printer_.cancel();
    printing_ = false;
    show();
    form_.lblNachweis.caption = "Abgebrochen; es wurde keine Datei geschrieben.";
}

} // namespace telvox::operation
