#pragma once
// The policy page: what the administrator's "APol" (machine key) and the user's own (user key)
// say about each feature of the job dialog, and whether the feature is shown. A "|" in the
// machine value locks the user's value out; the page then shows it and lets nobody change it.

#include "config/config_texts.h"
#include "platform/registry.h"

#include <array>
#include <string>

namespace pl::config {

// What one policy value says about a feature.
enum class PolicyChoice { NotSet, Hide, Show };

struct PolicyFeature {
    std::string_view disableCode;
    std::string_view enableCode;
    Txt label;
};
inline constexpr int FeatureCount = 9;
const std::array<PolicyFeature, FeatureCount>& policyFeatures();

class PolicyPage {
public:
    void load(const platform::Registry& registry);

    bool locked() const { return locked_; }
    const std::string& machineValue() const { return machine_; }
    PolicyChoice machineChoice(int feature) const;
    // The user's choices, as edited; changes are refused while the policy is locked.
    PolicyChoice userChoice(int feature) const { return user_[feature]; }
    bool setUserChoice(int feature, PolicyChoice choice);
    // Whether the job dialog shows the feature with the values as they now stand.
    bool shown(int feature) const;

    bool changed() const { return user_ != savedUser_; }
    // The user's value made of the choices ("disableemail,enablesaveas"); empty when none is set.
    std::string userValue() const;

private:
    std::string machine_;
    std::string userText_; // the user's value as read
    bool locked_ = false;
    std::array<PolicyChoice, FeatureCount> user_{};
    std::array<PolicyChoice, FeatureCount> savedUser_{};
};

} // namespace pl::config
