#pragma once

#include "core/records/history.hpp"

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace telvox {

/// A job of this session, with what only a record for the customer tells of it.
struct DoneJob {
    HistoryLine line;
    std::string device; ///< the list's row that it was done for, "Zeile 3, Pumpwerk Süd"; empty: none
    std::string way;    ///< "Direktverbindung mit Kabel, COM 3"; empty: nobody knows
    enum class Kind { other, alarm_test, writes, reads } kind = Kind::other;
    /// What the device was sent, or has said, under the windows' captions; secrets are "gesetzt".
    std::vector<std::pair<std::string, std::string>> settings = {};
    std::string signal = {}; ///< what the device has said of its reception
    bool again = false;      ///< asked by itself, as the job before was
};

/// What a record says of one device, on a page of its own.
struct DeviceRecord {
    std::string name;          ///< empty: none
    std::string note;          ///< "noch offen"; stands where no job does
    std::vector<DoneJob> jobs; ///< the oldest first
};

/// Jobs by the device that they were done at, as far as that can be known: another variant, port, row or IMEI
/// is another device, and so is one that is written to again by a job that has written to it successfully.
[[nodiscard]] std::vector<DeviceRecord> by_device(std::span<const DoneJob> jobs);

/// What stands around a record's pages.
struct RecordFrame {
    std::string by, place; ///< who did it and where; empty: to be filled in by hand
    std::string made;      ///< local_time
};

/// What a record of a list has before its pages.
struct RecordCover {
    std::string list;                                        ///< the file's name
    std::vector<std::pair<std::string, std::size_t>> counts; ///< "erfolgreich", 28
    std::vector<std::string> not_done; ///< rows that are, "Zeile 3, Süd: fehlgeschlagen"
};

/// Whether a record goes into a file of this name as HTML, else as PDF.
[[nodiscard]] bool is_html(const std::filesystem::path &file);

/// The pages of a record, each the body of an HTML page; texts of any language and length, of which nothing
/// is taken for HTML.
[[nodiscard]] std::string record_page(const RecordFrame &frame, const DeviceRecord &device);
[[nodiscard]] std::string record_page(const RecordFrame &frame, const RecordCover &cover);
/// What makes the pages look alike, as CSS; and what stands before the first, between two and behind the last
/// one in an HTML file.
extern const char *const record_style;
[[nodiscard]] std::string record_head();
extern const char *const record_break;
extern const char *const record_foot;

} // namespace telvox
