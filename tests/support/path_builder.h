#pragma once
// Paths for tests: written in SVG syntax, printed in SVG syntax when a test fails.
//
//   ParsePath<tagPOINT>("M0,0 L10,0 C10,5 5,10 0,10 Z")
//
// M x,y        starts a subpath          L x,y            a line
// C x,y x,y x,y  a cubic                 Z                closes the subpath: a line to the start is added
// when
//                                                         the ends differ, then both ends get the closed flag
// Lower-case letters after a node change the byte of that node: e enabled, s smooth, y symmetric, l letter,
// n no user flag. On-curve nodes have the user flag (but a closed last node), control points do not.

#include <cstdlib>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/node_type.h"
#include "lumo/point_types.h"

inline void PrintTo(const tagPOINT& p, std::ostream* out) { *out << "(" << p.x << "," << p.y << ")"; }
inline void PrintTo(const NODETYPE& type, std::ostream* out) {
  *out << "0x" << std::hex << int{type.value} << std::dec;
}
namespace TavMath {
inline void PrintTo(const DPoint& p, std::ostream* out) { *out << "(" << p.x << "," << p.y << ")"; }
inline void PrintTo(const DVector& v, std::ostream* out) { *out << "<" << v.x << "," << v.y << ">"; }
}  // namespace TavMath

namespace test {

using TavMath::DPoint;
using TavMath::DVector;

/// The two parallel arrays of a path.
template <class T>
struct Path {
  std::vector<T> points;
  std::vector<NODETYPE> types;

  int count() const { return static_cast<int>(points.size()); }
  bool empty() const { return points.empty(); }
  /// The node of an index as the library counts.
  T& point(int k) { return points[static_cast<std::size_t>(k)]; }
  const T& point(int k) const { return points[static_cast<std::size_t>(k)]; }
  NODETYPE& type(int k) { return types[static_cast<std::size_t>(k)]; }
  const NODETYPE& type(int k) const { return types[static_cast<std::size_t>(k)]; }
  void Resize(int n) {
    points.resize(static_cast<std::size_t>(n));
    types.resize(static_cast<std::size_t>(n));
  }
  void Add(NODETYPE type, T point) {
    types.push_back(type);
    points.push_back(point);
  }
  void Add(const Path& other) {
    points.insert(points.end(), other.points.begin(), other.points.end());
    types.insert(types.end(), other.types.begin(), other.types.end());
  }
  friend bool operator==(const Path& a, const Path& b) {
    return a.points == b.points && a.Bytes() == b.Bytes();
  }
  std::vector<int> Bytes() const { return {types.begin(), types.end()}; }
};
/// A path as the functions over arrays take it: points, types, count.
#define LUMO_ARRAYS(path) (path).points.data(), (path).types.data(), (path).count()
using IntPath = Path<tagPOINT>;
using DoublePath = Path<DPoint>;

template <class T>
T MakePoint(double x, double y) {
  return {static_cast<decltype(T::x)>(x), static_cast<decltype(T::y)>(y)};
}

template <class T>
DPoint AsDouble(const T& p) {
  return {static_cast<double>(p.x), static_cast<double>(p.y)};
}

/// SVG path data. A node that breaks the rules is printed as ?0xNN x,y.
template <class T>
std::string ToSvg(const T* points, const NODETYPE* types, int count) {
  std::ostringstream out;
  out.precision(17);
  for (int k = 0; k < count; ++k) {
    const NODETYPE type = types[k];
    const auto point = [&](int at) { out << points[at].x << ',' << points[at].y << ' '; };
    if (type.IsMove() || (type.IsLine() && k > 0)) {
      out << (type.IsMove() ? 'M' : 'L');
      point(k);
    } else if (type.IsControl() && k > 0 && k + 2 < count && types[k + 1].IsControl() &&
               types[k + 2].IsCurve()) {
      out << 'C';
      for (int end = k + 2; k < end; ++k) point(k);
      point(k);
    } else {
      out << "?0x" << std::hex << int{type.value} << std::dec << ' ';
      point(k);
    }
    if (types[k].IsClosed() && !types[k].IsMove()) out << "Z ";
  }
  return out.str();
}
template <class T>
std::string ToSvg(const Path<T>& path) {
  return ToSvg(path.points.data(), path.types.data(), path.count());
}

/// SVG syntax, then the bytes.
template <class T>
void PrintTo(const Path<T>& path, std::ostream* out) {
  *out << ToSvg(path) << "[" << std::hex;
  for (const NODETYPE type : path.types) *out << ' ' << int{type.value};
  *out << std::dec << " ]";
}
template <class T>
std::ostream& operator<<(std::ostream& out, const Path<T>& path) {
  PrintTo(path, &out);
  return out;
}

namespace detail {

template <class T>
class PathParser {
 public:
  explicit PathParser(std::string_view text) : text_(text) {}

  Path<T> Parse() {
    for (;;) {
      while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\n')) ++at_;
      if (at_ == text_.size()) return std::move(path_);
      Command(text_[at_++]);
    }
  }

 private:
  void Command(char letter) {
    switch (letter) {
      case 'M':
        start_ = path_.points.size();
        return path_.Add(NODETYPE::kMove | NODETYPE::kUser, Point());
      case 'L':
        return path_.Add(NODETYPE::kLine | NODETYPE::kUser, Point());
      case 'C':
        path_.Add(NODETYPE::kControl, Point());
        path_.Add(NODETYPE::kControl, Point());
        return path_.Add(NODETYPE::kCurve | NODETYPE::kUser, Point());
      case 'Z':
        return Close();
      case 'e':
        return Last().Set(NODETYPE::kEnabled, true);
      case 's':
        return Last().SetContinuity(ContinuityType::smooth);
      case 'y':
        return Last().SetContinuity(ContinuityType::symmetric);
      case 'l':
        return Last().Set(NODETYPE::kLetter, true);
      case 'n':
        return Last().Set(NODETYPE::kUser, false);
      default:
        throw std::invalid_argument("path syntax: " + std::string(text_));
    }
  }

  void Close() {
    if (path_.empty()) throw std::invalid_argument("Z without a subpath");
    if (path_.points.back() != path_.points[start_])
      path_.Add(NODETYPE::kLine | NODETYPE::kUser, T(path_.points[start_]));
    path_.types[start_].Set(NODETYPE::kClosed, true);
    Last().Set(NODETYPE::kClosed, true);
    if (path_.points.size() - 1 > start_) Last().Set(NODETYPE::kUser, false);
  }

  NODETYPE& Last() {
    if (path_.empty()) throw std::invalid_argument("a flag without a node");
    return path_.types.back();
  }

  T Point() {
    const double x = Number();
    return MakePoint<T>(x, Number());
  }
  double Number() {
    while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == ',')) ++at_;
    const std::string digits(text_.substr(at_, text_.find_first_not_of("+-.0123456789eE", at_) - at_));
    char* end = nullptr;
    const double value = std::strtod(digits.c_str(), &end);
    if (end == digits.c_str()) throw std::invalid_argument("number expected: " + std::string(text_));
    at_ += static_cast<std::size_t>(end - digits.c_str());
    return value;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t start_ = 0;
  Path<T> path_;
};

}  // namespace detail

template <class T>
Path<T> ParsePath(std::string_view text) {
  return detail::PathParser<T>(text).Parse();
}

/// The same path with points of the other type (towards integers: truncated).
template <class To, class From>
Path<To> ConvertPath(const Path<From>& path) {
  Path<To> out{{}, path.types};
  for (const From& p : path.points) out.points.push_back(MakePoint<To>(AsDouble(p).x, AsDouble(p).y));
  return out;
}

}  // namespace test
