// Shortening a text to a width: the middle gives way to "...", so the start
// and the end of a long file name or path both stay readable. The caller
// measures (pixels of its font, or characters).
#pragma once

#include <functional>
#include <string>

// `text` unchanged when `width(text)` <= `avail`; else its first and last
// characters around "..." (as many as fit, the end getting the extra one),
// never splitting a UTF-8 sequence. Just "..." (or less) when even one
// character on each side is too wide.
std::string QElideMiddle(const std::string &text, int avail, const std::function<int(const std::string &)> &width);

// The last part of a path ("/a/b/c.tir" -> "c.tir"); the text itself when
// it has no '/', or ends in one.
std::string QPathTail(const std::string &path);
