// Helpers for the QInfo tests: reading a text as a file and a one-line dump
// of a tree.
#pragma once

#include <memory>
#include <string>

#include "base/qinfo.h"
#include "base/qinfonode.h"
#include "tests/base/capture.h"
#include "tests/base/scratch.h"

namespace qinfotest {

using InfoTest = ScratchTest;

// "name=value", ";comment", "name~ref=value{children}", blank-separated.
inline std::string Dump(const QInfoNode *first) {
  std::string out;
  for (const QInfoNode *n = first; n; n = n->next) {
    if (!out.empty()) out += " ";
    if (n->kind == NODE_COMMENT) {
      out += std::string(";") + (n->value ? n->value : "");
      continue;
    }
    out += n->Name();
    if (n->reference) {
      qstring p;
      QInfo::GetFullPath(n->reference, p);
      out += std::string("~") + p.c_str();
    }
    if (n->value) out += std::string("=") + n->value;
    // Appended piece by piece: GCC 12 at -O3 warns falsely (-Wrestrict) about
    // a literal + std::string temporary.
    if (n->kind == NODE_TREE) {
      out += '{';
      out += Dump(n->firstChild);
      out += '}';
    }
  }
  return out;
}
inline std::string Dump(const QInfo &info) { return Dump(info.GetRoot()->firstChild); }

// Reads `text` as the info file `name` in the working folder.
inline std::unique_ptr<QInfo> ReadText(const std::string &text, unsigned flags = 0,
                                       const std::string &name = "t.ini") {
  WriteFile(name, text);
  return std::make_unique<QInfo>(name.c_str(), flags);
}

}  // namespace qinfotest
