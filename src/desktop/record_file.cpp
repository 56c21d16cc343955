#include "desktop/record_file.hpp"

#include "core/files/files.hpp"
#include "core/files/system_error.hpp"
#include "core/messages.hpp"
#include "core/records/service_record.hpp"

#include <QAbstractTextDocumentLayout>
#include <QElapsedTimer>
#include <QPainter>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextDocument>
#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

namespace telvox::desktop {

namespace {

constexpr int dots_per_inch = 300;
constexpr int margin_mm = 18;
constexpr int foot = 8 * dots_per_inch * 10 / 254; ///< room for the number of the sheet, 8 mm
/// So long may pages be made before the event loop has its turn.
constexpr int turn_ms = 30;

/// Letters that are drawn as one, "fi", would be found by no search for "konfigurieren"; where letters are
/// spaced none are.
QFont record_font() {
    QFont font("DejaVu Sans");
    font.setStyleHint(QFont::SansSerif);
    font.setPointSizeF(9);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0.05);
    return font;
}

/// A line of a text and where its block begins, from the top of its page.
struct PlacedLine {
    QTextLine line;
    QPointF at;
};

/// The lines of each page. Each is drawn by itself: what draws a part of a text also draws the line before
/// it, which is not seen, but found by who searches or copies.
std::vector<std::vector<PlacedLine>> lines_by_page(const QTextDocument &text) {
    std::vector<std::vector<PlacedLine>> pages(1);
    const qreal height = text.pageSize().height();
    for (QTextBlock block = text.begin(); block.isValid(); block = block.next()) {
        const QPointF at = text.documentLayout()->blockBoundingRect(block).topLeft();
        for (int i = 0; i < block.layout()->lineCount(); ++i) {
            const QTextLine line = block.layout()->lineAt(i);
            const auto page = static_cast<std::size_t>((at.y() + line.y() + 1) / height);
            pages.resize(std::max(pages.size(), page + 1));
            pages[page].push_back({line, at - QPointF(0, static_cast<qreal>(page) * height)});
        }
    }
    return pages;
}

} // namespace

RecordFile::RecordFile(const std::string &path) : file_(QString::fromStdString(path)) {
    errno = 0;
    note(file_.open(QIODevice::WriteOnly));
    if (error_ != 0)
        return;
    if (is_html(path_of(path))) {
        note(file_.write(QByteArray::fromStdString(record_head())) >= 0);
        return;
    }
    pdf_ = std::make_unique<QPdfWriter>(&file_);
    pdf_->setPageSize(QPageSize(QPageSize::A4));
    pdf_->setPageMargins(QMarginsF(margin_mm, margin_mm, margin_mm, margin_mm), QPageLayout::Millimeter);
    pdf_->setResolution(dots_per_inch);
    pdf_->setTitle("Nachweis");
    pdf_->setCreator(program_title);
    painter_ = std::make_unique<QPainter>(pdf_.get());
    text_ = std::make_unique<QTextDocument>();
    text_->setUndoRedoEnabled(false);
    text_->documentLayout()->setPaintDevice(pdf_.get());
    text_->setDocumentMargin(0);
    text_->setDefaultFont(record_font());
    text_->setDefaultStyleSheet(record_style);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    text_->setDefaultTextOption(option);
}

RecordFile::~RecordFile() {
    text_.reset(); // before what they are for
    painter_.reset();
    pdf_.reset();
}

void RecordFile::note(bool written) {
    if (!written && error_ == 0)
        error_ = file_.error() == QFileDevice::ResourceError ? ENOSPC : errno != 0 ? errno : EIO;
}

void RecordFile::add(const std::string &page) {
    if (error_ != 0)
        return;
    if (pdf_) {
        print(page);
        return note(file_.error() == QFileDevice::NoError);
    }
    const std::string text = (std::exchange(first_, false) ? "" : record_break) + page;
    note(file_.write(text.data(), static_cast<qint64>(text.size())) >= 0);
}

void RecordFile::print(const std::string &page) {
    QTextDocument &text = *text_;
    const QSizeF sheet(pdf_->width(), pdf_->height() - foot);
    text.setHtml(QString::fromStdString("<body>" + page + "</body>"));
    // A device has one page, if it can still be read there.
    qreal scale = 1;
    for (const qreal smaller : {1.0, 0.9, 0.8}) {
        text.setPageSize(sheet / (scale = smaller));
        if (text.pageCount() == 1)
            break;
    }
    if (text.pageCount() > 1)
        text.setPageSize(sheet / (scale = 1));
    for (const std::vector<PlacedLine> &lines : lines_by_page(text)) {
        if (sheets_++ > 0)
            pdf_->newPage();
        painter_->save();
        painter_->scale(scale, scale);
        for (const PlacedLine &placed : lines)
            placed.line.draw(painter_.get(), placed.at);
        painter_->restore();
        painter_->setFont(record_font());
        painter_->drawText(QRectF(0, sheet.height(), sheet.width(), foot), Qt::AlignRight | Qt::AlignBottom,
                           QString("Blatt %1").arg(sheets_));
    }
}

std::string RecordFile::end() {
    if (error_ == 0 && !pdf_)
        note(file_.write(record_foot) >= 0);
    if (painter_)
        note(painter_->end() && file_.error() == QFileDevice::NoError);
    errno = 0;
    if (error_ == 0)
        note(file_.commit());
    return error_ == 0 ? std::string() : german_reason(error_);
}

QtRecordPrinter::QtRecordPrinter() {
    connect(&turn_, &QTimer::timeout, this, [this] { go_on(); });
}

void QtRecordPrinter::print(const std::string &path, RecordPages pages, Progress progress, Ended ended) {
    file_ = std::make_unique<RecordFile>(path);
    pages_ = std::move(pages);
    done_ = 0;
    progress_ = std::move(progress);
    ended_ = std::move(ended);
    turn_.start();
}

void QtRecordPrinter::cancel() {
    turn_.stop();
    file_.reset();
}

void QtRecordPrinter::go_on() {
    QElapsedTimer time;
    for (time.start(); done_ < pages_.count && !time.hasExpired(turn_ms); ++done_)
        file_->add(pages_.page(done_));
    progress_(done_);
    if (done_ < pages_.count)
        return;
    turn_.stop();
    ended_(std::exchange(file_, nullptr)->end());
}

} // namespace telvox::desktop
