#pragma once

#include "simulator/device.hpp"
#include "simulator/unit.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>

namespace telvox::simulator {

using namespace std::chrono_literals;

/// A host at one end of a line or connection, with a clock that the test turns. It wakes the far end exactly
/// when that asks for it, so a wrong `next` shows as a missing answer.
template <class Far> class Host {
  public:
    explicit Host(Far &far, const SerialFormat &format = factory_format) : far_(far) {
        far_.format(format, now);
        far_.open(true, now);
    }
    Host(Far &far, Time begin) : now(begin), far_(far) {}

    std::string turn(Time span) {
        const Time end = now + span;
        std::string bytes;
        while (const auto due = far_.next()) {
            if (*due > end)
                break;
            now = std::max(now, *due);
            bytes += far_.transmit(now);
        }
        now = end;
        return bytes;
    }
    std::string raw(std::string_view bytes, Time span = 1s) {
        far_.receive(bytes, now);
        return turn(span);
    }
    std::string line(const std::string &text, Time span = 1s) { return raw(text + "\r", span); }

    /// Plays a transcript of lines "sent -> answer" and "wait -> answer", and "raw bytes -> answer" without a
    /// carriage return, one to a line or with " ; " between them. "~" stands for a line's end in the answer,
    /// "_" for a blank before one, "^" with a letter for a control character. Every line has 5 s for its
    /// answer.
    void play(const char *transcript) {
        std::string rows{transcript};
        for (std::size_t at; (at = rows.find(" ; ")) != std::string::npos;)
            rows.replace(at, 3, "\n");
        std::istringstream lines{rows};
        for (std::string row; std::getline(lines, row);) {
            const auto begin = row.find_first_not_of(' ');
            if (begin == std::string::npos)
                continue;
            const auto arrow = row.find(" ->");
            std::string sent = row.substr(begin, arrow - begin);
            sent.erase(sent.find_last_not_of(' ') + 1);
            for (std::size_t at; (at = sent.find('^')) != std::string::npos;)
                sent.replace(at, 2, 1, static_cast<char>(sent[at + 1] & 0x1f));
            const bool bare = sent.starts_with("raw ");
            const std::string answer = sent == "wait" ? turn(5s)
                                       : bare         ? raw(sent.substr(4), 5s)
                                                      : line(sent, 5s);
            const std::string expected =
                arrow == std::string::npos || arrow + 4 > row.size() ? "" : row.substr(arrow + 4);
            EXPECT_EQ(shown(answer), expected) << row;
        }
    }

    Time now{0};

  private:
    static std::string shown(const std::string &answer) {
        std::string text;
        for (const char c : answer) {
            const bool ends = c == '\r' || c == '\n';
            if (ends && text.ends_with(' '))
                text.back() = '_';
            if (!ends)
                text += c;
            else if (!text.empty() && text.back() != '~')
                text += '~';
        }
        if (text.ends_with('~'))
            text.pop_back();
        if (text.ends_with(' '))
            text.back() = '_';
        return text;
    }

    Far &far_;
};

/// What a device keeps, in words.
inline std::string summary(const Memory &memory) {
    std::string text;
    for (const auto &[name, value] : {std::pair{"to", memory.recipient},
                                      {"text", memory.text},
                                      {"service", memory.service_number},
                                      {"protocol", memory.protocol},
                                      {"pin", memory.pin},
                                      {"msn", memory.msn},
                                      {"data", memory.data_msn}})
        text += value.empty() ? "" : name + ("=" + value) + " ";
    for (const auto &[name, value] : {std::pair{"armed ", memory.input_armed},
                                      {"ptp ", memory.point_to_point},
                                      {"unsaved ", !memory.saved}})
        text += value ? name : "";
    return text + std::to_string(memory.alarms);
}

} // namespace telvox::simulator
