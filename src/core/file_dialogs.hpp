#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace telvox {

/// What is asked of the user: which file to open, or under which name to save.
struct FileQuestion {
    std::string title;     ///< of the dialog: "Protokoll speichern"
    std::string filter;    ///< "Protokoll (*.txt)"; a name that is saved without a suffix gets its first
    bool saves = false;    ///< asks before it overwrites
    std::string suggested; ///< name to save under; with a folder, the dialog begins there
    std::string tick;      ///< caption of a box that can be ticked, empty: none
};

struct FileAnswer {
    std::string path; ///< whole path, UTF-8; empty: the user gave up
    bool ticked = false;
};
using FileAnswered = std::function<void(const FileAnswer &)>;

/// Lets the user choose files (port). `show` returns at once; `answered` is called once, when the dialog has
/// closed, never from inside `show`'s caller's handler.
class FileDialogs {
  public:
    virtual ~FileDialogs() = default;
    virtual void show(const FileQuestion &question, FileAnswered answered) = 0;
};

/// Questions of the handler that is running: they are put once it has ended, and the answer is an event of
/// its own. Where nobody can choose files (command line) no answer comes.
class FileQuestions {
  public:
    struct Entry {
        FileQuestion question;
        FileAnswered answered;
    };

    void ask(FileQuestion question, FileAnswered answered) {
        waiting_.push_back({std::move(question), std::move(answered)});
    }
    [[nodiscard]] std::vector<Entry> take() { return std::exchange(waiting_, {}); }

  private:
    std::vector<Entry> waiting_;
};

} // namespace telvox
