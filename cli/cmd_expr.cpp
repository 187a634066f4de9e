// tyrograph-cli expr TEXT: the integer expression evaluator.
#include <cctype>
#include <cstdio>

#include "base/qeval.h"
#include "cli/cli.h"

// "-x" or "--name": an option, which expr has none of (an expression may
// start with '-', but never with a letter after it).
static bool LooksLikeOption(const std::string &a) {
  size_t i = a.rfind("--", 0) == 0 ? 2 : a.rfind('-', 0) == 0 ? 1 : 0;
  return i > 0 && i < a.size() && isalpha(static_cast<unsigned char>(a[i]));
}

static int RunExpr(const std::vector<std::string> &args) {
  if (args.size() == 1 && LooksLikeOption(args[0])) {
    fprintf(stderr, "tyrograph-cli expr: unknown option '%s'\n", args[0].c_str());
    return 2;
  }
  if (args.size() != 1) {
    fprintf(stderr, "usage: tyrograph-cli expr TEXT\n");
    return 2;
  }
  printf("%d\n", Eval(args[0].c_str()));
  return 0;
}

static const char kDetails[] =
    "Prints the value of TEXT as a 32-bit integer, as info files read their integer keys.\n"
    "\n"
    "TEXT: numbers in decimal, $hex, #binary or 0octal (a leading 0: \"010\" is 8);\n"
    "  operators, lowest precedence first: |, & ^, + -, * / %, and parentheses.\n"
    "  A unary -, + or ~ takes the whole rest of the text: \"-2+3\" is -5.\n"
    "  Division by zero gives 0; text that is no expression gives 0.\n";

static CliCommand reg{"expr", "TEXT", "evaluate an integer expression ($hex, #binary, 0octal)", 10, RunExpr,
                      kDetails};
