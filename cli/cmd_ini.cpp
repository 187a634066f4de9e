// tyrograph-cli ini FILE OP...: reads an info file and runs queries and
// changes on it, one output line per operation.
//
//   int KEY DEF      the integer getter's result ("%d")
//   float KEY DEF    the float getter's result ("%.9g")
//   string KEY DEF   the string getter's text as it is
//   bool KEY DEF     0 or 1
//   set KEY VALUE    1 or 0 (the setter's result)
//   delete KEY       1 or 0
//   count KEY        the number of children (comments not counted)
//   write OUT        1 or 0; writes without the overwrite question
//
// Changes stay in memory until a `write`: FILE itself is written only by
// `write FILE`, never behind the user's back when the command ends.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "base/qinfo.h"
#include "base/qstring.h"
#include "cli/cli.h"

namespace {

struct IniOp {
  const char *name;
  int argc;  // arguments after the operation's name
};
const IniOp kOps[] = {{"int", 2}, {"float", 2}, {"string", 2}, {"bool", 2},
                      {"set", 2}, {"delete", 1}, {"count", 1}, {"write", 1}};

const IniOp *FindOp(const std::string &name) {
  for (const IniOp &op : kOps)
    if (name == op.name) return &op;
  return nullptr;
}

// Checks the whole operation list before anything runs, so a typo at the end
// does not leave half the operations done.
bool CheckOps(const std::vector<std::string> &args) {
  for (size_t i = 1; i < args.size();) {
    const IniOp *op = FindOp(args[i]);
    if (!op) {
      fprintf(stderr, "tyrograph-cli ini: unknown operation '%s'\n", args[i].c_str());
      return false;
    }
    if (i + size_t(op->argc) >= args.size()) {
      fprintf(stderr, "tyrograph-cli ini: '%s' needs %d argument(s)\n", op->name, op->argc);
      return false;
    }
    i += 1 + size_t(op->argc);
  }
  return true;
}

void RunOp(QInfo &info, const std::string &op, const char *a, const char *b) {
  if (op == "int") {
    printf("%d\n", info.GetInt(a, atoi(b)));
  } else if (op == "float") {
    printf("%.9g\n", double(info.GetFloat(a, float(atof(b)))));
  } else if (op == "string") {
    qstring s;
    info.GetString(a, s, b);
    printf("%s\n", s.c_str());
  } else if (op == "bool") {
    printf("%d\n", info.GetBool(a, atoi(b) != 0) ? 1 : 0);
  } else if (op == "set") {
    printf("%d\n", info.SetString(a, b) ? 1 : 0);
  } else if (op == "delete") {
    printf("%d\n", info.Delete(a) ? 1 : 0);
  } else if (op == "count") {
    printf("%d\n", info.CountChildren(a));
  } else if (op == "write") {
    printf("%d\n", info.Write(a, false) ? 1 : 0);
  }
  fflush(stdout);  // keep the lines in order with the reports on stderr
}

int RunIni(const std::vector<std::string> &args) {
  if (args.empty()) {
    fprintf(stderr, "usage: tyrograph-cli ini FILE OP...\n");
    return 2;
  }
  if (args[0].size() > 1 && args[0][0] == '-') {
    fprintf(stderr, "tyrograph-cli ini: unknown option '%s'\n", args[0].c_str());
    return 2;
  }
  if (!CheckOps(args)) return 2;
  auto info = std::make_unique<QInfo>(args[0].c_str(), 0);
  for (size_t i = 1; i < args.size();) {
    const IniOp *op = FindOp(args[i]);
    const char *a = args[i + 1].c_str();
    const char *b = op->argc > 1 ? args[i + 2].c_str() : "";
    RunOp(*info, args[i], a, b);
    i += 1 + size_t(op->argc);
  }
  info->SetFlags(info->GetFlags() & ~QINFO_MODIFIED);
  return 0;
}

const char kDetails[] =
    "Reads FILE, an info file (a car.ini, pacejka.ini: \"key=value\" lines, \"name { ... }\"\n"
    "trees, ';' comments), and runs each OP in turn, printing one line per OP:\n"
    "  int KEY DEF      the key as an integer expression (DEF when absent)\n"
    "  float KEY DEF    the key as a number (\"%.9g\")\n"
    "  string KEY DEF   the key's text\n"
    "  bool KEY DEF     1 or 0\n"
    "  set KEY VALUE    1 when set, else 0\n"
    "  delete KEY       1 when deleted, else 0\n"
    "  count KEY        the number of children of KEY (comments not counted)\n"
    "  write OUT        1 when OUT was written, else 0 (OUT is overwritten)\n"
    "KEY is a dotted path (\"wheel0.pacejka.a0\"). Changes stay in memory: FILE itself\n"
    "changes only through \"write FILE\". An unknown OP is refused before any runs.\n";

CliCommand reg{"ini", "FILE OP...",
               "query/change an info file: int|float|string|bool KEY DEF, set KEY VAL, delete KEY, count KEY, "
               "write OUT",
               50, RunIni, kDetails};

}  // namespace
