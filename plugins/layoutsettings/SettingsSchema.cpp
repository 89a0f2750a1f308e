#include "plugins/layoutsettings/SettingsSchema.h"

#include <cassert>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace vellum::layoutsettings {

namespace {

std::vector<std::string> entries(const std::string& text) {
    std::vector<std::string> result;
    std::string current;
    for (char c : text) {
        if (c == ',' || c == ';' || c == ' ' || c == '\t' || c == '\n') {
            if (!current.empty())
                result.push_back(current);
            current.clear();
            continue;
        }
        current += c;
    }
    if (!current.empty())
        result.push_back(current);
    return result;
}

// The whole text as a finite number; none otherwise (also for leading blanks, which strtod would
// skip but which would split the entry in the variable).
std::optional<double> number(const std::string& text) {
    if (text.empty() || std::isspace(static_cast<unsigned char>(text[0])))
        return std::nullopt;
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (end != text.c_str() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::string joined(const std::vector<std::string>& words) {
    std::string result;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0)
            result += i + 1 == words.size() ? " or " : ", ";
        result += words[i];
    }
    return result;
}

}  // namespace

std::string Setting::refusal(const std::string& text) const {
    if (kind == Kind::Choice) {
        for (const std::string& choice : choices) {
            if (text == choice)
                return {};
        }
        return label + " must be " + joined(choices) + ".";
    }
    const auto value = number(text);
    const bool whole = kind == Kind::Whole;
    const bool fits =
        value && *value >= low && *value <= high && (!whole || *value == std::floor(*value));
    if (fits)
        return {};
    return label + " must be a " + (whole ? "whole number" : "number") + " from " +
           formatNumber(low) + " to " + formatNumber(high) + ".";
}

std::string Setting::range() const {
    if (kind == Kind::Choice)
        return joined(choices);
    return formatNumber(low) + " to " + formatNumber(high);
}

std::string Setting::canonical(const std::string& text) const {
    const auto value = kind == Kind::Choice ? std::nullopt : number(text);
    return value ? formatNumber(*value) : text;
}

const std::string& SettingValues::text(const std::string& name) const {
    const auto found = texts_.find(name);
    assert(found != texts_.end() && "SettingValues: a setting of the schema");
    return found->second;
}

double SettingValues::real(const std::string& name) const {
    return std::strtod(text(name).c_str(), nullptr);
}

const Setting* SettingsSchema::find(const std::string& name) const {
    for (const Setting& setting : settings_) {
        if (setting.name == name)
            return &setting;
    }
    return nullptr;
}

SettingValues SettingsSchema::defaults() const {
    SettingValues values;
    for (const Setting& setting : settings_)
        values.set(setting.name, setting.fallback);
    return values;
}

std::optional<SettingValues> SettingsSchema::parse(const std::string& text,
                                                   std::string& problem) const {
    SettingValues values = defaults();
    for (const std::string& entry : entries(text)) {
        const std::size_t equals = entry.find('=');
        const Setting* setting =
            equals == std::string::npos ? nullptr : find(entry.substr(0, equals));
        const std::string value = equals == std::string::npos ? "" : entry.substr(equals + 1);
        if (setting == nullptr || !setting->refusal(value).empty()) {
            problem = entry;
            return std::nullopt;
        }
        values.set(setting->name, setting->canonical(value));
    }
    return values;
}

std::string SettingsSchema::describe(const SettingValues& values) const {
    std::string result;
    for (const Setting& setting : settings_) {
        if (!result.empty())
            result += ' ';
        result += setting.name + "=" + values.text(setting.name);
    }
    return result;
}

std::string formatNumber(double value) {
    char text[32];
    if (value == std::floor(value) && std::fabs(value) < 1e15) {
        std::snprintf(text, sizeof text, "%.0f", value);
        return text;
    }
    for (int digits = 1; digits <= 17; ++digits) {
        std::snprintf(text, sizeof text, "%.*g", digits, value);
        if (std::strtod(text, nullptr) == value)
            break;
    }
    return text;
}

}  // namespace vellum::layoutsettings
