#include "ui/qfilebrowse.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

#include "diag/qdebug.h"
#include "ui/qfiledlg.h"

namespace fs = std::filesystem;

namespace {
bool LessNoCase(const QBrowseEntry &a, const QBrowseEntry &b) {
  return std::lexicographical_compare(a.name.begin(), a.name.end(), b.name.begin(), b.name.end(), [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) < std::tolower(static_cast<unsigned char>(y));
  });
}
}  // namespace

std::vector<QBrowseEntry> QBrowseList(const std::string &dir, const std::string &pattern) {
  std::vector<QBrowseEntry> folders, files;
  std::error_code ec;
  fs::path at = fs::absolute(dir, ec);
  bool root = !ec && at.has_root_path() && at == at.root_path();
  fs::directory_iterator it(dir, ec);
  if (ec) {
    QWARN("Can't list folder '%s': %s", dir.c_str(), ec.message().c_str());
  } else {
    for (; it != fs::directory_iterator(); it.increment(ec)) {
      if (ec) break;
      std::string name = it->path().filename().string();
      if (name.empty() || name[0] == '.') continue;
      std::error_code ec2;
      if (it->is_directory(ec2)) {
        folders.push_back({name, true});
      } else if (QDlgFileMatches(pattern, name)) {
        files.push_back({name, false});
      }
    }
  }
  std::sort(folders.begin(), folders.end(), LessNoCase);
  std::sort(files.begin(), files.end(), LessNoCase);
  std::vector<QBrowseEntry> out;
  if (!root) out.push_back({"..", true});
  out.insert(out.end(), folders.begin(), folders.end());
  out.insert(out.end(), files.begin(), files.end());
  return out;
}

QBrowseAction QBrowsePick(const std::string &dir, const std::string &name, bool save, std::string *path) {
  fs::path full = fs::path(name).is_absolute() ? fs::path(name) : fs::path(dir) / name;
  full = full.lexically_normal();
  if (path) *path = full.string();
  std::error_code ec;
  if (name.empty()) return QBrowseAction::Reject;
  if (fs::is_directory(full, ec)) return QBrowseAction::EnterFolder;
  bool exists = fs::exists(full, ec);
  if (save) return exists ? QBrowseAction::AskOverwrite : QBrowseAction::Choose;
  return exists ? QBrowseAction::Choose : QBrowseAction::Reject;
}
