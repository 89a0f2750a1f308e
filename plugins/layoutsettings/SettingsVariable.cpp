#include "plugins/layoutsettings/SettingsVariable.h"

#include <cstdlib>
#include <exception>

#include "base/Console.h"

#ifdef VELLUM_SETTINGS_DIALOG
#include "plugins/layoutsettings/SettingsDialog.h"
#endif

namespace vellum::layoutsettings {

std::optional<SettingValues> SettingsVariable::read(std::string& problem) const {
    const char* text = std::getenv(variable_.c_str());
    return schema_.parse(text == nullptr ? std::string() : std::string(text), problem);
}

std::optional<SettingValues> SettingsVariable::readOrReport() const {
    std::string problem;
    auto values = read(problem);
    if (!values)
        console() << layout_ << ": bad setting '" << problem << "' in " << variable_ << "\n";
    return values;
}

void SettingsVariable::write(const SettingValues& values) const {
    ::setenv(variable_.c_str(), schema_.describe(values).c_str(), 1);
}

void SettingsVariable::configure() const {
    // Called through a C entry point: nothing may escape.
    try {
        configureHere();
    } catch (const std::exception& error) {
        console() << layout_ << ": settings failed: " << error.what() << "\n";
    }
}

void SettingsVariable::configureHere() const {
#ifdef VELLUM_SETTINGS_DIALOG
    if (SettingsDialog::canShow()) {
        std::string problem;
        const auto values = read(problem);
        const std::string note =
            values ? std::string()
                   : variable_ + " holds the bad setting '" + problem + "': defaults are shown.";
        const auto chosen = SettingsDialog::edit(layout_ + " settings", schema_,
                                                 values.value_or(schema_.defaults()), note);
        if (chosen)
            write(*chosen);
        return;
    }
#endif
    if (const auto values = readOrReport())
        console() << layout_ << ": " << schema_.describe(*values) << " (set " << variable_
                  << " to change)\n";
}

}  // namespace vellum::layoutsettings
