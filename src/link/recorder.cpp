#include "link/recorder.hpp"

#include "core/port_choice.hpp"
#include "core/text.hpp"

#include <cstdio>
#include <utility>

namespace telvox {

namespace {

std::string line_text(milliseconds at, RecordLine::Kind kind, const std::string &text) {
    const char *const mark = kind == RecordLine::Kind::done       ? " | "
                             : kind == RecordLine::Kind::received ? " <- "
                                                                  : " ";
    return std::to_string(at.count()) + mark + text;
}

} // namespace

std::string text_of(const RecordLine &line) { return line_text(line.at - line.begin, line.kind, line.text); }

std::string record_of(const Message &message) {
    std::string text = message.text + (message.advice.empty() ? "" : "\r") + message.advice;
    for (std::size_t at = 0; (at = text.find('\r', at)) != std::string::npos;)
        text.replace(at, 1, "\\r");
    return (message.asks ? "asks " : "box ") + text +
           (message.title != program_title ? " [" + message.title + "]" : "") +
           (message.icon == Icon::exclamation ? " (!)" : "");
}

std::string visible(std::string_view bytes) {
    std::string text;
    for (const char &byte : bytes) {
        const std::string character = from_line(std::string_view(&byte, 1));
        const auto code = static_cast<unsigned>(static_cast<unsigned char>(byte));
        if (byte == '\r' || byte == '\n') {
            text += byte == '\r' ? "\\r" : "\\n";
        } else if (byte == '\\') {
            text += "\\\\";
        } else if (code < 0x20 || code == 0x7F || character.empty() || code_point(character) == 0xFFFD ||
                   (code_point(character) >= 0x80 && code_point(character) < 0xA0)) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\x%02X", code);
            text += escape;
        } else {
            text += character;
        }
    }
    return text;
}

std::string Recorder::transcript() {
    flush();
    std::string text;
    if (gone_ != 0)
        text = "# Der Anfang fehlt (" + std::to_string(gone_) +
               " Zeilen); so lässt sich das nicht nachspielen.\n";
    for (const RecordLine &line : lines_) {
        if (line.pieces.empty())
            text += line_text(line.at, line.kind, line.text) + "\n";
        for (const auto &[at, piece] : line.pieces)
            text += line_text(at, line.kind, piece) + "\n";
    }
    return text + std::to_string(now_().count()) + " end\n";
}

void Recorder::note(RecordLine::Kind kind, std::string text) {
    if (paused_)
        return;
    flush();
    add({.at = now_(), .kind = kind, .text = std::move(text)});
}

void Recorder::event(CommEvent event) {
    if (event != CommEvent::data)
        note(RecordLine::Kind::event, event == CommEvent::carrier_rise   ? "carrier"
                                      : event == CommEvent::carrier_fall ? "no-carrier"
                                                                         : "lost");
}

void Recorder::input(const std::string &verb, const std::string &control, const std::string &value) {
    if (paused_)
        return;
    flush();
    const std::string what = verb + " " + control;
    if (verb == "enter" && !lines_.empty() && lines_.back().kind == RecordLine::Kind::input &&
        lines_.back().text.starts_with(what + " ")) {
        lines_.back().text = what + " " + value;
        return;
    }
    add({.at = now_(),
         .kind = RecordLine::Kind::input,
         .text = value.empty() && verb != "enter" ? what : what + " " + value});
}

void Recorder::Settings(const SerialFormat &format) {
    flush();
    if (!port_.PortOpen()) // a job begins
        job_ = now_();
    note(RecordLine::Kind::done, "format " + format_text(format));
    port_.Settings(format);
}

std::string Recorder::PortOpen(bool open) {
    if (!open && port_.PortOpen())
        note(RecordLine::Kind::done, "close");
    std::string cause = port_.PortOpen(open);
    if (open)
        cause.empty() ? note(RecordLine::Kind::done, "open " + port_entry(port_.CommPort()))
                      : note(RecordLine::Kind::event, "cannot-open " + cause);
    return cause;
}

void Recorder::DTREnable(bool on) {
    note(RecordLine::Kind::done, on ? "DTR on" : "DTR off");
    port_.DTREnable(on);
}

void Recorder::Output(std::string_view bytes) {
    const std::string shown = mask_.sent(bytes);
    if (!mask_.typing())
        flush();
    if (!shown.empty())
        add({.at = now_(), .text = "-> " + visible(shown)});
    port_.Output(bytes);
}

std::string Recorder::Input() {
    std::string bytes = port_.Input();
    std::string shown;
    const auto keep = [&] {
        if (!shown.empty())
            pending_.push_back({now_(), std::exchange(shown, {})});
    };
    for (const char byte : bytes) {
        shown += mask_.received(byte);
        ++pending_size_;
        if (byte != '\n' && pending_size_ < longest_line)
            continue;
        keep();
        flush(byte == '\n');
    }
    keep();
    return bytes;
}

bool Recorder::drain(milliseconds limit) {
    note(RecordLine::Kind::done, "drain");
    return port_.drain(limit);
}

/// A secret may lie across two pieces, so a line is shown as it came only if it holds none.
void Recorder::flush(bool line_ended) {
    if (pending_.empty())
        return;
    std::string whole;
    for (const Piece &piece : pending_)
        whole += piece.bytes;
    const Mask::Shown seen = mask_.line(whole, begun_);
    const std::string shown = rest_is_secret_ ? Mask::hidden : seen.text;
    rest_is_secret_ = !line_ended && (rest_is_secret_ || seen.open || shown.ends_with(Mask::hidden));
    begun_ += whole;
    begun_.erase(0, line_ended ? begun_.size() : begun_.size() - std::min(begun_.size(), longest_line));
    RecordLine line{.at = pending_.front().at,
                    .kind = RecordLine::Kind::received,
                    .text = visible(shown),
                    .rejects = has_line(whole, "ERROR")};
    if (shown == whole && pending_.size() > 1)
        for (const Piece &piece : pending_)
            line.pieces.emplace_back(piece.at, visible(piece.bytes));
    add(std::move(line));
    pending_.clear();
    pending_size_ = 0;
}

void Recorder::add(RecordLine line) {
    if (lines_.size() == capacity) {
        lines_.pop_front();
        ++gone_;
    }
    line.begin = job_;
    lines_.push_back(std::move(line));
    added(lines_.back());
}

} // namespace telvox
