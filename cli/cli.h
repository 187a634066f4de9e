// Subcommands of tyrograph-cli register themselves from their own files:
//
//   static CliCommand reg{"expr", "TEXT", "evaluate an integer expression", 10, RunExpr};
//
// `order` fixes their place in --help. A handler gets the arguments after the
// subcommand name and returns the process exit code (2 for bad usage).
#pragma once

#include <cstdio>
#include <string>
#include <vector>

typedef int (*CliHandler)(const std::vector<std::string> &args);

struct CliCommand {
  const char *name;
  const char *usage;  // arguments, e.g. "FILE OP..."
  const char *help;   // one line
  int order;
  CliHandler run;
  CliCommand(const char *name, const char *usage, const char *help, int order, CliHandler run);
};

// All registered subcommands, sorted by `order`.
const std::vector<const CliCommand *> &CliCommands();
// Prints the usage to the given stream (stdout for --help, stderr on errors).
void CliPrintUsage(FILE *out);
