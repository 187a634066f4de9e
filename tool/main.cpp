// Tyrograph: the tyre-model viewer and editor.
#include "tool/mrun.h"

int main(int argc, char **argv) { TyroRun(argc, argv); }
