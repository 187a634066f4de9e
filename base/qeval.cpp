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

int DigitValue(char c, int base) {
  int d;
  if (c >= '0' && c <= '9') d = c - '0';
  else if (c >= 'a' && c <= 'f') d = c - 'a' + 10;
  else if (c >= 'A' && c <= 'F') d = c - 'A' + 10;
  else return -1;
  return d < base ? d : -1;
}

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

// One evaluation: the parse state, the code and the machine's stack.
struct Machine {
  const char *text_ = nullptr;
  int pos_ = 0;
  int token_ = T_END;
  int32_t value_ = 0;
  Op code_[MAX_CODE];
  int ncode_ = 0;
  int32_t stack_[MAX_STACK];
  int16_t depth_ = 0;

  void Emit(int code, int32_t value = 0) {
    if (ncode_ < MAX_CODE) code_[ncode_++] = {code, value};
  }

  void ReadDigits(int base) {
    uint32_t v = 0;
    for (int d; (d = DigitValue(text_[pos_], base)) >= 0; pos_++) v = v * uint32_t(base) + uint32_t(d);
    value_ = int32_t(v);  // wraps in 32 bits
    token_ = T_NUM;
  }

  void Next() {
    while (text_[pos_] == ' ') pos_++;
    char c = text_[pos_];
    if (!c) {
      token_ = T_END;
      return;
    }
    if (c == '#') {
      pos_++;
      ReadDigits(2);
    } else if (c == '$') {
      pos_++;
      ReadDigits(16);
    } else if (c == '0' && (text_[pos_ + 1] == 'x' || text_[pos_ + 1] == 'X')) {
      pos_ += 2;
      ReadDigits(16);
    } else if (c == '0') {
      ReadDigits(8);
    } else if (c >= '1' && c <= '9') {
      ReadDigits(10);
    } else {
      token_ = static_cast<unsigned char>(c);
      pos_++;
    }
  }

  void ParsePrimary() {
    if (token_ == '(') {
      Next();
      ParseOr();
      if (token_ == ')') Next();
      else token_ = T_END;  // a missing ')' ends the parse
    } else if (token_ == T_NUM) {
      Emit(T_NUM, value_);
      Next();
    } else {
      // Anything else where an operand belongs stops the parse; what was
      // parsed so far is the result.
      token_ = T_END;
    }
  }

  void ParseUnary() {
    int op = token_;
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
  void ParseLevel(void (Machine::*operand)(), const char *ops) {
    (this->*operand)();
    for (;;) {
      int op = token_;
      bool match = false;
      for (const char *o = ops; *o; o++) match |= op == *o;
      if (!match) return;
      Next();
      (this->*operand)();
      Emit(op);
    }
  }

  void ParseMul() { ParseLevel(&Machine::ParseUnary, "*/%"); }
  void ParseAdd() { ParseLevel(&Machine::ParseMul, "+-"); }
  void ParseAnd() { ParseLevel(&Machine::ParseAdd, "&^"); }
  void ParseOr() { ParseLevel(&Machine::ParseAnd, "|"); }

  void Push(int32_t v) {
    if (depth_ >= MAX_STACK - 1) {  // full: the top slot is overwritten
      stack_[MAX_STACK - 1] = v;
      depth_ = MAX_STACK - 1;
      return;
    }
    stack_[depth_++] = v;
  }

  int32_t Pop() { return depth_ > 0 ? stack_[--depth_] : 0; }  // empty: depth stays 0


  int32_t Run() {
    depth_ = 0;
    for (int i = 0; i < ncode_; i++) {
      const Op &o = code_[i];
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
    return depth_ > 0 ? stack_[depth_ - 1] : 0;
  }
};

}  // namespace

int Eval(const char *text) {
  if (!text) {
    QWARN("Eval() is passed 0-pointer\n");
    return 0;
  }
  Machine m;
  m.text_ = text;
  m.Next();
  if (m.token_ == T_END) return 0;
  m.ParseOr();
  return m.Run();
}
