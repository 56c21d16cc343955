#include "cli/record.hpp"

#include "core/files/files.hpp"
#include "core/files/system_error.hpp"
#include "core/text.hpp"
#include "core/usage_error.hpp"
#include "operation/record_pages.hpp"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>
#include <ctime>

namespace telvox::cli {

namespace {

/// The program with the window, which can draw pages.
QString painter() {
    return QStandardPaths::findExecutable("telvox", {QCoreApplication::applicationDirPath()});
}

int write_html(const std::string &path, const RecordPages &pages) {
    std::string html = record_head();
    for (std::size_t page = 0; page < pages.count; ++page)
        html.append(page == 0 ? "" : record_break).append(pages.page(page));
    return replace_file(path_of(path), html.append(record_foot));
}

/// What draws is not even loaded here, so that calls without a record start as fast as they can.
std::string write_pdf(const std::string &path, const RecordPages &pages) {
    constexpr int long_enough_ms = 600'000;
    constexpr qint64 most_waiting = 1 << 20;
    QProcess program;
    program.start(painter(), {"--nachweis-drucken", QString::fromStdString(path)});
    for (std::size_t page = 0; page < pages.count; ++page) {
        program.write(QByteArray::fromStdString((page == 0 ? "" : "\f") + pages.page(page)));
        while (program.bytesToWrite() > most_waiting && program.waitForBytesWritten(long_enough_ms))
            ;
    }
    program.closeWriteChannel();
    if (program.waitForFinished(long_enough_ms) && program.exitStatus() == QProcess::NormalExit &&
        program.exitCode() == 0)
        return {};
    const std::string why = program.readAllStandardError().trimmed().toStdString();
    return why.empty() ? "Das Programm \"telvox\" ließ sich nicht ausführen." : why;
}

} // namespace

void check_record(const Call &call) {
    if (call.record.empty())
        return;
    const std::filesystem::path path = std::filesystem::absolute(path_of(call.record));
    if (!is_html(path) && in_small_letters(text_of(path.extension())) != ".pdf")
        throw UsageError("--nachweis erwartet einen Dateinamen, der auf .pdf oder .html endet");
    std::error_code error;
    if (!std::filesystem::is_directory(path.parent_path(), error))
        throw UsageError("--nachweis: den Ordner \"" + text_of(path.parent_path()) + "\" gibt es nicht.");
    if (!is_html(path) && painter().isEmpty())
        throw UsageError("--nachweis: für PDF fehlt das Programm \"telvox\" neben diesem; .html geht ohne.");
}

RecordFrame record_frame(const Call &call, const Remembered &remembered) {
    return {.by = call.done_by.value_or(remembered.done_by),
            .place = call.place.value_or(remembered.place),
            .made = local_time(std::time(nullptr))};
}

std::string write_record(const Call &call, const RecordPages &pages) {
    std::string why;
    if (!is_html(path_of(call.record)))
        why = write_pdf(call.record, pages);
    else if (const int error = write_html(call.record, pages); error != 0)
        why = german_reason(error);
    return why.empty() ? why : "Der Nachweis konnte nicht gespeichert werden. " + why;
}

std::string write_record(const Call &call, std::span<const DoneJob> jobs, const Remembered &remembered) {
    if (call.record.empty() || jobs.empty())
        return {};
    return write_record(call, operation::record_of(jobs, record_frame(call, remembered)));
}

} // namespace telvox::cli
