// tyrograph-cli expr TEXT: the integer expression evaluator.
#include <cstdio>

#include "base/qeval.h"
#include "cli/cli.h"

static int RunExpr(const std::vector<std::string> &args) {
  if (args.size() != 1) {
    fprintf(stderr, "usage: tyrograph-cli expr TEXT\n");
    return 2;
  }
  printf("%d\n", Eval(args[0].c_str()));
  return 0;
}

static CliCommand reg{"expr", "TEXT", "evaluate an integer expression ($hex, #binary, 0octal)", 10, RunExpr};
