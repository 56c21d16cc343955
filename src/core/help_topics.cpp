#include "core/help_topics.hpp"

#include <algorithm>

namespace telvox {

namespace {

/// The parts of a text between separators, without blanks around them.
std::vector<std::string> parts_of(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = text.find(separator);
        const std::string_view part = text.substr(0, end);
        const std::size_t first = std::min(part.find_first_not_of(' '), part.size());
        parts.emplace_back(part.substr(first, part.find_last_not_of(' ') + 1 - first));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return parts;
}

} // namespace

std::vector<HelpTopic> parse_help_topics(const std::vector<std::string> &lines) {
    std::vector<HelpTopic> topics;
    for (const std::string &line : lines) {
        std::vector<std::string> fields = parts_of(line, '|');
        if (fields.size() < 2 || fields[0].empty() || fields[0].find_first_of("/\\:") != std::string::npos)
            continue;
        topics.push_back({fields[0], fields[1],
                          fields.size() > 2 ? parts_of(fields[2], ',') : std::vector<std::string>{}});
    }
    return topics;
}

const HelpTopic *find_help_topic(const std::vector<HelpTopic> &topics, std::string_view topic) {
    for (const std::string_view key : {topic, topic.substr(0, topic.find('.'))})
        for (const HelpTopic &page : topics)
            if (std::find(page.keys.begin(), page.keys.end(), key) != page.keys.end())
                return &page;
    return topics.empty() ? nullptr : &topics.front();
}

} // namespace telvox
