#include "svg_write.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "files.h"
#include "path_builder.h"

namespace tool {

namespace {

/// Coordinates are written to this fraction of a document unit; the engine's smallest tolerance is ten times
/// it.
constexpr double kResolution = 0.001;
constexpr int kMostDecimals = 15;
/// Of the size at which the drawing is shown.
constexpr int kSizeDecimals = 6;

/// A decimal number without superfluous zeros.
std::string Decimal(double value, int decimals) {
  if (!std::isfinite(value)) return "0";
  std::array<char, 400> text;
  const auto [end, error] =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, decimals);
  std::string result(text.data(), error == std::errc{} ? end : text.data());
  if (result.find('.') != std::string::npos) {
    result.erase(result.find_last_not_of('0') + 1);
    if (result.back() == '.') result.pop_back();
  }
  return result == "-0" || result.empty() ? "0" : result;
}

std::string Escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '"':
        result += "&quot;";
        break;
      case '\n':
      case '\r':
      case '\t':
        result += ' ';
        break;
      default:
        result += c;
    }
  }
  return result;
}

/// Writes the nodes of one path; arrays that are not well formed lose what has no meaning.
class PathDataWriter {
 public:
  PathDataWriter(const Path& path, double unitsPerUser, int decimals)
      : points_(path.GetPoints()),
        types_(path.GetNodeTypes()),
        count_(path.GetPointCount()),
        scale_(1 / unitsPerUser),
        decimals_(decimals) {}

  std::string Write() {
    for (std::size_t i = 0; i < count_;) i += Node(i);
    return std::move(text_);
  }

 private:
  /// Returns how many nodes it has consumed.
  std::size_t Node(std::size_t i) {
    if (i == 0 || types_[i].IsMove()) {
      start_ = points_[i];
      closed_ = types_[i].IsClosed();
      Command('M', i, 1);
      return 1;
    }
    const bool curve =
        types_[i].IsControl() && i + 2 < count_ && types_[i + 1].IsControl() && types_[i + 2].IsCurve();
    if (!curve && types_[i].IsControl()) return 1;
    const std::size_t n = curve ? 3 : 1;
    const std::size_t last = i + n - 1;
    const bool closes = closed_ && types_[last].IsClosed() && points_[last] == start_;
    // Z draws the closing line itself; one that a reader would take for no line, only straight after the M.
    const bool drawn = closes && i > 0 && (types_[i - 1].IsMove() || IsLine(points_[i - 1], start_));
    if (curve || !drawn) Command(curve ? 'C' : 'L', i, n);
    if (closes) text_ += 'Z';
    return n;
  }

  /// Whether the ends still differ as they are written, and by more than a reader may take for rounding.
  bool IsLine(const DPoint& a, const DPoint& b) const {
    constexpr double kMargin = 100;
    return Written(a) != Written(b) && !SameEnd(a, b, kMargin);
  }

  void Command(char letter, std::size_t i, std::size_t n) {
    text_ += letter;
    for (std::size_t k = i; k < i + n; ++k) {
      if (k > i) text_ += ' ';
      text_ += Written(points_[k]);
    }
  }

  std::string Written(const DPoint& p) const {
    return Decimal(p.x * scale_, decimals_) + ' ' + Decimal(p.y * scale_, decimals_);
  }

  const DPoint* points_;
  const NODETYPE* types_;
  std::size_t count_;
  double scale_;
  int decimals_;
  DPoint start_{0, 0};
  bool closed_ = false;
  std::string text_;
};

int DecimalsFor(double unitsPerUser) {
  return std::clamp(static_cast<int>(std::ceil(std::log10(unitsPerUser / kResolution))), 0, kMostDecimals);
}

}  // namespace

std::string PathData(const Path& path, double unitsPerUser, int decimals) {
  return PathDataWriter(path, unitsPerUser, decimals).Write();
}

SvgWriter::SvgWriter(const Document& document)
    : document_(document), decimals_(DecimalsFor(document.unitsPerUser)) {}

std::string SvgWriter::Number(double units) const { return Decimal(document_.ToUser(units), decimals_); }

void SvgWriter::Open(std::string_view name, const Presentation& presentation) {
  body_ += "<";
  body_ += name;
  for (const auto& [key, value] : presentation) body_ += " " + key + "=\"" + Escaped(value) + "\"";
}

void SvgWriter::AddPath(const Path& path, const Presentation& presentation, std::string_view id) {
  box_.Add(path.GetLooseBBox());
  Open("path", presentation);
  if (!id.empty()) body_ += " id=\"" + Escaped(id) + "\"";
  body_ += " d=\"" + PathData(path, document_.unitsPerUser, decimals_) + "\"/>\n";
}

void SvgWriter::AddDot(DPoint center, double fraction, const Presentation& presentation) {
  const double radius = fraction * std::max(document_.viewBox[2], document_.viewBox[3]);
  Open("circle", presentation);
  body_ += " cx=\"" + Number(center.x) + "\" cy=\"" + Number(center.y) + "\" r=\"" +
           Decimal(radius, decimals_) + "\"/>\n";
}

void SvgWriter::OpenGroup(const Presentation& presentation) {
  Open("g", presentation);
  body_ += ">\n";
}

void SvgWriter::CloseGroup() { body_ += "</g>\n"; }

std::string SvgWriter::Text() const {
  double left = document_.viewBox[0], top = document_.viewBox[1];
  double right = left + document_.viewBox[2], bottom = top + document_.viewBox[3];
  if (showAll_ && !box_.IsEmpty()) {
    left = std::min(left, document_.ToUser(box_.minx));
    top = std::min(top, document_.ToUser(box_.miny));
    right = std::max(right, document_.ToUser(box_.maxx));
    bottom = std::max(bottom, document_.ToUser(box_.maxy));
  }
  std::string text = "<svg xmlns=\"http://www.w3.org/2000/svg\"";
  // What is larger than before is shown larger, so that a millimetre stays a millimetre.
  if (const double unit = document_.userPerSizeUnit; unit > 0) {
    text += " width=\"" + Decimal((right - left) / unit, kSizeDecimals) + document_.sizeUnit +
            "\" height=\"" + Decimal((bottom - top) / unit, kSizeDecimals) + document_.sizeUnit + "\"";
  }
  text += " viewBox=\"";
  text += Decimal(left, decimals_) + " " + Decimal(top, decimals_) + " " + Decimal(right - left, decimals_) +
          " " + Decimal(bottom - top, decimals_) + "\">\n";
  return text + body_ + "</svg>\n";
}

void SvgWriter::Save(const std::string& file) const { WriteText(file, Text()); }

void SaveDocument(const Document& document, const std::string& file, bool showAll) {
  SvgWriter writer(document);
  if (showAll) writer.ShowAll();
  for (const Element& element : document.elements)
    writer.AddPath(element.path, element.presentation, element.id);
  writer.Save(file);
}

}  // namespace tool
