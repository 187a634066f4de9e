// Eval: a recursive-descent parser writing postfix code, then a small stack
// machine running it.
//
// Grammar, lowest precedence first (each binary level is left-associative):
//   or    := andx { '|' andx }
//   andx  := add { ('&' | '^') add }
//   add   := mul { ('+' | '-') mul }
//   mul   := unary { ('*' | '/' | '%') unary }
//   unary := ('+' | '-' | '~') or        -- the operand is the whole rest
//          | primary
//   primary := '(' or ')' | number
//
// A unary operator's operand is the whole rest of the expression, so "-2+3"
// is -(2+3) = -5 and "2*-3+1" is 2*-(3+1) = -8. Users' files rely on this
// reading; it stays. A leading 0 means octal ("010" is 8).
#include "base/qeval.h"

#include <cstdint>

#include "diag/qdebug.h"

namespace {

enum Token { T_END = 256, T_NUM = 257, T_NEG = 258, T_NOT = 259 };

struct Op {
  int code;
  int32_t value;
};

enum { MAX_CODE = 512, MAX_STACK = 40 };

// Process-wide parse state.
const char *g_text;
int g_pos;
int g_token;
int32_t g_value;
Op g_code[MAX_CODE];
int g_ncode;
int32_t g_stack[MAX_STACK];
int16_t g_depth;

void Emit(int code, int32_t value = 0) {
  if (g_ncode < MAX_CODE) g_code[g_ncode++] = {code, value};
}

int DigitValue(char c, int base) {
  int d;
  if (c >= '0' && c <= '9') d = c - '0';
  else if (c >= 'a' && c <= 'f') d = c - 'a' + 10;
  else if (c >= 'A' && c <= 'F') d = c - 'A' + 10;
  else return -1;
  return d < base ? d : -1;
}

void ReadDigits(int base) {
  uint32_t v = 0;
  for (int d; (d = DigitValue(g_text[g_pos], base)) >= 0; g_pos++) v = v * uint32_t(base) + uint32_t(d);
  g_value = int32_t(v);  // wraps in 32 bits
  g_token = T_NUM;
}

void Next() {
  while (g_text[g_pos] == ' ') g_pos++;
  char c = g_text[g_pos];
  if (!c) {
    g_token = T_END;
    return;
  }
  if (c == '#') {
    g_pos++;
    ReadDigits(2);
  } else if (c == '$') {
    g_pos++;
    ReadDigits(16);
  } else if (c == '0' && (g_text[g_pos + 1] == 'x' || g_text[g_pos + 1] == 'X')) {
    g_pos += 2;
    ReadDigits(16);
  } else if (c == '0') {
    ReadDigits(8);
  } else if (c >= '1' && c <= '9') {
    ReadDigits(10);
  } else {
    g_token = static_cast<unsigned char>(c);
    g_pos++;
  }
}

void ParseOr();

void ParsePrimary() {
  if (g_token == '(') {
    Next();
    ParseOr();
    if (g_token == ')') Next();
    else g_token = T_END;  // a missing ')' ends the parse
  } else if (g_token == T_NUM) {
    Emit(T_NUM, g_value);
    Next();
  } else {
    // Anything else where an operand belongs stops the parse; what was
    // parsed so far is the result.
    g_token = T_END;
  }
}

void ParseUnary() {
  int op = g_token;
  if (op == '+' || op == '-' || op == '~') {
    Next();
    ParseOr();
    if (op == '-') Emit(T_NEG);
    else if (op == '~') Emit(T_NOT);
    return;
  }
  ParsePrimary();
}

// One binary level: operand, then while the token is one of `ops`, the next
// operand and the operator.
void ParseLevel(void (*operand)(), const char *ops) {
  operand();
  for (;;) {
    int op = g_token;
    bool match = false;
    for (const char *o = ops; *o; o++) match |= op == *o;
    if (!match) return;
    Next();
    operand();
    Emit(op);
  }
}

void ParseMul() { ParseLevel(ParseUnary, "*/%"); }
void ParseAdd() { ParseLevel(ParseMul, "+-"); }
void ParseAnd() { ParseLevel(ParseAdd, "&^"); }
void ParseOr() { ParseLevel(ParseAnd, "|"); }

void Push(int32_t v) {
  if (g_depth >= MAX_STACK - 1) {  // full: the top slot is overwritten
    g_stack[MAX_STACK - 1] = v;
    g_depth = MAX_STACK - 1;
    return;
  }
  g_stack[g_depth++] = v;
}

int32_t Pop() { return g_depth > 0 ? g_stack[--g_depth] : 0; }  // empty: depth stays 0

int32_t Apply(int op, int32_t l, int32_t r) {
  uint32_t ul = uint32_t(l), ur = uint32_t(r);
  switch (op) {
    case '|': return int32_t(ul | ur);
    case '&': return int32_t(ul & ur);
    case '^': return int32_t(ul ^ ur);
    case '+': return int32_t(ul + ur);
    case '-': return int32_t(ul - ur);
    case '*': return int32_t(ul * ur);
    case '/': return (r == 0 || (l == INT32_MIN && r == -1)) ? (r == 0 ? 0 : l) : l / r;
    case '%': return (r == 0 || r == -1) ? 0 : l % r;
  }
  return 0;
}

int32_t Run() {
  g_depth = 0;
  for (int i = 0; i < g_ncode; i++) {
    const Op &o = g_code[i];
    if (o.code == T_NUM) {
      Push(o.value);
    } else if (o.code == T_NEG || o.code == T_NOT) {
      int32_t v = Pop();
      Push(o.code == T_NEG ? int32_t(0u - uint32_t(v)) : ~v);
    } else {
      int32_t r = Pop();
      int32_t l = Pop();
      Push(Apply(o.code, l, r));
    }
  }
  return g_depth > 0 ? g_stack[g_depth - 1] : 0;
}

}  // namespace

int Eval(const char *text) {
  if (!text) {
    QWARN("Eval() is passed 0-pointer\n");
    return 0;
  }
  g_text = text;
  g_pos = 0;
  g_ncode = 0;
  Next();
  if (g_token == T_END) return 0;
  ParseOr();
  return Run();
}
