// Eval: integer expressions as typed by a user ("$ff+#101", "0x10|1", "2*3").
//
// Not re-entrant: the parse state is process-wide and used from one thread.
#pragma once

int Eval(const char *text);
