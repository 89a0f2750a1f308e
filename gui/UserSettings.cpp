#include "gui/UserSettings.h"

#include <wx/fileconf.h>
#include <wx/log.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

namespace vellum {
namespace {

// A config object over the file, written back when it goes; null when the folder cannot be made.
std::unique_ptr<wxFileConfig> open(const std::string& fileName) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(fileName).parent_path(), ignored);
    // A damaged file is read as far as it goes, without the toolkit's error box.
    wxLogNull quiet;
    auto config =
        std::make_unique<wxFileConfig>(wxEmptyString, wxEmptyString, wxString::FromUTF8(fileName),
                                       wxEmptyString, wxCONFIG_USE_LOCAL_FILE);
    return config;
}

wxString recentGroup(const std::string& kind) {
    return "/Recent/" + wxString::FromUTF8(kind) + "/";
}

// Keys may not hold "/": the window's name with blanks kept.
wxString windowKey(const std::string& window) {
    wxString key = wxString::FromUTF8(window);
    key.Replace("/", "_");
    return "/Windows/" + key;
}

}  // namespace

std::string UserSettings::defaultFileName() {
    const char* xdg = std::getenv("XDG_CONFIG_HOME");
    std::filesystem::path base;
    if (xdg != nullptr && *xdg == '/') {
        base = xdg;
    } else {
        const char* home = std::getenv("HOME");
        base = std::filesystem::path(home != nullptr ? home : ".") / ".config";
    }
    return (base / "vellum" / "settings.conf").string();
}

std::vector<std::string> UserSettings::recentFiles(const std::string& kind) const {
    std::unique_ptr<wxFileConfig> config = open(m_fileName);
    std::vector<std::string> files;
    for (std::size_t i = 1; i <= kRecentCount; ++i) {
        wxString file;
        if (!config->Read(recentGroup(kind) + wxString::Format("%zu", i), &file) || file.empty())
            continue;
        const std::string name = file.utf8_string();
        std::error_code ignored;
        if (std::filesystem::exists(name, ignored))
            files.push_back(name);
    }
    return files;
}

void UserSettings::addRecentFile(const std::string& kind, const std::string& file) {
    std::error_code error;
    std::string absolute = std::filesystem::absolute(file, error).lexically_normal().string();
    if (error)
        absolute = file;
    std::unique_ptr<wxFileConfig> config = open(m_fileName);
    for (const std::string& list : {kind, std::string("all")}) {
        std::vector<std::string> files{absolute};
        for (std::size_t i = 1; i <= kRecentCount; ++i) {
            wxString known;
            if (config->Read(recentGroup(list) + wxString::Format("%zu", i), &known) &&
                !known.empty() && known.utf8_string() != absolute && files.size() < kRecentCount)
                files.push_back(known.utf8_string());
        }
        config->DeleteGroup(recentGroup(list));
        for (std::size_t i = 0; i < files.size(); ++i)
            config->Write(recentGroup(list) + wxString::Format("%zu", i + 1),
                          wxString::FromUTF8(files[i]));
        if (kind == "all")
            break;
    }
    wxLogNull quiet;  // an unwritable folder: nothing is kept, nobody is interrupted
    config->Flush();
}

std::optional<wxSize> UserSettings::windowSize(const std::string& window) const {
    std::unique_ptr<wxFileConfig> config = open(m_fileName);
    long width = 0;
    long height = 0;
    if (!config->Read(windowKey(window) + "/Width", &width) ||
        !config->Read(windowKey(window) + "/Height", &height))
        return std::nullopt;
    // A size from a larger screen, or a damaged file, is no use.
    if (width < 100 || height < 100 || width > 10000 || height > 10000)
        return std::nullopt;
    return wxSize(static_cast<int>(width), static_cast<int>(height));
}

void UserSettings::setWindowSize(const std::string& window, const wxSize& size) {
    std::unique_ptr<wxFileConfig> config = open(m_fileName);
    config->Write(windowKey(window) + "/Width", static_cast<long>(size.GetWidth()));
    config->Write(windowKey(window) + "/Height", static_cast<long>(size.GetHeight()));
    wxLogNull quiet;  // an unwritable folder: nothing is kept, nobody is interrupted
    config->Flush();
}

std::string UserSettings::choice(const std::string& key) const {
    std::unique_ptr<wxFileConfig> config = open(m_fileName);
    wxString value;
    config->Read("/Choices/" + wxString::FromUTF8(key), &value);
    return value.utf8_string();
}

void UserSettings::setChoice(const std::string& key, const std::string& value) {
    std::unique_ptr<wxFileConfig> config = open(m_fileName);
    config->Write("/Choices/" + wxString::FromUTF8(key), wxString::FromUTF8(value));
    wxLogNull quiet;  // an unwritable folder: nothing is kept, nobody is interrupted
    config->Flush();
}

void fillRecentMenu(wxMenu& menu, const std::vector<std::string>& files, int firstId) {
    while (menu.GetMenuItemCount() > 0)
        menu.Destroy(menu.FindItemByPosition(0));
    if (files.empty()) {
        menu.Append(wxID_ANY, "(none)")->Enable(false);
        return;
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::filesystem::path path(files[i]);
        wxString name = wxString::FromUTF8(path.filename().string());
        wxString folder = wxString::FromUTF8(path.parent_path().string());
        // A "&" of the name is no mnemonic.
        name.Replace("&", "&&");
        folder.Replace("&", "&&");
        const wxString label = wxString::Format("&%zu %s   %s", i + 1, name, folder);
        menu.Append(firstId + static_cast<int>(i), label, wxString::FromUTF8(files[i]));
    }
}

}  // namespace vellum
