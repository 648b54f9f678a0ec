#include "edit_script.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include "input_error.h"
#include "lumo/crv_convert.h"
#include "lumo/crv_edit.h"
#include "lumo/crv_navigation.h"
#include "scanner.h"

namespace tool {

namespace {

/// The numbers behind the colon: node indices, with the parameter after the last one, or coordinates.
struct Arguments {
  std::vector<double> numbers;
  double t = 0.5;
};

/// Runs an in-place function in the path's own arrays with room for more nodes; a negative result leaves the
/// path as it was.
template <class Function>
bool InPlace(Path& path, int room, Function function) {
  const Path before = path;
  const int count = static_cast<int>(path.GetPointCount());
  const auto buffer = path.GetBuffer(path.GetPointCount() + static_cast<std::size_t>(room));
  if (!buffer.points) return false;
  const int result = function(buffer.points, buffer.types, count);
  path.ReleaseBuffer(static_cast<std::size_t>(std::max(result, 0)));
  if (result < 0) path = before;
  return path != before;
}

bool Add(Path& path, int i, double t) {
  return InPlace(path, 3, [=](DPoint* points, NODETYPE* types, int count) {
    return count + CRV_Add(points, types, count, i, t, 0);
  });
}

bool Break(Path& path, int i, double t) {
  return InPlace(path, 4, [=](DPoint* points, NODETYPE* types, int count) {
    return CRV_BreakAtLocation(points, types, count, i, t);
  });
}

bool Delete(Path& path, const std::vector<double>& nodes) {
  const Path before = path;
  path.DisableAllNodes();
  for (const double node : nodes) path.SetEnabled(static_cast<std::size_t>(node), true);
  const bool done = InPlace(path, 0, [](DPoint* points, NODETYPE* types, int count) {
    return CRV_DeleteEnabled(points, types, count);
  });
  if (!done) path = before;
  return done;
}

bool Join(Path& path, int a, int b) {
  return InPlace(path, 0, [=](DPoint* points, NODETYPE* types, int count) {
    return CRV_JoinTwoNodes(points, types, count, a, b);
  });
}

bool ToLine(Path& path, int i) {
  return InPlace(path, 0, [=](DPoint* points, NODETYPE* types, int count) {
    return CRV_ToLineNode(points, types, count, i);
  });
}

bool ToCurve(Path& path, int i) {
  return InPlace(path, 2, [=](DPoint* points, NODETYPE* types, int count) {
    return CRV_ToCurveNode(points, types, count, i);
  });
}

bool SetContinuity(Path& path, int i, ContinuityType continuity) {
  const Path before = path;
  path.SetCont(static_cast<std::size_t>(i), continuity);
  return path != before;
}

/// Moves a node together with its handles, and with its twin when it is where a closed subpath begins and
/// ends.
bool Move(const Document& document, Path& path, const std::vector<double>& v) {
  const auto i = static_cast<std::size_t>(v[0]);
  const auto by = document.ToUnits(DPoint{v[1], v[2]}) - path.GetPoint(i);
  const int count = static_cast<int>(path.GetPointCount());
  const int twin =
      path.GetNodeType(i).IsClosed() ? OtherClosedEnd(path.GetNodeTypes(), static_cast<int>(i), count) : -1;
  const auto buffer = path.GetBuffer();
  const auto shift = [&](std::size_t node) {
    buffer.points[node] += by;
    if (node > 0 && buffer.types[node].IsCurve() && buffer.types[node - 1].IsControl())
      buffer.points[node - 1] += by;
    if (node + 1 < buffer.count && buffer.types[node + 1].IsControl()) buffer.points[node + 1] += by;
  };
  shift(i);
  if (twin >= 0 && static_cast<std::size_t>(twin) != i) shift(static_cast<std::size_t>(twin));
  path.ReleaseBuffer();
  return true;
}

struct Verb {
  std::string_view name;
  std::size_t least, most;
  /// Whether the first number, or every number, is the index of a node.
  bool first, all;
  bool (*apply)(const Document&, Path&, const Arguments&);
  const char* help;
};

int Node(const Arguments& a, std::size_t k = 0) { return static_cast<int>(a.numbers[k]); }

constexpr std::size_t kAnyNumber = 1'000'000;
constexpr Verb kVerbs[] = {
    {"add", 1, 1, true, true,
     [](const Document&, Path& p, const Arguments& a) { return Add(p, Node(a), a.t); },
     "add:12@0.5       a node in the segment that ends at node 12, at parameter 0.5"},
    {"break", 1, 1, true, true,
     [](const Document&, Path& p, const Arguments& a) { return Break(p, Node(a), a.t); },
     "break:7@1        the path in two (or open) at parameter 1 of that segment, its end node"},
    {"delete", 1, kAnyNumber, true, true,
     [](const Document&, Path& p, const Arguments& a) { return Delete(p, a.numbers); },
     "delete:3,6       nodes; curves are fitted to what was there"},
    {"join", 2, 2, true, true,
     [](const Document&, Path& p, const Arguments& a) { return Join(p, Node(a), Node(a, 1)); },
     "join:0,9         two open ends in their middle"},
    {"line", 1, 1, true, true,
     [](const Document&, Path& p, const Arguments& a) { return ToLine(p, Node(a)); },
     "line:3           the segment that ends there becomes a line"},
    {"curve", 1, 1, true, true,
     [](const Document&, Path& p, const Arguments& a) { return ToCurve(p, Node(a)); },
     "curve:1          the segment that ends there becomes a curve"},
    {"cusp", 1, 1, true, true,
     [](const Document&, Path& p, const Arguments& a) {
       return SetContinuity(p, Node(a), ContinuityType::cusp);
     },
     "cusp:3           the handles of a node move freely"},
    {"smooth", 1, 1, true, true,
     [](const Document&, Path& p, const Arguments& a) {
       return SetContinuity(p, Node(a), ContinuityType::smooth);
     },
     "smooth:3         they stay in one line"},
    {"symmetric", 1, 1, true, true,
     [](const Document&, Path& p, const Arguments& a) {
       return SetContinuity(p, Node(a), ContinuityType::symmetric);
     },
     "symmetric:3      and of one length"},
    {"move", 3, 3, true, false,
     [](const Document& d, Path& p, const Arguments& a) { return Move(d, p, a.numbers); },
     "move:3,10.5,20   a node, with its handles, to a position"},
    {"close", 1, 1, true, true,
     [](const Document&, Path& p, const Arguments& a) {
       return p.CloseSubpath(static_cast<std::size_t>(a.numbers[0]));
     },
     "close:0          the subpath of a node"},
    {"reverse", 0, 0, false, false, [](const Document&, Path& p, const Arguments&) { return p.Reverse(); },
     "reverse          the whole path"},
};

Arguments Parse(std::string_view text) {
  Arguments result;
  Scanner scanner(text);
  scanner.SkipSpace();
  while (!scanner.AtEnd()) {
    result.numbers.push_back(scanner.Number());
    scanner.SkipSpace();
    if (scanner.Peek() == '@') {
      scanner.Skip();
      result.t = scanner.Number();
      scanner.SkipSpace();
      if (!scanner.AtEnd()) scanner.Fail("the end of the operation");
    } else if (!scanner.AtEnd()) {
      scanner.Expect(',');
      scanner.SkipSpace();
    }
  }
  return result;
}

void CheckNodes(const Verb& verb, const Arguments& arguments, const Path& path) {
  for (std::size_t k = 0; k < arguments.numbers.size(); ++k) {
    if (!(verb.all || (verb.first && k == 0))) continue;
    const double node = arguments.numbers[k];
    if (!(node >= 0 && node < static_cast<double>(path.GetPointCount())) || node != std::floor(node)) {
      throw InputError("there is no such node; the path has nodes 0 to " +
                       std::to_string(path.GetPointCount() - 1));
    }
  }
}

Element& Find(Document& document, std::string_view id) {
  if (document.elements.empty()) throw InputError("the drawing has no path");
  if (id.empty()) return document.elements.front();
  const auto found = std::ranges::find(document.elements, id, &Element::id);
  if (found == document.elements.end()) throw InputError("no element has the id " + std::string(id));
  return *found;
}

}  // namespace

bool ApplyOperation(Document& document, const std::string& operation) try {
  std::string_view rest = operation;
  const auto slash = rest.rfind('/');
  Element& element =
      Find(document, slash == std::string_view::npos ? std::string_view{} : rest.substr(0, slash));
  if (slash != std::string_view::npos) rest.remove_prefix(slash + 1);
  const auto colon = rest.find(':');
  const std::string_view name = rest.substr(0, colon);
  const Arguments arguments =
      Parse(colon == std::string_view::npos ? std::string_view{} : rest.substr(colon + 1));
  const auto verb = std::ranges::find(kVerbs, name, &Verb::name);
  if (verb == std::end(kVerbs)) throw InputError("no operation has this name");
  if (arguments.numbers.size() < verb->least || arguments.numbers.size() > verb->most) {
    throw InputError("wrong number of arguments; write " + std::string(verb->help));
  }
  CheckNodes(*verb, arguments, element.path);
  return verb->apply(document, element.path, arguments);
} catch (const InputError& error) {
  throw InputError("--op " + operation + ": " + error.what());
}

std::string OperationHelp() {
  std::string text;
  for (const Verb& verb : kVerbs) text += "  " + std::string(verb.help) + "\n";
  return text;
}

}  // namespace tool
