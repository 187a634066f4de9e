// Where the tool finds its data/ folder and its settings file.
//
// The base folder is, in this order:
//   1. $TYROGRAPH_HOME when it is set and not empty (tests use a scratch one);
//   2. the folder of the running executable, or the nearest of its parents,
//      that holds a data/ folder (so build/tool/tyrograph finds the source
//      tree's data/, and an installed copy finds the data/ beside it);
//   3. the current folder.
// The tool makes the base folder its working folder at start-up, so every
// relative path ("pacejka.ini", "data/cars/%s/car.ini", "reppac.txt") is
// resolved against it.
#pragma once

#include <string>

// The base folder without a trailing "/".
std::string BaseFolderFind();
// Folder holding `exePath`, or its nearest parent holding a data/ folder;
// empty when none does. Split out so it can be tested on scratch folders.
std::string BaseFolderFrom(const std::string &exePath);
// When `base`/pacejka.ini does not exist yet, copies the shipped defaults
// `base`/data/pacejka.ini there. False only when a copy was needed and failed.
bool BaseFolderSeedSettings(const std::string &base);
