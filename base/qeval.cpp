// Placeholder until the evaluator lands.
int Eval(const char *) { return 0; }
