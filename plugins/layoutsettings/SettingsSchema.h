// The settings of a bundled layout as text entries NAME=VALUE: which names there are, the values
// each takes, its default, and why a value is refused. One table serves both the environment
// variable the layout reads and the dialog that edits it, so the two always agree.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vellum::layoutsettings {

struct Setting {
    enum class Kind { Real, Whole, Choice };

    std::string name;   // NAME in the variable
    std::string label;  // beside its field in the dialog
    Kind kind = Kind::Real;
    double low = 0.0;  // Real and Whole: the values allowed, bounds included
    double high = 0.0;
    std::vector<std::string> choices;  // Choice: the words allowed
    std::string fallback;              // the default, as text

    // Empty when `text` is a value of this setting; else one sentence saying what it takes.
    std::string refusal(const std::string& text) const;
    // What the setting takes, briefly ("1 to 100000", "auto or full").
    std::string range() const;
    // An accepted value in its usual spelling: numbers as formatNumber() writes them ("1e3" is
    // "1000"), words as they are.
    std::string canonical(const std::string& text) const;
};

// The value of every setting of a schema, as text that the schema accepts.
class SettingValues {
  public:
    const std::string& text(const std::string& name) const;
    double real(const std::string& name) const;
    void set(const std::string& name, std::string text) { texts_[name] = std::move(text); }

  private:
    std::map<std::string, std::string> texts_;
};

class SettingsSchema {
  public:
    explicit SettingsSchema(std::vector<Setting> settings) : settings_(std::move(settings)) {}

    const std::vector<Setting>& settings() const { return settings_; }
    const Setting* find(const std::string& name) const;
    SettingValues defaults() const;

    // The defaults overridden by the entries of `text`, separated by commas, semicolons or
    // blanks. None, with `problem` set to the entry, when an entry has no "=", names no setting
    // or holds a refused value.
    std::optional<SettingValues> parse(const std::string& text, std::string& problem) const;
    // Every setting in table order, "NAME=VALUE" joined by blanks: what parse() reads back.
    std::string describe(const SettingValues& values) const;

  private:
    std::vector<Setting> settings_;
};

// The shortest text that reads back as exactly `value`; whole numbers without an exponent
// ("2", "0.1", "4000000000").
std::string formatNumber(double value);

}  // namespace vellum::layoutsettings
