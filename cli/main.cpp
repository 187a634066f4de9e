// tyrograph-cli: the tyre model, curves and exports from the command line.
#include "cli/cli.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "diag/qdebug.h"

static std::vector<const CliCommand *> &Registry() {
  static std::vector<const CliCommand *> commands;
  return commands;
}

CliCommand::CliCommand(const char *n, const char *u, const char *h, int o, CliHandler r, const char *d)
    : name(n), usage(u), help(h), order(o), run(r), details(d) {
  auto &reg = Registry();
  reg.push_back(this);
  std::stable_sort(reg.begin(), reg.end(),
                   [](const CliCommand *a, const CliCommand *b) { return a->order < b->order; });
}

const std::vector<const CliCommand *> &CliCommands() { return Registry(); }

void CliPrintUsage(FILE *out) {
  fprintf(out, "usage: tyrograph-cli SUBCOMMAND [ARGS...]\n\nsubcommands:\n");
  for (const CliCommand *c : CliCommands()) {
    char head[128];
    snprintf(head, sizeof head, "%s %s", c->name, c->usage);
    // A usage too long for the column puts its description on the next line.
    if (strlen(head) > 44)
      fprintf(out, "  %s\n  %-44s %s\n", head, "", c->help);
    else
      fprintf(out, "  %-44s %s\n", head, c->help);
  }
  fprintf(out, "\n  --help                                       show this text\n");
  fprintf(out, "  --log FILE                                   also write the diagnostic log to FILE (and\n"
              "                                               debug traces to standard error)\n");
}

bool CliHelpAsked(const std::vector<std::string> &args) {
  for (const std::string &a : args)
    if (a == "--help" || a == "-h") return true;
  return false;
}

void CliPrintCommandHelp(const CliCommand &c, FILE *out) {
  fprintf(out, "usage: tyrograph-cli %s %s\n\n%s.\n", c.name, c.usage, c.help);
  if (c.details) fprintf(out, "\n%s", c.details);
}

// Positioned debug lines (a TIR import's "KPacejka:LoadFromTIRFile(...)")
// are traces for a developer, not news for the user of a command.
static int DropTrace(const char *, const char *) { return 0; }

// Takes "--log FILE" (or "--log=FILE") out of the arguments, wherever it
// stands: the diagnostic log goes to FILE, and debug traces to standard
// error. Without it there is no log file, no trace, and errors and warnings
// go to standard error only. False when FILE is missing.
static bool TakeLogOption(int *argc, char **argv) {
  const char *file = nullptr;
  int out = 1;
  for (int i = 1; i < *argc; i++) {
    if (!strcmp(argv[i], "--log")) {
      if (i + 1 >= *argc) {
        fprintf(stderr, "tyrograph-cli: --log needs a file name\n");
        return false;
      }
      file = argv[++i];
    } else if (!strncmp(argv[i], "--log=", 6)) {
      file = argv[i] + 6;
    } else {
      argv[out++] = argv[i];
    }
  }
  *argc = out;
  argv[out] = nullptr;
  if (file && *file) {
    qSetLogFileName(file);
  } else {
    qSetLogFileOff();
    qSetDebugHook(DropTrace);
  }
  return true;
}

int main(int argc, char **argv) {
  if (!TakeLogOption(&argc, argv)) return 2;
  if (argc < 2) {
    CliPrintUsage(stderr);
    return 2;
  }
  if (!strcmp(argv[1], "--help") || !strcmp(argv[1], "-h") || !strcmp(argv[1], "help")) {
    CliPrintUsage(stdout);
    return 0;
  }
  for (const CliCommand *c : CliCommands()) {
    if (strcmp(c->name, argv[1])) continue;
    std::vector<std::string> args(argv + 2, argv + argc);
    if (c->details && CliHelpAsked(args)) {
      CliPrintCommandHelp(*c, stdout);
      return 0;
    }
    return c->run(args);
  }
  fprintf(stderr, "tyrograph-cli: unknown subcommand '%s'\n\n", argv[1]);
  CliPrintUsage(stderr);
  return 2;
}
