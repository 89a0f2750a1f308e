// The settings of force3d, read from the environment variable VELLUM_FORCE3D as entries
// NAME=VALUE separated by commas, semicolons or blanks, for example
// "length=3, iterations=80, mode=full", and edited in its settings dialog. Internal to force3d.
#pragma once

#include <optional>
#include <string>

#include "plugins/layoutsettings/SettingsSchema.h"
#include "plugins/layoutsettings/SettingsVariable.h"

namespace vellum::force3d {

enum class LayoutMode {
    Automatic,  // incremental when nearly every vertex has a position already, else full
    Full,       // always a fresh layout from seeded positions
};

struct ForceSettings {
    LayoutMode mode = LayoutMode::Automatic;
    double edgeLength = 2.0;      // the length an edge settles at ("length")
    int iterations = 25;          // at most this many steps on the full graph ("iterations")
    int incrementalSteps = 30;    // steps of an incremental pass ("steps")
    double theta = 1.2;           // Barnes-Hut opening ratio; 0 sums exactly ("theta")
    unsigned long long seed = 1;  // of the initial placement ("seed")

    // The names, ranges and defaults (the values above) of the settings.
    static const layoutsettings::SettingsSchema& schema();
    // VELLUM_FORCE3D, under that schema.
    static const layoutsettings::SettingsVariable& variable();
    // The settings of values the schema accepted.
    static ForceSettings from(const layoutsettings::SettingValues& values);

    // The settings in `text`; none, with `problem` naming the bad entry, when an entry is
    // unknown or its value out of range.
    static std::optional<ForceSettings> parse(const std::string& text, std::string& problem);
};

}  // namespace vellum::force3d
