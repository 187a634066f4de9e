// Checks on measured data before a fit, for the mistakes a rig file makes
// most often: loads with the wrong sign (SAE axes), angles in degrees read
// as radians, slip ratios in percent. Each problem names its likely cause
// and the option that fixes it.
#pragma once

#include <string>
#include <vector>

#include "tyre/kmeasured.h"

// Limits beyond which a value is not taken as what it claims to be.
constexpr double KPLAUSIBLE_ALPHA_MAX = 1.0;  // rad (57°)
constexpr double KPLAUSIBLE_GAMMA_MAX = 0.5;  // rad (29°)
constexpr double KPLAUSIBLE_KAPPA_MAX = 1.5;  // a slip ratio

// Appends one message per problem to `problems`; true when there is none.
bool KPlausibleCheck(const KMeasuredData &data, std::vector<std::string> *problems);
