#include "core/records/service_record.hpp"

#include "core/files/files.hpp"
#include "core/messages.hpp"
#include "core/text.hpp"
#include "core/version.hpp"

#include <algorithm>

namespace telvox {

namespace {

/// Rows that a cover names; the others are only counted.
constexpr std::size_t most_named = 40;
constexpr const char *to_fill_in = "________________________________________";

/// Hebrew, Arabic and their neighbours.
bool right_to_left(char32_t point) {
    return (point >= 0x590 && point < 0x900) || (point >= 0xFB1D && point < 0xFE00) ||
           (point >= 0xFE70 && point < 0xFF00) || (point >= 0x10800 && point < 0x11000) ||
           (point >= 0x1E800 && point < 0x1F000);
}

/// Characters that steer a text's direction: one of them would turn round what stands behind the text.
bool steers(char32_t point) {
    return point == 0x61C || (point >= 0x200E && point <= 0x200F) || (point >= 0x202A && point <= 0x202E) ||
           (point >= 0x2066 && point <= 0x2069);
}

/// A text of any origin as text of a page. One from right to left keeps to itself.
std::string escaped(std::string_view text) {
    std::string html;
    bool turned = false;
    Characters characters(text);
    for (auto c = characters.next(); !c.empty(); c = characters.next()) {
        const char32_t point = code_point(c);
        turned |= right_to_left(point);
        if (c == "\n" || c == "\r")
            html += "<br>";
        else if (point < 0x20 || (point >= 0x7F && point < 0xA0) || point == 0xFFFD || steers(point))
            html += "?";
        else
            html += c == "&" ? "&amp;" : c == "<" ? "&lt;" : c == ">" ? "&gt;" : c == "\"" ? "&quot;" : c;
    }
    return turned ? "&#x2068;" + html + "&#x2069;" : html;
}

/// "23.11.2026 14:05" of "2026-11-23 14:05:09"; anything else as it is.
std::string german_time(const std::string &time) {
    return time.size() == 19 && time[4] == '-' && time[7] == '-' && time[10] == ' '
               ? time.substr(8, 2) + "." + time.substr(5, 2) + "." + time.substr(0, 4) + " " +
                     time.substr(11, 5)
               : time;
}

/// A table of names and values, of one or more beside each other.
class Pairs {
  public:
    /// Leaves out what has no value.
    void add(std::string_view name, const std::string &value) {
        if (!value.empty())
            add(name, std::vector{value});
    }
    void add(std::string_view name, const std::vector<std::string> &values, bool head = false) {
        const std::string width = " width=\"" + std::to_string(68 / values.size()) + "%\">",
                          begin = (head ? "<th align=\"left\"" : "<td dir=\"auto\"") + width;
        rows_ += "<tr><td class=\"name\" width=\"32%\">" + escaped(name) + "</td>";
        for (const std::string &value : values)
            rows_ += begin + escaped(value) + (head ? "</th>" : "</td>");
        rows_ += "</tr>\n";
    }
    [[nodiscard]] std::string html() const {
        return rows_.empty()
                   ? rows_
                   : "<table width=\"100%\" cellspacing=\"0\" cellpadding=\"3\">\n" + rows_ + "</table>\n";
    }

  private:
    std::string rows_;
};

std::string title(const std::string &text) { return "<h1>" + text + "</h1>\n"; }
std::string heading(const std::string &text) { return "<h2>" + text + "</h2>\n"; }

std::string signature(const RecordFrame &frame) {
    Pairs who;
    who.add("Ausgeführt von", frame.by.empty() ? to_fill_in : frame.by);
    who.add("Ort", frame.place.empty() ? to_fill_in : frame.place);
    who.add("Programm",
            std::string(program_title) + " " + program_version + ", Nachweis vom " + german_time(frame.made));
    return who.html() + "<p class=\"sign\">&nbsp;</p>\n<table width=\"100%\"><tr><td width=\"40%\">"
                        "______________________________<br>Datum</td><td width=\"60%\">"
                        "________________________________________<br>Unterschrift</td></tr></table>\n";
}

/// The first value that is not empty.
template <class Value> std::string first(const std::vector<DoneJob> &jobs, Value value) {
    for (const DoneJob &job : jobs)
        if (const std::string text = value(job); !text.empty())
            return text;
    return {};
}

bool well(const DoneJob &job) {
    return job.line.outcome == RowOutcome::succeeded || job.line.outcome == RowOutcome::objected;
}

std::string facts(const DeviceRecord &device) {
    Pairs facts;
    facts.add("Gerät", device.name);
    const std::vector<DoneJob> &jobs = device.jobs;
    facts.add("Ausführung", first(jobs, [](const DoneJob &job) {
                  return job.line.variant.empty() ? "" : "Telvox-A " + job.line.variant;
              }));
    facts.add("IMEI", first(jobs, [](const DoneJob &job) {
                  return job.line.imei.empty()
                             ? ""
                             : job.line.imei + " (vom Gerät, " + german_time(job.line.time) + ")";
              }));
    facts.add("Weg",
              first(jobs, [](const DoneJob &job) { return job.way.empty() ? job.line.port : job.way; }));
    facts.add("Stand", device.note);
    std::string tested = jobs.empty() ? "" : "unter diesen Aufträgen nicht gesendet";
    for (const DoneJob &job : jobs)
        if (job.kind == DoneJob::Kind::alarm_test && well(job))
            tested =
                "gesendet " + german_time(job.line.time) + " (der Empfang wird vom Gerät nicht bestätigt)";
    facts.add("Testalarm", tested);
    for (const DoneJob &job : jobs)
        if (!job.signal.empty())
            facts.add("Signalstärke", job.signal + " (" + german_time(job.line.time) + ")");
    return facts.html();
}

std::string jobs_table(const std::vector<DoneJob> &jobs) {
    if (jobs.empty())
        return {};
    std::string rows;
    for (const DoneJob &job : jobs)
        rows += "<tr><td>" + german_time(escaped(job.line.time)) + "</td><td>" + escaped(job.line.job) +
                "</td><td>" + word_of(job.line.outcome) + "</td><td dir=\"auto\">" +
                escaped(job.kind == DoneJob::Kind::reads ? "" : job.line.message) + "</td></tr>\n";
    return heading("Aufträge") +
           "<table width=\"100%\" cellspacing=\"0\" cellpadding=\"3\">\n<tr><th align=\"left\" "
           "width=\"20%\">Zeit</th>"
           "<th align=\"left\" width=\"24%\">Auftrag</th><th align=\"left\" width=\"16%\">Ergebnis</th>"
           "<th align=\"left\" width=\"40%\">Meldung</th></tr>\n" +
           rows + "</table>\n";
}

using SideBySide = std::vector<const DoneJob *>;

bool same_captions(const DoneJob &one, const DoneJob &other) {
    return std::equal(one.settings.begin(), one.settings.end(), other.settings.begin(), other.settings.end(),
                      [](const auto &a, const auto &b) { return a.first == b.first; });
}

/// Jobs of the same settings stand in one table: what the device had beside what it was sent.
std::vector<SideBySide> side_by_side(const std::vector<DoneJob> &jobs) {
    constexpr std::size_t most_columns = 3;
    std::vector<SideBySide> tables;
    for (const DoneJob &job : jobs) {
        if (job.settings.empty())
            continue;
        const auto table = std::find_if(tables.begin(), tables.end(), [&](const SideBySide &other) {
            return other.size() < most_columns && same_captions(*other.front(), job);
        });
        table == tables.end() ? tables.push_back({&job}) : table->push_back(&job);
    }
    return tables;
}

std::string settings_table(const SideBySide &jobs) {
    std::string names;
    std::vector<std::string> columns;
    for (const DoneJob *job : jobs) {
        if (names.find(job->line.job) == std::string::npos)
            names += (names.empty() ? "" : ", ") + job->line.job;
        columns.push_back(
            (job->kind == DoneJob::Kind::reads ? "vom Gerät gelesen\n" : "an das Gerät gesendet\n") +
            german_time(job->line.time));
    }
    Pairs table;
    table.add("", columns, true);
    for (std::size_t row = 0; row < jobs.front()->settings.size(); ++row) {
        std::vector<std::string> values;
        for (const DoneJob *job : jobs) {
            const std::string &value = job->settings[row].second;
            values.push_back(value.empty() ? "leer" : value);
        }
        table.add(jobs.front()->settings[row].first, values);
    }
    return heading(escaped(names)) + table.html();
}

bool same_device(const DeviceRecord &device, const DoneJob &job) {
    const DoneJob &last = device.jobs.back();
    if (job.device != device.name || job.line.variant != last.line.variant || job.line.port != last.line.port)
        return false;
    return std::none_of(device.jobs.begin(), device.jobs.end(), [&](const DoneJob &before) {
        const bool other_imei =
            !job.line.imei.empty() && !before.line.imei.empty() && job.line.imei != before.line.imei;
        return other_imei || (job.kind == DoneJob::Kind::writes && before.kind == DoneJob::Kind::writes &&
                              before.line.job == job.line.job && well(before));
    });
}

} // namespace

const char *const record_style =
    "body { font-family: 'DejaVu Sans', Arial, sans-serif; font-size: 9pt; color: #000000; }\n"
    "h1 { font-size: 16pt; }\n"
    "h2 { font-size: 11pt; margin-top: 12px; margin-bottom: 2px; }\n"
    "td, th { vertical-align: top; }\n"
    "td.name { color: #404040; }\n"
    ".sign { font-size: 24pt; }\n";

std::string record_head() {
    return std::string("<!DOCTYPE html>\n<html lang=\"de\">\n<head>\n<meta "
                       "charset=\"utf-8\">\n<title>Nachweis</title>\n"
                       "<style>\n@page { size: A4; margin: 20mm; }\n") +
           record_style +
           "body { max-width: 17cm; margin: 1cm auto; }\nsection { break-after: page; }\n"
           "table { table-layout: fixed; border-collapse: collapse; }\n"
           "td, th { overflow-wrap: anywhere; border-bottom: 1px solid #d0d0d0; }\n"
           "</style>\n</head>\n<body>\n<section>\n";
}
const char *const record_break = "</section>\n<section>\n";
const char *const record_foot = "</section>\n</body>\n</html>\n";

bool is_html(const std::filesystem::path &file) {
    const std::string suffix = in_small_letters(text_of(file.extension()));
    return suffix == ".html" || suffix == ".htm";
}

std::vector<DeviceRecord> by_device(std::span<const DoneJob> jobs) {
    std::vector<DeviceRecord> devices;
    for (const DoneJob &job : jobs) {
        if (devices.empty() || !same_device(devices.back(), job))
            devices.push_back({.name = job.device, .note = {}, .jobs = {}});
        devices.back().jobs.push_back(job);
    }
    return devices;
}

std::string record_page(const RecordFrame &frame, const DeviceRecord &device) {
    std::string page = title("Nachweis") + facts(device) + jobs_table(device.jobs);
    for (const SideBySide &jobs : side_by_side(device.jobs))
        page += settings_table(jobs);
    return page + "<p>&nbsp;</p>\n" + signature(frame);
}

std::string record_page(const RecordFrame &frame, const RecordCover &cover) {
    Pairs counts;
    for (const auto &[word, count] : cover.counts)
        counts.add(word, std::to_string(count));
    std::string page = title("Nachweis: " + escaped(cover.list)) + counts.html();
    if (!cover.not_done.empty()) {
        page += heading("Nicht erledigt") + "<p>";
        for (std::size_t i = 0; i < std::min(cover.not_done.size(), most_named); ++i)
            page += escaped(cover.not_done[i]) + "<br>\n";
        if (cover.not_done.size() > most_named)
            page += "und " + std::to_string(cover.not_done.size() - most_named) + " weitere";
        page += "</p>\n";
    }
    return page + "<p>&nbsp;</p>\n" + signature(frame);
}

} // namespace telvox
