#include "path_data.h"

#include "input_error.h"
#include "scanner.h"

namespace tool {

namespace {

/// Reads one d attribute from its start to its end.
class PathDataReader {
 public:
  PathDataReader(std::string_view d, PathBuilder& path) : scanner_(d), path_(path) {}

  void Read() {
    scanner_.SkipSpace();
    if (scanner_.AtEnd() || scanner_.Rest() == "none") return;
    if (scanner_.Peek() != 'M' && scanner_.Peek() != 'm') scanner_.Fail("a path to begin with M or m");
    while (!scanner_.AtEnd()) {
      const char command = scanner_.Peek();
      relative_ = command >= 'a' && command <= 'z';
      if (!IsCommand(command)) scanner_.Fail("a path command");
      scanner_.Skip();
      scanner_.SkipSpace();
      Command(relative_ ? static_cast<char>(command - 'a' + 'A') : command);
      scanner_.SkipSpace();
    }
  }

 private:
  static bool IsCommand(char c) {
    return c != '\0' && std::string_view("MmLlHhVvCcSsQqTtAaZz").find(c) != std::string_view::npos;
  }

  /// One command with all its repetitions. After a move, further pairs are lines.
  void Command(char letter) {
    if (letter == 'Z') {
      path_.Close();
      last_ = 'Z';
      return;
    }
    do {
      Segment(letter);
      last_ = letter;
      if (letter == 'M') letter = 'L';
    } while (Another());
  }

  /// Whether another set of numbers follows; a comma promises one.
  bool Another() { return scanner_.SkipSeparator() || scanner_.AtNumber(); }

  void Segment(char letter) {
    const DPoint from = path_.Current();
    switch (letter) {
      case 'M':
        path_.MoveTo(Point());
        break;
      case 'L':
        path_.LineTo(Point());
        break;
      case 'H':
        path_.LineTo({scanner_.Number() + (relative_ ? from.x : 0), from.y});
        break;
      case 'V':
        path_.LineTo({from.x, scanner_.Number() + (relative_ ? from.y : 0)});
        break;
      case 'C': {
        const DPoint c1 = PointThen();
        Cubic(c1);
        break;
      }
      case 'S':
        Cubic(last_ == 'C' || last_ == 'S' ? Mirrored(from) : from);
        break;
      case 'Q': {
        handle_ = PointThen();
        path_.QuadraticTo(handle_, Point());
        break;
      }
      case 'T':
        handle_ = last_ == 'Q' || last_ == 'T' ? Mirrored(from) : from;
        path_.QuadraticTo(handle_, Point());
        break;
      case 'A':
        Arc();
        break;
      default:
        break;
    }
  }

  void Cubic(DPoint c1) {
    handle_ = PointThen();
    path_.CubicTo(c1, handle_, Point());
  }

  void Arc() {
    const double rx = NumberThen();
    const double ry = NumberThen();
    const double degrees = NumberThen();
    const bool largeArc = scanner_.Flag();
    scanner_.SkipSeparator();
    const bool sweep = scanner_.Flag();
    scanner_.SkipSeparator();
    path_.ArcTo(rx, ry, degrees, largeArc, sweep, Point());
  }

  DPoint Mirrored(DPoint from) const { return from + (from - handle_); }

  double NumberThen() {
    const double value = scanner_.Number();
    scanner_.SkipSeparator();
    return value;
  }
  DPoint Point() {
    const double x = NumberThen();
    const double y = scanner_.Number();
    if (!relative_) return {x, y};
    const DPoint from = path_.Current();
    return {from.x + x, from.y + y};
  }
  DPoint PointThen() {
    const DPoint p = Point();
    scanner_.SkipSeparator();
    return p;
  }

  Scanner scanner_;
  PathBuilder& path_;
  bool relative_ = false;
  /// The command before, which decides whether the last handle is mirrored.
  char last_ = '\0';
  DPoint handle_{0, 0};
};

}  // namespace

void ParsePathData(std::string_view d, PathBuilder& path) { PathDataReader(d, path).Read(); }

}  // namespace tool
