// tyrograph-cli: the tyre model, curves and exports from the command line.
#include "cli/cli.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

static std::vector<const CliCommand *> &Registry() {
  static std::vector<const CliCommand *> commands;
  return commands;
}

CliCommand::CliCommand(const char *n, const char *u, const char *h, int o, CliHandler r)
    : name(n), usage(u), help(h), order(o), run(r) {
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
}

int main(int argc, char **argv) {
  if (argc < 2) {
    CliPrintUsage(stderr);
    return 2;
  }
  if (!strcmp(argv[1], "--help") || !strcmp(argv[1], "-h") || !strcmp(argv[1], "help")) {
    CliPrintUsage(stdout);
    return 0;
  }
  for (const CliCommand *c : CliCommands()) {
    if (!strcmp(c->name, argv[1])) return c->run(std::vector<std::string>(argv + 2, argv + argc));
  }
  fprintf(stderr, "tyrograph-cli: unknown subcommand '%s'\n\n", argv[1]);
  CliPrintUsage(stderr);
  return 2;
}
