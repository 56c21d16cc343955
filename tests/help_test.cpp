// The help against the program's source: what the program can say is explained, and nothing else is.

#include "dialogues/families.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace telvox::test {
namespace {

namespace fs = std::filesystem;

std::string contents(const fs::path &file) {
    std::stringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

std::string replaced(std::string text, const std::string &what, const std::string &by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
        text.replace(at, what.size(), by);
    return text;
}

/// Without what stands around the words of a message: blanks, and the marks that join a piece to others.
std::string bare(const std::string &text) {
    constexpr const char *around = " \n:;,\"'()[]-";
    const auto begin = text.find_first_not_of(around);
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(around) + 1 - begin);
}

bool has_words(const std::string &text) {
    return std::any_of(text.begin(), text.end(), [](unsigned char c) { return std::isalpha(c); });
}

/// A text of the source, neighbouring literals joined, and its statement up to there.
struct Literal {
    std::string text;
    std::string statement;
};

std::vector<Literal> literals(const std::string &source) {
    std::vector<Literal> found;
    std::string statement, text;
    bool open = false;
    for (std::size_t i = 0; i < source.size(); ++i) {
        const char c = source[i];
        if (source.compare(i, 2, "//") == 0 ||
            (c == '#' && statement.find_last_not_of(" \n") == std::string::npos)) {
            i = std::min(source.find('\n', i), source.size());
        } else if (c == '\'' && !std::isdigit(static_cast<unsigned char>(source[i - 1]))) {
            i = std::min(source.find('\'', i + (source[i + 1] == '\\' ? 3 : 2)), source.size());
        } else if (c == '"') {
            open = true;
            while (source[++i] != '"')
                if (source[i] != '\\')
                    text += source[i];
                else
                    text += source[++i] == 'r' || source[i] == 'n' ? ' ' : source[i];
        } else if (!std::isspace(static_cast<unsigned char>(c)) && std::exchange(open, false)) {
            found.push_back({std::exchange(text, {}), statement});
        }
        if (c != '"')
            statement = c == ';' || c == '#' ? "" : statement + c;
    }
    return found;
}

/// What is no message of the program: captions, hints, the help of calls, and what simulated devices say.
bool is_something_else(const fs::path &file) {
    const std::string name = file.filename().string();
    return file.parent_path().filename() == "simulator" || name.starts_with("frm_") ||
           name == "small_dialogs.hpp" || name == "help.cpp" || name == "rows.hpp" || name == "jobs.cpp" ||
           name == "number_lists.cpp";
}

/// A sentence, or what a statement that tells something says.
bool is_message(const Literal &literal) {
    constexpr const char *tells[] = {
        "UsageError(",   "refuse(",    "refused(",  "why_not(",         "ReportRow",   "fail(",
        ".otherwise = ", "{.text = ",  " .text = ", ".message = ",      ".reached = ", ".unreached = ",
        ".done = ",      ".failed = ", "show(",     "show_unrecorded(", "outbox.ask("};
    const std::string text = bare(literal.text);
    if (text.find(' ') == std::string::npos || !has_words(text) || text.ends_with("...") ||
        literal.statement.find("help_line(") != std::string::npos)
        return false;
    return std::string(".!?").find(text.back()) != std::string::npos ||
           std::any_of(std::begin(tells), std::end(tells),
                       [&](const char *word) { return literal.statement.find(word) != std::string::npos; });
}

std::vector<fs::path> files_in(const fs::path &folder, const std::string &extension) {
    std::vector<fs::path> found;
    for (const auto &entry : fs::recursive_directory_iterator(folder))
        if (entry.path().extension().string().ends_with(extension))
            found.push_back(entry.path());
    return found;
}

/// The texts between two tags of a page.
std::vector<std::string> between(const std::string &page, const std::string &begin, const std::string &end) {
    std::vector<std::string> found;
    for (std::size_t at = 0; (at = page.find(begin, at)) != std::string::npos;) {
        at += begin.size();
        found.push_back(page.substr(at, page.find(end, at) - at));
    }
    return found;
}

std::string without_entities(std::string text) {
    for (const auto &[entity, character] : {std::pair{"&lt;", "<"}, {"&gt;", ">"}, {"&amp;", "&"}})
        text = replaced(std::move(text), entity, character);
    return text;
}

TEST(Help, ExplainsEveryMessageAndNoOther) {
    std::string explained;
    std::vector<std::string> pieces; // of what is explained, without what changes from case to case
    for (const fs::path &file : files_in(fs::path(ROOT) / "share/hilfe", ".html")) {
        if (!file.filename().string().starts_with("meldungen"))
            continue;
        for (const std::string &message : between(contents(file), "<b>", "</b>")) {
            std::string marked = without_entities(replaced(message, "<br>", " "));
            for (const std::string &changing : between(marked, "<i>", "</i>"))
                marked = replaced(marked, "<i>" + changing + "</i>", "\n");
            explained += marked + "\n";
            for (std::istringstream lines(marked); lines;) {
                std::string line;
                std::getline(lines, line);
                pieces.push_back(bare(line));
            }
        }
    }
    std::string said;
    for (const fs::path &file : files_in(fs::path(ROOT) / "src", "pp"))
        for (const Literal &literal : literals(contents(file))) {
            said += literal.text + "\n";
            if (!is_something_else(file) && is_message(literal)) {
                EXPECT_NE(explained.find(bare(literal.text)), std::string::npos)
                    << file.filename() << " says \"" << literal.text << "\", the help does not";
            }
        }
    for (const std::string &piece : pieces)
        EXPECT_TRUE(said.find(piece) != std::string::npos) << "nobody says \"" << piece << "\"";
}

/// A row of a page's table about what a device sees.
struct ShownStep {
    std::string status;
    std::vector<std::string> commands; ///< without their values
    std::string read;                  ///< number of the read command
    std::vector<milliseconds> waits;
};

/// What a page says in words, such as "AT**SAVE und AT&amp;W".
std::vector<std::string> commands_in(const std::string &text) {
    std::vector<std::string> found;
    for (std::string code : between(text, "<code>", "</code>")) {
        for (const char *between_them : {" und ", " oder ", " / ", ", "})
            code = replaced(code, between_them, "\n");
        std::istringstream lines(without_entities(code));
        for (std::string line; std::getline(lines, line);)
            found.push_back(line.substr(0, line.find(" (")));
    }
    return found;
}

/// "(2,5 s)", "2 oder 3 s"
std::vector<milliseconds> waits_in(const std::string &text) {
    std::vector<milliseconds> found;
    const bool any = std::any_of(text.begin(), text.end(), [&](const char &c) {
        return std::isdigit(static_cast<unsigned char>(c)) && std::string(&c + 1).starts_with(" s") &&
               !std::isalpha(static_cast<unsigned char>((&c)[3]));
    });
    std::istringstream words(replaced(replaced(text, "(", " "), ",", "."));
    for (std::string word; any && words >> word;)
        if (std::isdigit(static_cast<unsigned char>(word[0])))
            found.emplace_back(std::lround(std::stod(word) * 1000));
    return found;
}

std::vector<ShownStep> steps_in(const std::string &table) {
    const std::vector<std::string> heads = between(table, "<th ", "</th>");
    const auto column = [&](const char *name) {
        return std::find_if(heads.begin(), heads.end(), [&](const auto &h) { return h.ends_with(name); }) -
               heads.begin();
    };
    std::vector<ShownStep> found;
    for (const std::string &row : between(table, "<tr><td>", "</tr>")) {
        const std::vector<std::string> cells = between("<td>" + row, "<td>", "</td>");
        const auto cell = [&](std::ptrdiff_t at) {
            return at < std::ssize(cells) ? cells[static_cast<std::size_t>(at)] : std::string();
        };
        const std::string note = row.substr(row.rfind("</code>") + 7);
        found.push_back({cell(column(">Statuszeile")), commands_in(row), cell(column(">Schritt")),
                         waits_in(replaced(note, ">", " "))});
    }
    return found;
}

bool shows(const ShownStep &shown, const Step &step) {
    const std::string status = step.status.fixed() ? step.status.fixed() : "";
    const char *begin = step.send.fixed(); // none: a value alone
    const auto &commands = shown.commands;
    return shown.status == status && (shown.read.empty() || shown.read == std::to_string(step.reads)) &&
           std::any_of(commands.begin(), commands.end(), [&](const std::string &command) {
               return begin ? command.starts_with(begin) : !command.starts_with("AT");
           });
}

/// Tables name by "summary" the jobs whose steps they show: each in its place, and together all that send.
TEST(Help, ShowsWhatTheDialoguesSend) {
    std::map<std::string, std::vector<Step>> jobs;
    for (const Family *family : {&analog_family, &isdn_family, &gsm_family, &gprs_family, &ethernet_family})
        for (const Job &job : family->jobs)
            std::copy_if(job.steps.begin(), job.steps.end(), std::back_inserter(jobs[job.name]),
                         [](const Step &step) { return step.send.given(); });
    std::map<std::string, std::vector<bool>> shown;
    const auto compare = [&](const std::string &name, const std::vector<ShownStep> &rows) {
        const std::vector<Step> &steps = jobs[name];
        std::vector<bool> &seen = shown[name];
        seen.resize(steps.size());
        std::size_t behind = 0;
        for (const ShownStep &row : rows) {
            const auto before = behind;
            for (std::size_t i = before; i < steps.size() && (behind == before || behind == i); ++i)
                if (shows(row, steps[i])) {
                    seen[i] = true;
                    behind = i + 1;
                    EXPECT_TRUE(row.waits.empty() ||
                                std::count(row.waits.begin(), row.waits.end(), steps[i].wait))
                        << name << ", " << row.status << ": waits " << steps[i].wait.count();
                }
            EXPECT_NE(behind, before) << name << ", " << row.status << ": no such step here";
        }
    };
    for (const fs::path &file : files_in(fs::path(ROOT) / "share/hilfe", ".html"))
        for (const std::string &table : between(contents(file), "<table summary=\"", "</table>")) {
            std::istringstream names(replaced(table.substr(0, table.find('"')), ", ", "\n"));
            for (std::string name; std::getline(names, name);)
                compare(name, steps_in(table));
        }
    EXPECT_GE(shown.size(), 15u);
    for (const auto &[name, seen] : shown)
        for (std::size_t i = 0; i < seen.size(); ++i)
            EXPECT_TRUE(seen[i] || jobs[name][i].when) << name << " sends more, as number " << i + 1;
}

TEST(Help, HasEveryPageThatItLeadsTo) {
    const fs::path help = fs::path(ROOT) / "share/hilfe";
    const std::string listed = "\n" + contents(help / "inhalt.txt");
    for (const fs::path &file : files_in(help, ".html")) {
        EXPECT_NE(listed.find("\n" + file.filename().string() + "|"), std::string::npos) << file;
        for (const std::string &link : between(contents(file), "href=\"", "\""))
            EXPECT_TRUE(link.starts_with("#") || fs::is_regular_file(help / link.substr(0, link.find('#'))))
                << file << " leads to " << link;
    }
}

} // namespace
} // namespace telvox::test
