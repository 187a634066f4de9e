// Texts of the user interface that a language table may replace: a keyed
// lookup in the application's settings tree ("misc.ok", "misc.cancel"...)
// with the English text as the default.
#pragma once

#include <string>

// The text stored under `key` in the application's settings tree, or `def`
// when there is no application, no tree or no such key.
std::string QLangText(const char *key, const char *def);
