#include "reduction.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_set>

#include "path_builder.h"
#include "svg_write.h"

namespace tool {

namespace {

/// One segment: where it ends, after its handles if it has any.
struct Piece {
  std::array<DPoint, 3> points{};
  bool curve = false;
  bool operator==(const Piece&) const = default;
};
struct Outline {
  DPoint start;
  std::vector<Piece> pieces;
  bool closed = false;
  bool operator==(const Outline&) const = default;
};
struct Shape {
  std::string id;
  Presentation presentation;
  std::vector<Outline> outlines;
  bool operator==(const Shape&) const = default;
};
using Sketch = std::vector<Shape>;

Shape ShapeOf(const Element& element) {
  Shape shape{element.id, element.presentation, {}};
  const Path& path = element.path;
  for (std::size_t i = 0; i < path.GetPointCount(); ++i) {
    const NODETYPE type = path.GetNodeType(i);
    if (type.IsMove()) {
      shape.outlines.push_back({path.GetPoint(i), {}, type.IsClosed()});
    } else if (type.IsOnCurve()) {
      Piece piece{{path.GetPoint(i), path.GetPoint(i), path.GetPoint(i)}, type.IsCurve()};
      if (piece.curve) piece.points = {path.GetPoint(i - 2), path.GetPoint(i - 1), path.GetPoint(i)};
      shape.outlines.back().pieces.push_back(piece);
    }
  }
  return shape;
}

Element ElementOf(const Shape& shape) {
  PathBuilder builder;
  for (const Outline& outline : shape.outlines) {
    builder.MoveTo(outline.start);
    for (const Piece& piece : outline.pieces) {
      if (piece.curve) {
        builder.CubicTo(piece.points[0], piece.points[1], piece.points[2]);
      } else {
        builder.LineTo(piece.points[2]);
      }
    }
    if (outline.closed) builder.Close();
  }
  Element element{shape.id, {}, shape.presentation};
  if (!element.path.SetPoints(std::vector<DPoint>(builder.Points()), std::vector<NODETYPE>(builder.Types())))
    throw std::bad_alloc();
  return element;
}

/// The number-th outline or piece of a drawing is handed to `visit` for first <= number < first + count.
template <class Visit>
void ForOutlines(Sketch& sketch, std::size_t first, std::size_t count, Visit visit) {
  std::size_t number = 0;
  for (Shape& shape : sketch) {
    for (Outline& outline : shape.outlines) {
      if (number >= first && number < first + count) visit(outline);
      ++number;
    }
  }
}
template <class Visit>
void ForPieces(Sketch& sketch, std::size_t first, std::size_t count, Visit visit) {
  std::size_t number = 0;
  for (Shape& shape : sketch) {
    for (Outline& outline : shape.outlines) {
      for (Piece& piece : outline.pieces) {
        if (number >= first && number < first + count) visit(outline, piece);
        ++number;
      }
    }
  }
}

std::size_t CountShapes(const Sketch& sketch) { return sketch.size(); }
std::size_t CountOutlines(const Sketch& sketch) {
  std::size_t count = 0;
  for (const Shape& shape : sketch) count += shape.outlines.size();
  return count;
}
std::size_t CountPieces(const Sketch& sketch) {
  std::size_t count = 0;
  for (const Shape& shape : sketch) {
    for (const Outline& outline : shape.outlines) count += outline.pieces.size();
  }
  return count;
}
std::size_t CountAttributes(const Sketch& sketch) {
  std::size_t count = 0;
  for (const Shape& shape : sketch) count += shape.presentation.size();
  return count;
}

/// Takes out what has become empty.
void Tidy(Sketch& sketch) {
  for (Shape& shape : sketch)
    std::erase_if(shape.outlines, [](const Outline& outline) { return outline.pieces.empty(); });
  std::erase_if(sketch, [](const Shape& shape) { return shape.outlines.empty(); });
}

void DropShapes(Sketch& sketch, std::size_t first, std::size_t count) {
  const auto begin = sketch.begin() + static_cast<std::ptrdiff_t>(first);
  sketch.erase(begin, begin + static_cast<std::ptrdiff_t>(count));
}
void DropOutlines(Sketch& sketch, std::size_t first, std::size_t count) {
  ForOutlines(sketch, first, count, [](Outline& outline) { outline.pieces.clear(); });
}
void DropPieces(Sketch& sketch, std::size_t first, std::size_t count) {
  std::size_t number = 0;
  for (Shape& shape : sketch) {
    for (Outline& outline : shape.outlines) {
      std::erase_if(outline.pieces, [&](const Piece&) {
        const std::size_t own = number++;
        return own >= first && own < first + count;
      });
    }
  }
}
void DropAttributes(Sketch& sketch, std::size_t first, std::size_t count) {
  std::size_t number = 0;
  for (Shape& shape : sketch) {
    std::erase_if(shape.presentation, [&](const auto&) {
      const std::size_t own = number++;
      return own >= first && own < first + count;
    });
  }
}
void Open(Sketch& sketch, std::size_t first, std::size_t count) {
  ForOutlines(sketch, first, count, [](Outline& outline) { outline.closed = false; });
}
void Straighten(Sketch& sketch, std::size_t first, std::size_t count) {
  ForPieces(sketch, first, count, [](Outline&, Piece& piece) {
    piece = {{piece.points[2], piece.points[2], piece.points[2]}, false};
  });
}
/// To multiples of `step`, in document units. The start of an outline goes with its first segment.
void Round(Sketch& sketch, std::size_t first, std::size_t count, double step) {
  const auto round = [step](DPoint& p) {
    p = {std::round(p.x / step) * step, std::round(p.y / step) * step};
  };
  ForPieces(sketch, first, count, [&](Outline& outline, Piece& piece) {
    if (&piece == outline.pieces.data()) round(outline.start);
    std::ranges::for_each(piece.points, round);
  });
}

class Reducer {
 public:
  Reducer(Reduction& reduction, const Document& document) : reduction_(reduction), document_(document) {
    for (const Element& element : document.elements) now_.push_back(ShapeOf(element));
    document_.elements.clear();
    seen_.insert(std::hash<std::string>{}(SvgText(Drawn(now_))));
  }

  Document Run() {
    while (Round()) {
    }
    return Drawn(now_);
  }

 private:
  using Count = std::size_t (*)(const Sketch&);

  /// Every kind of change once; false when none of them succeeded.
  bool Round() {
    const Sketch before = now_;
    Sweep(CountShapes, DropShapes);
    Sweep(CountOutlines, DropOutlines);
    Sweep(CountPieces, DropPieces);
    Sweep(CountPieces, Straighten);
    Sweep(CountOutlines, Open);
    Sweep(CountAttributes, DropAttributes);
    // From hundreds of user units to a ten-thousandth: the first precision that serves for all is the start
    // of what single nodes may do with less.
    constexpr int kCoarsest = 2, kFinest = -4;
    for (int digit = kCoarsest; digit >= kFinest; --digit) {
      const double step = std::pow(10.0, digit) * document_.unitsPerUser;
      Sweep(CountPieces, [step](Sketch& sketch, std::size_t first, std::size_t count) {
        tool::Round(sketch, first, count, step);
      });
    }
    return now_ != before;
  }

  /// Tries a change on all items, on each half, each quarter ... on each single one; keeps what holds.
  template <class Change>
  void Sweep(Count count, Change change) {
    for (std::size_t size = count(now_); size > 0; size /= 2) {
      for (std::size_t first = 0; first < count(now_);) {
        const std::size_t items = count(now_);
        Sketch candidate = now_;
        change(candidate, first, std::min(size, items - first));
        Tidy(candidate);
        if (candidate != now_ && Holds(candidate)) now_ = std::move(candidate);
        // Where items have gone, the next ones stand at the same place.
        if (count(now_) == items) first += size;
        if (ended_) return;
      }
    }
  }

  bool Holds(const Sketch& candidate) {
    const std::string text = SvgText(Drawn(candidate));
    // By hash: should two texts ever share one, a single reduction is missed.
    if (!seen_.insert(std::hash<std::string>{}(text)).second) return false;
    if (ended_ || !reduction_.goOn()) {
      ended_ = true;
      return false;
    }
    ++reduction_.tries;
    return reduction_.holds(text);
  }

  Document Drawn(const Sketch& sketch) const {
    Document document = document_;
    for (const Shape& shape : sketch) document.elements.push_back(ElementOf(shape));
    return document;
  }

  Reduction& reduction_;
  Document document_;
  Sketch now_;
  std::unordered_set<std::size_t> seen_;
  bool ended_ = false;
};

}  // namespace

Document Reduction::Run(const Document& document) { return Reducer(*this, document).Run(); }

std::string SvgText(const Document& document) {
  SvgWriter writer(document);
  for (const Element& element : document.elements)
    writer.AddPath(element.path, element.presentation, element.id);
  return writer.Text();
}

}  // namespace tool
