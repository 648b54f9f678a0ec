// Draws a picture of every operation that has a shape, by the operations themselves: pictures FOLDER writes
// NAME.svg for each function or class NAME. The reference shows them, see script/reference.

#include <cstdio>
#include <fstream>
#include <string>

#include "picture.h"

int main(int argc, char** argv) {
  if (argc != 2) return std::fputs("usage: pictures FOLDER\n", stderr), 2;
  int count = 0;
  for (const auto group : {pictures::CubicPictures(), pictures::EditPictures(), pictures::QueryPictures(),
                           pictures::PathPictures(), pictures::ShapePictures()}) {
    for (const pictures::Entry& entry : group) {
      pictures::Picture picture;
      entry.draw(picture);
      const std::string file = std::string(argv[1]) + '/' + entry.name + ".svg";
      std::ofstream out(file, std::ios::binary);
      out << picture.Svg();
      if (!out.flush()) return std::fprintf(stderr, "%s: cannot be written\n", file.c_str()), 2;
      ++count;
    }
  }
  std::printf("%d pictures in %s\n", count, argv[1]);
}
