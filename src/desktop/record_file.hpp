#pragma once

#include "core/record_printer.hpp"

#include <QSaveFile>
#include <QTimer>
#include <memory>
#include <string>

class QPainter;
class QPdfWriter;
class QTextDocument;

namespace telvox::desktop {

/// A record that is written page by page: HTML where its name says so, else PDF of the size A4. It is there
/// once it has been ended, as a whole or not at all.
class RecordFile {
  public:
    explicit RecordFile(const std::string &path);
    ~RecordFile();
    RecordFile(const RecordFile &) = delete;
    RecordFile &operator=(const RecordFile &) = delete;

    /// The body of an HTML page; a long one takes several sheets.
    void add(const std::string &page);
    /// Returns why the file could not be written (German), empty when it was.
    [[nodiscard]] std::string end();

  private:
    void print(const std::string &page);
    void note(bool written);

    QSaveFile file_;
    std::unique_ptr<QPdfWriter> pdf_; ///< none: the file is HTML
    std::unique_ptr<QPainter> painter_;
    std::unique_ptr<QTextDocument> text_; ///< of the page that is printed
    int sheets_ = 0;
    bool first_ = true;
    int error_ = 0;
};

/// Writes a record while the event loop goes on.
class QtRecordPrinter final : public QObject, public RecordPrinter {
  public:
    QtRecordPrinter();
    void print(const std::string &path, RecordPages pages, Progress progress, Ended ended) override;
    void cancel() override;

  private:
    void go_on();

    QTimer turn_;
    std::unique_ptr<RecordFile> file_;
    RecordPages pages_;
    std::size_t done_ = 0;
    Progress progress_;
    Ended ended_;
};

} // namespace telvox::desktop
