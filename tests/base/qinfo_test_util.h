// Helpers for the QInfo tests: scratch files, a canonical dump of a tree and
// capture of the reports.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "base/qinfo.h"
#include "base/qinfonode.h"
#include "ui/diag/qdebug.h"

namespace qinfotest {

// Each test runs in a fresh scratch folder (its working directory), so file
// names in messages are short and fixed; the folder is removed afterwards.
class InfoTest : public testing::Test {
 protected:
  void SetUp() override {
    char tmpl[] = "/tmp/qinfo_test_XXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    dir_ = tmpl;
    old_ = std::filesystem::current_path();
    std::filesystem::current_path(dir_);
  }
  void TearDown() override {
    std::filesystem::current_path(old_);
    std::filesystem::remove_all(dir_);
  }
  std::string dir_;

 private:
  std::filesystem::path old_;
};

inline void WriteFile(const std::string &path, const std::string &bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string ReadFile(const std::string &path) {
  std::ifstream f(path, std::ios::binary);
  std::stringstream s;
  s << f.rdbuf();
  return s.str();
}

// The tree as one line: keys "name=value" (a bare name without "="),
// comments ";text", groups "name~ref=value{children}", deleted nodes
// prefixed by "!". Siblings are separated by one blank.
inline std::string Dump(const QInfoNode *first) {
  std::string out;
  for (const QInfoNode *n = first; n; n = n->next) {
    if (!out.empty()) out += " ";
    if (n->flags & NODEF_DELETED) out += "!";
    if (n->kind == NODE_COMMENT) {
      out += ";";
      out += n->value ? n->value : "";
      continue;
    }
    out += n->Name();
    if (n->reference) {
      qstring p;
      QInfo::GetFullPath(n->reference, p);
      out += "~";
      out += p.c_str();
    }
    if (n->value) out += std::string("=") + n->value;
    if (n->kind == NODE_TREE) out += "{" + Dump(n->firstChild) + "}";
  }
  return out;
}
inline std::string Dump(const QInfo &info) { return Dump(info.GetRoot()->firstChild); }

// Collects errors, warnings and debug output through the reporters' hooks
// for the lifetime of the object ("E: ", "W: ", "D: " before each message).
class Reports {
 public:
  Reports() {
    active() = this;
    oldErr_ = qSetErrorHook([](const char *, const char *m) { return Add("E: ", m); });
    oldWarn_ = qSetWarnHook([](const char *, const char *m) { return Add("W: ", m); });
    oldDbg_ = qSetDebugHook([](const char *, const char *m) { return Add("D: ", m); });
  }
  ~Reports() {
    qSetErrorHook(oldErr_);
    qSetWarnHook(oldWarn_);
    qSetDebugHook(oldDbg_);
    active() = nullptr;
  }
  const std::vector<std::string> &All() const { return lines_; }
  // The reports without their trailing newline, joined by " | ".
  std::string Joined() const {
    std::string s;
    for (const std::string &l : lines_) s += (s.empty() ? "" : " | ") + l;
    return s;
  }
  void Clear() { lines_.clear(); }

 private:
  static Reports *&active() {
    static Reports *r;
    return r;
  }
  static int Add(const char *tag, const char *m) {
    std::string s = m;
    while (!s.empty() && s.back() == '\n') s.pop_back();
    if (active()) active()->lines_.push_back(tag + s);
    return 0;
  }
  std::vector<std::string> lines_;
  QReportHook oldErr_, oldWarn_, oldDbg_;
};

// Reads `text` as the info file `name` in the working folder.
inline std::unique_ptr<QInfo> ReadText(const std::string &text, unsigned flags = 0,
                                       const std::string &name = "t.ini") {
  WriteFile(name, text);
  return std::make_unique<QInfo>(name.c_str(), flags);
}

}  // namespace qinfotest
