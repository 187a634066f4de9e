// A fast PNG writer for RGB pictures: filter "Up" per row and zlib at a low
// level. Cairo's own writer lets libpng try every filter at the default
// level, which costs more than drawing the picture.
#pragma once

#include <cstdint>
#include <string>

// Writes wid x hgt pixels from Cairo's RGB24 layout (native 32-bit words
// 0x00RRGGBB, `stride` bytes a row) to `path`. False when the file cannot
// be written.
bool QPngWriteRgb24(const std::string &path, const uint8_t *data, int wid, int hgt, int stride);
