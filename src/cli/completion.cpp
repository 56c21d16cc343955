#include "cli/call.hpp"

#include <algorithm>
#include <map>
#include <sstream>

namespace telvox::cli {

namespace {

/// The word of a text that begins at a place.
std::string word_at(const std::string &line, std::size_t from) {
    return line.substr(from, line.find(' ', from) - from);
}

std::string names_of_situations() {
    std::string names;
    for (const auto &situation : simulator::situations())
        names += (names.empty() ? "" : " ") + std::string(situation.name);
    return names;
}

/// What the option takes: its words, or its value as the help writes it ("DATEI -").
std::string values_of(const JobCommand &job, const std::string &name, std::string value) {
    if (name == "--simulator-fall")
        return names_of_situations();
    const Option *option = find_option(job, name.substr(2));
    if (!option || option->words.empty()) {
        std::replace(value.begin(), value.end(), '|', ' ');
        return value;
    }
    std::string words;
    for (const Word &word : option->words)
        words += (words.empty() ? "" : " ") + std::string(word.word);
    return words;
}

} // namespace

std::string completion_list() {
    constexpr std::size_t indent = 2;
    std::string jobs;
    std::map<std::string, std::string> values;
    for (const JobCommand &job : job_commands()) {
        jobs += job.name + (job.file ? " " + std::string(job.file) : "");
        std::istringstream help(help_text(&job));
        for (std::string line; std::getline(help, line);) {
            if (!line.starts_with("  --"))
                continue;
            const std::string name = word_at(line, indent);
            jobs += " " + name;
            // One blank stands before a value, several before the purpose of an option that takes none.
            const std::string value = word_at(line, std::min(indent + name.size() + 1, line.size()));
            if (!value.empty())
                values.emplace(name, values_of(job, name, value));
        }
        jobs += "\n";
    }
    for (const auto &[name, value] : values)
        jobs += name + " " + value + "\n";
    return jobs;
}

} // namespace telvox::cli
