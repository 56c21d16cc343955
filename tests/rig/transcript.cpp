#include "rig/transcript.hpp"

#include "core/files/files.hpp"

#include <sstream>
#include <stdexcept>

namespace telvox::test {

namespace {

Line parse(const std::string &text) {
    std::istringstream words(text);
    long long at = -1;
    Line line;
    if (!(words >> at >> line.verb) || at < 0)
        throw std::runtime_error("line without time or verb: " + text);
    words.get();
    std::getline(words, line.rest);
    line.at = milliseconds{at};
    return line;
}

} // namespace

Presets::Presets(std::istream &file) {
    Transcript *section = nullptr;
    for (std::string line; telvox::read_line(file, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        if (learn(line))
            continue;
        if (line[0] == '[') {
            section = &sections_[line.substr(1, line.find(']') - 1)];
        } else if (!section) {
            throw std::runtime_error("preset without name: " + line);
        } else {
            read_line(line, {}, *section);
        }
    }
}

bool Presets::learn(const std::string &line) {
    if (!line.starts_with("let "))
        return false;
    const auto name_end = line.find(' ', 4);
    texts_.push_back({line.substr(4, name_end - 4), expanded(line.substr(name_end + 1))});
    return true;
}

std::string Presets::expanded(std::string line) const {
    for (const auto &[name, text] : texts_)
        for (std::size_t at = 0; (at = line.find(name, at)) != std::string::npos; at += text.size())
            line.replace(at, name.size(), text);
    return line;
}

void Presets::read_line(const std::string &text, milliseconds since, Transcript &into) const {
    Line line = parse(expanded(text));
    line.at += since;
    if (line.verb == "use") {
        const auto preset = sections_.find(line.rest);
        if (preset == sections_.end())
            throw std::runtime_error("no such preset: " + line.rest);
        for (Line copy : preset->second) {
            copy.at += line.at;
            copy.rest = expanded(copy.rest);
            into.push_back(copy);
        }
    } else if (line.verb == done) {
        for (std::string rest = line.rest; !rest.empty();) {
            const auto bar = rest.find(" | ");
            into.push_back({line.at, done, rest.substr(0, bar)});
            rest = bar == std::string::npos ? "" : rest.substr(bar + 3);
        }
    } else {
        if (line.verb == stays_out &&
            (into.empty() ||
             !(is_reply(into.back()) || into.back().verb == from_network || into.back().verb == "carrier")))
            throw std::runtime_error("nothing that could stay out before: " + text);
        into.push_back(line);
    }
}

Transcript Presets::read(std::istream &file) const {
    Transcript transcript;
    Presets own = *this;
    for (std::string line; telvox::read_line(file, line);)
        if (!line.empty() && line[0] != '#' && !own.learn(line))
            own.read_line(line, {}, transcript);
    milliseconds now{0};
    for (const Line &line : transcript) {
        if (line.verb == stays_out)
            continue;
        if (line.at < now)
            throw std::runtime_error("the clock runs backwards: " +
                                     entry(line.at, line.verb + " " + line.rest));
        now = line.at;
    }
    if (transcript.empty() || transcript.back().verb != "end")
        throw std::runtime_error("the transcript has no end");
    return transcript;
}

} // namespace telvox::test
