#include "plugins/force3d/ForceSettings.h"

namespace vellum::force3d {

using layoutsettings::formatNumber;
using layoutsettings::Setting;
using layoutsettings::SettingsSchema;
using layoutsettings::SettingsVariable;
using layoutsettings::SettingValues;

namespace {

const char* modeName(LayoutMode mode) {
    return mode == LayoutMode::Full ? "full" : "auto";
}

SettingsSchema makeSchema() {
    const ForceSettings defaults;
    using Kind = Setting::Kind;
    return SettingsSchema({
        {"mode", "Mode", Kind::Choice, 0, 0, {"auto", "full"}, modeName(defaults.mode)},
        {"length", "Edge length", Kind::Real, 1e-3, 1e6, {}, formatNumber(defaults.edgeLength)},
        {"iterations",
         "Iterations per level",
         Kind::Whole,
         1,
         100000,
         {},
         formatNumber(defaults.iterations)},
        {"steps",
         "Incremental steps",
         Kind::Whole,
         1,
         100000,
         {},
         formatNumber(defaults.incrementalSteps)},
        {"theta",
         "Barnes-Hut theta (0: exact)",
         Kind::Real,
         0,
         10,
         {},
         formatNumber(defaults.theta)},
        {"seed", "Seed", Kind::Whole, 0, 4e9, {}, formatNumber(static_cast<double>(defaults.seed))},
    });
}

}  // namespace

const SettingsSchema& ForceSettings::schema() {
    static const SettingsSchema schema = makeSchema();
    return schema;
}

const SettingsVariable& ForceSettings::variable() {
    static const SettingsVariable variable("force3d", "VELLUM_FORCE3D", schema());
    return variable;
}

ForceSettings ForceSettings::from(const SettingValues& values) {
    ForceSettings settings;
    settings.mode = values.text("mode") == "full" ? LayoutMode::Full : LayoutMode::Automatic;
    settings.edgeLength = values.real("length");
    settings.iterations = static_cast<int>(values.real("iterations"));
    settings.incrementalSteps = static_cast<int>(values.real("steps"));
    settings.theta = values.real("theta");
    settings.seed = static_cast<unsigned long long>(values.real("seed"));
    return settings;
}

std::optional<ForceSettings> ForceSettings::parse(const std::string& text, std::string& problem) {
    const auto values = schema().parse(text, problem);
    if (!values)
        return std::nullopt;
    return from(*values);
}

}  // namespace vellum::force3d
