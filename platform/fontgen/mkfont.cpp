// mkfont: renders a system font into a texture font (.dtf + .tga).
//
//   mkfont <output name> [face] [pixel size] [first code] [last code] [texture size]
//
// The program's own UI font is Go Regular (Debian package fonts-go), whose
// l, I and 1 and whose 0 and O differ in shape, made with
//   mkfont data/fonts/eurostile11 /usr/share/fonts/fonts-go/Go-Regular.ttf 12 32 255 256
#include <cstdio>
#include <cstdlib>

#include "ui/dtexfont.h"

int main(int argc, char **argv) {
  if (argc < 2) {
    fprintf(stderr, "usage: mkfont <output name> [face] [pixel size] [first code] [last code] [texture size]\n");
    return 2;
  }
  const char *face = argc > 2 ? argv[2] : "Arial";
  int size = argc > 3 ? atoi(argv[3]) : 11;
  int first = argc > 4 ? atoi(argv[4]) : 32;
  int last = argc > 5 ? atoi(argv[5]) : 126;
  int tex = argc > 6 ? atoi(argv[6]) : 256;
  DTexFont font;
  if (!font.Create(face, size, first, last, argv[1], tex, tex)) return 1;
  printf("mkfont: wrote %s.dtf and %s.tga\n", argv[1], argv[1]);
  return 0;
}
