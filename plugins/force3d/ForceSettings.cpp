#include "plugins/force3d/ForceSettings.h"

#include <cstdlib>
#include <sstream>
#include <vector>

namespace vellum::force3d {

namespace {

constexpr const char* kVariable = "VELLUM_FORCE3D";

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

// The whole text as a number within [low, high]; none otherwise.
std::optional<double> number(const std::string& text, double low, double high) {
    if (text.empty())
        return std::nullopt;
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (end != text.c_str() + text.size() || !(value >= low && value <= high))
        return std::nullopt;
    return value;
}

bool setReal(const std::string& text, double low, double high, double& target) {
    const auto value = number(text, low, high);
    if (value)
        target = *value;
    return value.has_value();
}

template <typename Whole>
bool setWhole(const std::string& text, double low, double high, Whole& target) {
    const auto value = number(text, low, high);
    if (!value || *value != static_cast<double>(static_cast<long long>(*value)))
        return false;
    target = static_cast<Whole>(*value);
    return true;
}

bool setMode(const std::string& text, LayoutMode& target) {
    if (text != "auto" && text != "full")
        return false;
    target = text == "full" ? LayoutMode::Full : LayoutMode::Automatic;
    return true;
}

bool apply(const std::string& name, const std::string& value, ForceSettings& settings) {
    if (name == "mode")
        return setMode(value, settings.mode);
    if (name == "length")
        return setReal(value, 1e-3, 1e6, settings.edgeLength);
    if (name == "theta")
        return setReal(value, 0.0, 10.0, settings.theta);
    if (name == "iterations")
        return setWhole(value, 1, 100000, settings.iterations);
    if (name == "steps")
        return setWhole(value, 1, 100000, settings.incrementalSteps);
    if (name == "seed")
        return setWhole(value, 0, 4e9, settings.seed);
    return false;
}

}  // namespace

std::optional<ForceSettings> ForceSettings::parse(const std::string& text, std::string& problem) {
    ForceSettings settings;
    for (const std::string& entry : entries(text)) {
        const std::size_t equals = entry.find('=');
        if (equals == std::string::npos ||
            !apply(entry.substr(0, equals), entry.substr(equals + 1), settings)) {
            problem = entry;
            return std::nullopt;
        }
    }
    return settings;
}

std::optional<ForceSettings> ForceSettings::fromEnvironment(std::string& problem) {
    const char* text = std::getenv(kVariable);
    return parse(text == nullptr ? std::string() : std::string(text), problem);
}

std::string ForceSettings::describe() const {
    std::ostringstream out;
    out << "mode=" << (mode == LayoutMode::Full ? "full" : "auto") << " length=" << edgeLength
        << " iterations=" << iterations << " steps=" << incrementalSteps << " theta=" << theta
        << " seed=" << seed;
    return out.str();
}

}  // namespace vellum::force3d
