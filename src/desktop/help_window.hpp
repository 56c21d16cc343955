#pragma once

#include "core/help_topics.hpp"
#include "core/help_viewer.hpp"

#include <QWidget>
#include <filesystem>
#include <map>
#include <memory>
#include <vector>

class QLineEdit;
class QListWidget;
class QPushButton;
class QTextBrowser;
class QUrl;

namespace telvox::desktop {

/// The help: contents with a search at the left, the page at the right. It stands beside the program's
/// windows, never in their way, and remembers nothing once it is closed.
class HelpWindow final : public QWidget, public HelpViewer {
  public:
    /// Looks for the help in these folders.
    explicit HelpWindow(std::vector<std::filesystem::path> folders);

    std::string show(std::string_view topic) override;

  private:
    void make_shortcuts();
    void start_anew();
    void list_topics();
    void open_chosen();
    /// Opens a page of the help's folder; another address is not followed.
    void open(const QUrl &url);
    void mark_page(const QUrl &url);
    [[nodiscard]] bool has(const HelpTopic &topic, const QString &text);

    std::vector<std::filesystem::path> folders_;
    std::filesystem::path folder_;
    std::vector<HelpTopic> topics_;
    std::map<std::string, QString> texts_; ///< of the pages, once they were searched
    QLineEdit *search_;
    QListWidget *contents_;
    QTextBrowser *page_;
    QPushButton *back_;
    QPushButton *forward_;
    QPushButton *start_;
};

/// The help, made when somebody asks for it.
class Help final : public HelpViewer {
  public:
    explicit Help(std::vector<std::filesystem::path> folders) : folders_(std::move(folders)) {}

    std::string show(std::string_view topic) override {
        if (!window_)
            window_ = std::make_unique<HelpWindow>(folders_);
        return window_->show(topic);
    }

  private:
    std::vector<std::filesystem::path> folders_;
    std::unique_ptr<HelpWindow> window_;
};

} // namespace telvox::desktop
