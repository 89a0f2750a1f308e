// Where a bundled layout keeps its settings: an environment variable of the process, which the
// user may set before starting the program and which the settings dialog rewrites. Being process
// state, the settings last for the session, across unloading and loading the layout again, and
// need no store of the plug-in's own.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "plugins/layoutsettings/SettingsSchema.h"

namespace vellum::layoutsettings {

class SettingsVariable {
  public:
    // `layout` names the layout in messages and titles; `schema` must outlive this object.
    SettingsVariable(std::string layout, std::string variable, const SettingsSchema& schema)
        : layout_(std::move(layout)), variable_(std::move(variable)), schema_(schema) {}

    // The variable's settings (the defaults where it names none, all of them when it is unset);
    // none, with `problem` set to the bad entry, when the schema refuses one.
    std::optional<SettingValues> read(std::string& problem) const;
    // As read(), but a bad entry is written to the console as
    // "LAYOUT: bad setting 'ENTRY' in VARIABLE".
    std::optional<SettingValues> readOrReport() const;
    // Sets the variable to describe(values). Not thread-safe (setenv): only for the GUI thread
    // while no layout runs.
    void write(const SettingValues& values) const;

    // The body of lyConfigure. On the GUI thread of a running wxWidgets program (when built with
    // the GUI): the settings dialog, whose OK writes the variable and whose Cancel leaves it.
    // Elsewhere (the command line, tests without a toolkit): the settings in use on the console,
    // "LAYOUT: NAME=VALUE ... (set VARIABLE to change)", or the bad entry.
    void configure() const;

  private:
    void configureHere() const;

    std::string layout_;
    std::string variable_;
    const SettingsSchema& schema_;
};

}  // namespace vellum::layoutsettings
