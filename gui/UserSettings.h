// UserSettings: what the program remembers across runs for its user, in one small text file of
// the user's configuration folder ($XDG_CONFIG_HOME/vellum/settings.conf, ~/.config/vellum by
// default): the files opened or saved last, per kind and all together, and the last size of
// each kind of window. Every call reads or writes the file itself, so that frames of one run
// and runs one after the other see the same list.
#pragma once

#include <wx/gdicmn.h>
#include <wx/menu.h>

#include <optional>
#include <string>
#include <vector>

namespace vellum {

class UserSettings {
  public:
    // How many files a list keeps.
    static constexpr std::size_t kRecentCount = 9;

    explicit UserSettings(std::string fileName) : m_fileName(std::move(fileName)) {}

    // The file under the user's configuration folder, by the XDG rules.
    static std::string defaultFileName();
    const std::string& fileName() const { return m_fileName; }

    // Newest first; files that no longer exist are left out. `kind` names the list: "graphs",
    // "all", ...
    std::vector<std::string> recentFiles(const std::string& kind) const;
    // Puts the file (made absolute) at the front of the kind's list and of "all".
    void addRecentFile(const std::string& kind, const std::string& file);

    // The last size of a kind of window ("graph editor"), if one was kept.
    std::optional<wxSize> windowSize(const std::string& window) const;
    void setWindowSize(const std::string& window, const wxSize& size);

    // A choice kept under `key` ("interpreter/layout"); empty when none was.
    std::string choice(const std::string& key) const;
    void setChoice(const std::string& key, const std::string& value);

  private:
    std::string m_fileName;
};

// Fills a "Recent files" submenu: "&1 NAME   FOLDER" and so on, the items numbered from
// `firstId` with the whole path as their help text; "(none)", disabled, for an empty list.
void fillRecentMenu(wxMenu& menu, const std::vector<std::string>& files, int firstId);

}  // namespace vellum
