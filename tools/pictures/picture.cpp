#include "picture.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

namespace pictures {

namespace {

/// In pixels, as are the margins that lines and nodes need around what they mark.
constexpr double kPanelWidth = 200, kPanelHeight = 164, kCaption = 18, kMargin = 4;
constexpr double kPixel = kUnit / 2;

std::string Number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", value == 0 ? 0.0 : value);
  std::string number = text;
  number.erase(number.find_last_not_of('0') + 1);
  if (number.back() == '.') number.pop_back();
  return number == "-0" ? "0" : number;
}

std::string X(double x) { return Number(x / kPixel); }
std::string Y(double y) { return Number(kPanelHeight - kMargin - y / kPixel); }

std::string Data(const Path& path) {
  std::string data;
  for (std::size_t i = 0; i < path.GetPointCount(); ++i) {
    const NODETYPE type = path.GetNodeType(i);
    if (type.IsMove()) data += 'M';
    if (type.IsLine()) data += 'L';
    if (type.IsControl()) data += path.GetNodeType(i - 1).IsControl() ? ' ' : 'C';
    if (type.IsCurve()) data += ' ';
    data += X(path.GetPoint(i).x) + ' ' + Y(path.GetPoint(i).y);
    if (type.IsClosed() && !type.IsMove()) data += 'Z';
  }
  return data;
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '<') {
      escaped += "&lt;";
    } else if (c == '&') {
      escaped += "&amp;";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

}  // namespace

DPoint At(double x, double y) { return {x * kUnit, y * kUnit}; }

Path Parse(std::string_view data) {
  Path path;
  DPoint start{0, 0};
  std::istringstream in{std::string(data)};
  const auto point = [&in] {
    double x = 0, y = 0;
    in >> x >> y;
    return At(x, y);
  };
  for (char verb = 0; in >> verb;) {
    if (verb == 'M') {
      path.MoveTo(start = point());
    } else if (verb == 'L') {
      path.LineTo(point());
    } else if (verb == 'C') {
      const DPoint a = point(), b = point(), end = point();
      path.CubicTo(a, b, end);
    } else {
      path.CloseLastSubpathWithOptionalLine();
    }
  }
  return path;
}

Path Select(Path path, std::initializer_list<std::size_t> nodes) {
  for (const std::size_t node : nodes) path.SetEnabled(node, true);
  return path;
}

Path Smooth(Path path, std::initializer_list<std::size_t> nodes, ContinuityType continuity) {
  for (const std::size_t node : nodes) path.SetCont(node, continuity);
  return path;
}

Path Edited(Path path, std::size_t room, const std::function<int(DPoint*, NODETYPE*, int)>& edit) {
  const Path before = path;
  const std::size_t count = path.GetPointCount();
  const auto buffer = path.GetBuffer(count + room);
  const int after = edit(buffer.points, buffer.types, static_cast<int>(count));
  if (after < 0) return before;
  path.ReleaseBuffer(static_cast<std::size_t>(after));
  return path;
}

Picture& Picture::Panel(std::string_view caption) {
  panels_.push_back({Escaped(caption), {}});
  return *this;
}

Picture& Picture::Fill(const Path& path, const char* colour) {
  drawn_.Add(path.GetTightBBox());
  Body() += "<path fill=\"" + std::string(colour) + "\" d=\"" + Data(path) + "\"/>\n";
  return *this;
}

Picture& Picture::Line(const Path& path, const char* colour, double width, bool dashed) {
  drawn_.Add(path.GetTightBBox());
  Body() += "<path fill=\"none\" stroke=\"" + std::string(colour) + "\" stroke-width=\"" + Number(width) +
            "\"" + (dashed ? " stroke-dasharray=\"4 3\"" : "") + " d=\"" + Data(path) + "\"/>\n";
  return *this;
}

Picture& Picture::Nodes(const Path& path) {
  drawn_.Add(path.GetLooseBBox());
  for (std::size_t i = 0; i < path.GetPointCount(); ++i) {
    const NODETYPE type = path.GetNodeType(i);
    const DPoint p = path.GetPoint(i);
    if (!type.IsControl()) continue;
    const std::size_t node = path.GetNodeType(i - 1).IsControl() ? i + 1 : i - 1;
    Body() += "<path fill=\"none\" stroke=\"#888\" stroke-width=\".6\" d=\"M" + X(path.GetPoint(node).x) +
              ' ' + Y(path.GetPoint(node).y) + 'L' + X(p.x) + ' ' + Y(p.y) + "\"/>\n";
    // The rim sets a handle off from a line that it lies on.
    Body() += "<circle cx=\"" + X(p.x) + "\" cy=\"" + Y(p.y) +
              "\" r=\"2\" stroke=\"#fff\" stroke-width=\".8\" fill=\"#888\"/>\n";
  }
  for (std::size_t i = 0; i < path.GetPointCount(); ++i) {
    const NODETYPE type = path.GetNodeType(i);
    if (!type.IsOnCurve()) continue;
    const DPoint p = path.GetPoint(i);
    const std::string paint =
        std::string("stroke=\"") + kInk + "\" fill=\"" + (type.IsEnabled() ? kNew : "#fff") + "\"/>\n";
    if (type.IsCusp()) {
      const double half = 1.4 * kUnit;
      Body() += "<rect x=\"" + X(p.x - half) + "\" y=\"" + Y(p.y + half) +
                "\" width=\"5.6\" height=\"5.6\" " + paint;
    } else {
      Body() += "<circle cx=\"" + X(p.x) + "\" cy=\"" + Y(p.y) + "\" r=\"3\" " + paint;
    }
  }
  return *this;
}

Picture& Picture::Show(const Path& path) {
  Path ground;
  for (const Path& subpath : path.GetSubpaths()) {
    if (subpath.IsClosed(0)) ground.PushBack(subpath);
  }
  if (!ground.IsEmpty()) Fill(ground);
  return Line(path).Nodes(path);
}

Picture& Picture::Dot(const DPoint& p, const char* colour, double radius) {
  drawn_.Add(p.x, p.y);
  Body() += "<circle cx=\"" + X(p.x) + "\" cy=\"" + Y(p.y) + "\" r=\"" + Number(radius) + "\" fill=\"" +
            colour + "\"/>\n";
  return *this;
}

Picture& Picture::Box(const TavMath::BoundsT<double>& box, const char* colour) {
  return Line(Path::CreateRectangle(box), colour, 1, true);
}

Picture& Picture::Arrow(const DPoint& from, const DVector& direction, const char* colour) {
  const DPoint tip = from + direction;
  const DVector back = 3 * kUnit * TavMath::Normalized(direction), side = 0.5 * TavMath::LeftNormal(back);
  Path line;
  line.MoveTo(from);
  line.LineTo(tip);
  line.MoveTo(tip - back + side);
  line.LineTo(tip);
  line.LineTo(tip - back - side);
  return Line(line, colour);
}

Picture& Picture::Text(const DPoint& p, std::string_view text, const char* colour) {
  Body() += "<text x=\"" + X(p.x) + "\" y=\"" + Y(p.y) + "\" fill=\"" + colour + "\">" + Escaped(text) +
            "</text>\n";
  return *this;
}

Picture& Picture::BeforeAfter(const Path& before, const Path& after) {
  return Panel("before").Show(before).Panel("after").Show(after);
}

std::string Picture::Svg() const {
  // The ground, and what reaches beyond it.
  double left = 0, top = 0, right = kPanelWidth, bottom = kPanelHeight;
  if (!drawn_.IsEmpty()) {
    left = std::min(left, drawn_.minx / kPixel - kMargin);
    right = std::max(right, drawn_.maxx / kPixel + kMargin);
    top = std::min(top, kPanelHeight - drawn_.maxy / kPixel - 2 * kMargin);
    bottom = std::max(bottom, kPanelHeight - drawn_.miny / kPixel);
  }
  const std::string view =
      Number(left) + ' ' + Number(top) + ' ' + Number(right - left) + ' ' + Number(bottom - top);
  std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
                    Number(static_cast<double>(panels_.size()) * kPanelWidth) + "\" height=\"" +
                    Number(kPanelHeight + kCaption) +
                    "\" fill-rule=\"evenodd\" font-family=\"sans-serif\" font-size=\"11\">\n"
                    "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n";
  double x = 0;
  for (const Panelled& panel : panels_) {
    svg += "<text x=\"" + Number(x + kMargin) + "\" y=\"12\" fill=\"" + kInk + "\">" + panel.caption +
           "</text>\n<svg x=\"" + Number(x) + "\" y=\"" + Number(kCaption) + "\" width=\"" +
           Number(kPanelWidth) + "\" height=\"" + Number(kPanelHeight) + "\" viewBox=\"" + view + "\">\n" +
           panel.body + "</svg>\n";
    x += kPanelWidth;
  }
  return svg + "</svg>\n";
}

}  // namespace pictures
