#include "svg_read.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <pugixml.hpp>
#include <unordered_map>

#include "attributes.h"
#include "files.h"
#include "input_error.h"
#include "path_builder.h"
#include "path_data.h"
#include "scanner.h"
#include "svg_shapes.h"

namespace tool {

namespace {

using TavMath::MATRIX;

/// Groups in groups, and uses of uses, go at most this deep: deeper is a mistake or an attack.
constexpr int kDeepest = 400;
/// A drawing of a few lines can ask for billions of copies through nested uses.
constexpr std::size_t kMostCopies = 250'000;
constexpr std::size_t kMostNodes = 100'000'000;

constexpr std::string_view kSvgNamespace = "http://www.w3.org/2000/svg";

/// What elements inherit.
struct Context {
  MATRIX toUser;
  Viewport viewport;
  Presentation presentation;
  /// The id of the use that draws this, which names the copy better than what it copies.
  std::string useId;
  bool copied = false;
  int depth = 0;
};

constexpr std::string_view kInherited[] = {
    "fill",           "fill-rule",       "fill-opacity",      "stroke",         "stroke-width",
    "stroke-linecap", "stroke-linejoin", "stroke-miterlimit", "stroke-opacity", "style"};

std::size_t LineOf(std::string_view text, std::ptrdiff_t offset) {
  const auto end =
      text.begin() + std::clamp<std::ptrdiff_t>(offset, 0, static_cast<std::ptrdiff_t>(text.size()));
  return 1 + static_cast<std::size_t>(std::count(text.begin(), end, '\n'));
}

/// Whether a namespace prefix means SVG where the node stands. Nothing is also taken for it: drawings cut out
/// of web pages have no declaration.
bool IsSvgPrefix(pugi::xml_node node, std::string_view prefix) {
  if (prefix.empty()) return true;
  const std::string declaration = "xmlns:" + std::string(prefix);
  for (; node; node = node.parent()) {
    if (const auto attribute = node.attribute(declaration.c_str())) return attribute.value() == kSvgNamespace;
  }
  return prefix == "svg";
}

/// The name of an SVG element without its prefix; empty for elements of other languages.
std::string_view SvgName(pugi::xml_node node) {
  std::string_view name = node.name();
  const auto colon = name.find(':');
  if (colon == std::string_view::npos) return name;
  return IsSvgPrefix(node, name.substr(0, colon)) ? name.substr(colon + 1) : std::string_view{};
}

/// The id that a use refers to; empty when it refers to another file or to nothing.
std::string_view Reference(pugi::xml_node use) {
  std::string_view target = use.attribute("href").value();
  if (target.empty()) target = use.attribute("xlink:href").value();
  return target.starts_with('#') ? target.substr(1) : std::string_view{};
}

class Reader {
 public:
  Reader(std::string_view text, const std::string& name) : text_(text) { document_.file = name; }

  Document Read() {
    pugi::xml_document xml;
    const auto parsed = xml.load_buffer(text_.data(), text_.size());
    if (!parsed) {
      if (text_.empty()) throw InputError(document_.file + ": the file is empty");
      throw InputError(At(parsed.offset) + "not well-formed XML (" + parsed.description() + ")");
    }
    const auto root = xml.find_child([](pugi::xml_node node) { return SvgName(node) == "svg"; });
    if (!root) throw InputError(At(0) + "there is no svg element");
    Index(xml);
    Context context;
    SetUp(root, context);
    for (const auto child : root.children()) Draw(child, context);
    Scale();
    return std::move(document_);
  }

 private:
  std::string At(std::ptrdiff_t offset) const {
    return document_.file + ":" + std::to_string(LineOf(text_, offset)) + ": ";
  }
  [[noreturn]] void Fail(pugi::xml_node node, const std::string& what) const {
    throw InputError(At(node.offset_debug()) + "<" + node.name() + ">: " + what);
  }

  /// Remembers every id, first come first served.
  void Index(const pugi::xml_document& xml) {
    for (pugi::xml_node node = xml.first_child(); node;) {
      if (const auto id = node.attribute("id")) byId_.emplace(id.value(), node);
      if (node.first_child()) {
        node = node.first_child();
        continue;
      }
      while (node && !node.next_sibling()) node = node.parent();
      if (node) node = node.next_sibling();
    }
  }

  /// The outermost element: its viewBox, else its size, is the user space that everything is measured in.
  void SetUp(pugi::xml_node root, Context& context) {
    const auto side = [&](const char* name) {
      try {
        return ParseLength(root.attribute(name).value(), {}, Extent::diagonal);
      } catch (const InputError&) {
        return 0.0;  // missing, "auto", or a unit that only a browser knows
      }
    };
    const double width = side("width"), height = side("height");
    if (const auto box = ParseViewBox(root.attribute("viewBox").value())) {
      std::ranges::copy(*box, document_.viewBox);
    } else {
      document_.viewBox[2] = width;
      document_.viewBox[3] = height;
    }
    Size(root, width, height);
    context.viewport = {document_.viewBox[2], document_.viewBox[3]};
    Inherit(root, context);
  }

  /// How large a user unit is shown: where both sides are stated, the whole drawing fits between them.
  void Size(pugi::xml_node root, double width, double height) {
    const double across = width > 0 && document_.viewBox[2] > 0 ? document_.viewBox[2] / width : 0;
    const double down = height > 0 && document_.viewBox[3] > 0 ? document_.viewBox[3] / height : 0;
    const double userPerPixel = std::max(across, down);
    if (!(userPerPixel > 0)) return;
    document_.userPerPixel = userPerPixel;
    document_.sizeUnit = UnitOf(root.attribute(across > 0 ? "width" : "height").value());
    document_.userPerSizeUnit = userPerPixel * ParseLength("1" + document_.sizeUnit, {}, Extent::diagonal);
  }

  void Inherit(pugi::xml_node node, Context& context) const {
    for (const std::string_view name : kInherited) {
      const auto attribute = node.attribute(name.data());
      if (!attribute) continue;
      const auto known = std::ranges::find(context.presentation, name,
                                           [](const auto& entry) { return std::string_view(entry.first); });
      if (known == context.presentation.end()) {
        context.presentation.emplace_back(name, attribute.value());
      } else {
        known->second = attribute.value();
      }
    }
  }

  void Draw(pugi::xml_node node, Context context) {
    if (node.type() != pugi::node_element) return;
    const std::string_view name = SvgName(node);
    const bool group = name == "g" || name == "a" || name == "switch" || name == "svg";
    if (!group && name != "use" && !IsShape(name)) return;
    if (std::string_view(node.attribute("display").value()) == "none") return;
    if (context.copied && ++copies_ > kMostCopies) {
      Fail(node, "the drawing uses more than " + std::to_string(kMostCopies) + " copies of its elements");
    }
    if (++context.depth > kDeepest)
      Fail(node, "nested more than " + std::to_string(kDeepest) + " deep, or in a circle");
    Inherit(node, context);
    try {
      if (const auto transform = node.attribute("transform")) {
        context.toUser = Concatenate(ParseTransform(transform.value()), context.toUser);
      }
    } catch (const InputError& error) {
      Fail(node, std::string("transform, ") + error.what());
    }
    if (name == "use") {
      Use(node, context);
    } else if (!group) {
      Shape(node, name, context);
    } else {
      if (name == "svg") Nest(node, node, context);
      context.useId.clear();
      for (const auto child : node.children()) Draw(child, context);
    }
  }

  double Length(pugi::xml_node node, const char* name, const Viewport& viewport, Extent extent,
                double missing) const {
    const std::string_view value = node.attribute(name).value();
    if (value.empty() || value == "auto") return missing;
    try {
      return ParseLength(value, viewport, extent);
    } catch (const InputError& error) {
      Fail(node, std::string(name) + ", " + error.what());
    }
  }

  /// Enters a nested svg element, or a symbol: `sized` says where and how large it is shown.
  void Nest(pugi::xml_node node, pugi::xml_node sized, Context& context) const {
    const Viewport outer = context.viewport;
    const auto side = [&](const char* name, Extent extent) {
      const double whole = Length(node, name, outer, extent, outer.Of(extent));
      return sized == node ? whole : Length(sized, name, outer, extent, whole);
    };
    const double width = side("width", Extent::width);
    const double height = side("height", Extent::height);
    const double x = Length(node, "x", outer, Extent::width, 0);
    const double y = Length(node, "y", outer, Extent::height, 0);
    const auto box = ParseViewBox(node.attribute("viewBox").value());
    if (box && width > 0 && height > 0) {
      const MATRIX show =
          ViewBoxTransform(box->data(), x, y, width, height, node.attribute("preserveAspectRatio").value());
      context.toUser = Concatenate(show, context.toUser);
      context.viewport = {(*box)[2], (*box)[3]};
    } else {
      context.toUser = Concatenate(MATRIX{1, 0, 0, 1, x, y}, context.toUser);
      context.viewport = {width, height};
    }
  }

  void Use(pugi::xml_node node, Context& context) {
    const auto found = byId_.find(std::string(Reference(node)));
    if (found == byId_.end()) return;  // another file, or nothing: browsers draw nothing either
    const pugi::xml_node target = found->second;
    for (pugi::xml_node above = node; above; above = above.parent()) {
      if (above == target) Fail(node, "draws itself");
    }
    const MATRIX place{1,
                       0,
                       0,
                       1,
                       Length(node, "x", context.viewport, Extent::width, 0),
                       Length(node, "y", context.viewport, Extent::height, 0)};
    context.toUser = Concatenate(place, context.toUser);
    context.copied = true;
    if (const auto id = node.attribute("id")) context.useId = id.value();
    const std::string_view name = SvgName(target);
    if (name != "symbol" && name != "svg") return Draw(target, context);
    Inherit(target, context);
    Nest(target, node, context);
    context.useId.clear();
    for (const auto child : target.children()) Draw(child, context);
  }

  void Shape(pugi::xml_node node, std::string_view name, const Context& context) {
    PathBuilder path;
    try {
      BuildShape(
          name, [&](const char* attribute) { return std::string_view(node.attribute(attribute).value()); },
          context.viewport, path);
    } catch (const InputError& error) {
      Fail(node, error.what());
    }
    if (path.IsEmpty()) return;
    Outline outline{path.Points(), path.Types()};
    context.toUser.TransformPoints(outline.points.data(), outline.points.size());
    for (const DPoint p : outline.points) {
      if (!std::isfinite(p.x) || !std::isfinite(p.y))
        Fail(node, "a coordinate is beyond the range of doubles");
      box_.Add(p.x, p.y);
    }
    nodes_ += outline.points.size();
    if (nodes_ > kMostNodes) Fail(node, "the drawing has more than " + std::to_string(kMostNodes) + " nodes");
    Element element;
    element.id = context.useId;
    if (element.id.empty()) element.id = node.attribute("id").value();
    if (element.id.empty()) element.id = std::string(name) + std::to_string(document_.elements.size() + 1);
    element.presentation = context.presentation;
    document_.elements.push_back(std::move(element));
    outlines_.push_back(std::move(outline));
  }

  /// From user units to document units.
  void Scale() {
    double side = std::max(document_.viewBox[2], document_.viewBox[3]);
    if (!(side > 0) && !box_.IsEmpty()) {
      document_.viewBox[0] = box_.minx;
      document_.viewBox[1] = box_.miny;
      document_.viewBox[2] = box_.Width();
      document_.viewBox[3] = box_.Height();
      side = std::max(box_.Width(), box_.Height());
    }
    document_.unitsPerUser = UnitsPerUser(side);
    const double scale = document_.unitsPerUser;
    for (std::size_t k = 0; k < outlines_.size(); ++k) {
      auto& [points, types] = outlines_[k];
      for (DPoint& p : points) p = {p.x * scale, p.y * scale};
      if (!document_.elements[k].path.SetPoints(std::move(points), std::move(types))) throw std::bad_alloc();
    }
  }

  /// An element's nodes in user units, until all are read and the scale is known.
  struct Outline {
    std::vector<DPoint> points;
    std::vector<NODETYPE> types;
  };

  std::string_view text_;
  Document document_;
  std::unordered_map<std::string, pugi::xml_node> byId_;
  std::vector<Outline> outlines_;
  TavMath::BoundsT<double> box_;
  std::size_t copies_ = 0;
  std::size_t nodes_ = 0;
};

}  // namespace

std::string Attribute(const Presentation& presentation, const std::string& name, const std::string& missing) {
  const auto found = std::ranges::find(presentation, name,
                                       [](const auto& entry) -> const std::string& { return entry.first; });
  return found == presentation.end() ? missing : found->second;
}

double UnitsPerUser(double side) {
  if (!(side > 0) || !std::isfinite(side)) return 1;
  // frexp: side is in [2^(e-1), 2^e); the result puts it into [2^20, 2^21).
  int exponent = 0;
  std::frexp(side, &exponent);
  return std::ldexp(1.0, 21 - exponent);
}

Document ReadSvgText(std::string_view text, const std::string& name) {
  if (text.starts_with("\x1f\x8b")) throw InputError(name + ": is compressed; unpack it with gunzip first");
  return Reader(text, name).Read();
}

Document ReadSvg(const std::string& file) {
  return ReadSvgText(ReadText(file), file == "-" ? "standard input" : file);
}

}  // namespace tool
