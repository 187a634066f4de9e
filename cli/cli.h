// Subcommands of tyrograph-cli register themselves from their own files:
//
//   static CliCommand reg{"expr", "TEXT", "evaluate an integer expression", 10, RunExpr};
//
// `order` fixes their place in --help. A handler gets the arguments after the
// subcommand name and returns the process exit code (2 for bad usage).
//
// `details` (options and input formats, several lines) makes the dispatcher
// answer "SUBCOMMAND --help" and "-h" itself: it prints the usage line, the
// one-line help and the details, and exits 0. A subcommand without details
// answers --help in its own handler.
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
  const char *details;  // the --help text after the usage line; may be null
  CliCommand(const char *name, const char *usage, const char *help, int order, CliHandler run,
             const char *details = nullptr);
};

// All registered subcommands, sorted by `order`.
const std::vector<const CliCommand *> &CliCommands();
// Prints the usage to the given stream (stdout for --help, stderr on errors).
void CliPrintUsage(FILE *out);
// True when `args` hold "--help" or "-h".
bool CliHelpAsked(const std::vector<std::string> &args);
// A subcommand's own --help text: "usage: tyrograph-cli NAME USAGE", its
// one-line help and its details.
void CliPrintCommandHelp(const CliCommand &c, FILE *out);
