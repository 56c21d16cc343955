#include "net/telnet.hpp"

namespace telvox {

namespace {

enum Command : unsigned char {
    se = 240,
    sb = 250,
    will = 251,
    wont = 252,
    do_it = 253,
    dont = 254,
    iac = 255
};

} // namespace

std::string TelnetFilter::text(std::string_view bytes, std::string &refusals) {
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        switch (in_) {
        case In::text:
            byte == iac ? void(in_ = In::command) : text.push_back(c);
            break;
        case In::command:
            command_ = byte;
            in_ = byte == sb ? In::parameters : byte >= will && byte <= dont ? In::option : In::text;
            if (byte == iac)
                text.push_back(c); // the byte itself, said twice
            break;
        case In::option:
            in_ = In::text;
            if (command_ == will || command_ == do_it) {
                const std::size_t mark = byte + (command_ == will ? 256u : 0u);
                const unsigned char refusal = command_ == will ? dont : wont;
                if (!refused_.test(mark))
                    for (const unsigned char part : {static_cast<unsigned char>(iac), refusal, byte})
                        refusals.push_back(static_cast<char>(part));
                refused_.set(mark);
            }
            break;
        case In::parameters:
            if (byte == iac)
                in_ = In::parameters_command;
            break;
        case In::parameters_command:
            in_ = byte == se ? In::text : In::parameters;
            break;
        }
    }
    return text;
}

TelnetDialogue::Reaction TelnetDialogue::arrive(std::string_view bytes) {
    Reaction reaction;
    std::string refusals;
    reaction.text = filter_.text(bytes, refusals);
    if (!refusals.empty())
        reaction.sent.push_back(std::move(refusals));
    heard_ += reaction.text;
    if (heard_.find("ERROR") != std::string::npos) {
        forget();
        return reaction;
    }
    bool commanded = false;
    for (const Prompt &prompt : prompts_) {
        if (!holds(prompt))
            continue;
        // The next piece may complete a word, so only whole ones are used up.
        const std::string_view word = prompt.contains;
        used_[word] = heard_.rfind(word) + word.size();
        if (prompt.sets && !(state_.*prompt.sets)) {
            state_.*prompt.sets = true;
            idle_ = 0;
        }
        if (prompt.send) {
            reaction.sent.push_back(prompt.send + (prompt.value ? values_.*prompt.value : std::string()) +
                                    "\r");
            commanded = true;
        }
    }
    if (commanded || heard_.size() > longest)
        forget();
    return reaction;
}

bool TelnetDialogue::holds(const Prompt &prompt) const {
    const auto used = used_.find(prompt.contains);
    return (!prompt.given || state_.*prompt.given) && (!prompt.unless || !(state_.*prompt.unless)) &&
           heard_.find(prompt.contains, used == used_.end() ? 0 : used->second) != std::string::npos;
}

void TelnetDialogue::forget() {
    heard_.clear();
    used_.clear();
}

bool TelnetDialogue::tick() { return idle_ >= patience || (++idle_, false); }

} // namespace telvox
