#pragma once
// A small drawing of what an operation does: panels side by side, each a square of ground 100,000 units wide
// and 80,000 high, y upwards. Pictures write themselves as SVG; when something reaches beyond the ground, all
// panels show more of it at the same, smaller scale.

#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/polycurve.h"

namespace pictures {

using TavMath::DPoint;
using TavMath::DVector;
using Path = Lumo::PolycurveT<DPoint>;
using IntPath = Lumo::PolycurveT<tagPOINT>;

/// Pictures are thought in thousands of units: 100 by 80 of them.
inline constexpr double kUnit = 1000;

inline constexpr const char* kInk = "#1b3a4b";
inline constexpr const char* kOld = "#b8b8b8";
inline constexpr const char* kNew = "#c0392b";
inline constexpr const char* kThird = "#2e7d32";
inline constexpr const char* kGround = "#dbe7ee";

/// A path from SVG path data (M, L, C and Z, absolute) in thousands of units. A closed subpath that does not
/// end where it began gets a closing line. Nodes are cusps.
Path Parse(std::string_view data);
DPoint At(double x, double y);
/// The same path with these nodes selected.
Path Select(Path path, std::initializer_list<std::size_t> nodes);
/// The same path with this continuity at these nodes.
Path Smooth(Path path, std::initializer_list<std::size_t> nodes,
            ContinuityType continuity = ContinuityType::smooth);
/// Runs an in-place function over the path's arrays with room for some more nodes; it returns the new count,
/// and leaves the path as it was when that is negative.
Path Edited(Path path, std::size_t room, const std::function<int(DPoint*, NODETYPE*, int)>& edit);

class Picture {
 public:
  /// Begins a panel to the right of the others; all that follows is drawn in it.
  Picture& Panel(std::string_view caption);
  Picture& Fill(const Path& path, const char* colour = kGround);
  Picture& Line(const Path& path, const char* colour = kInk, double width = 1.5, bool dashed = false);
  /// Nodes and handles: squares are cusps, discs smooth or symmetric, filled ones selected.
  Picture& Nodes(const Path& path);
  /// Ground, line and nodes.
  Picture& Show(const Path& path);
  Picture& Dot(const DPoint& p, const char* colour = kNew, double radius = 3);
  Picture& Box(const TavMath::BoundsT<double>& box, const char* colour = kNew);
  Picture& Arrow(const DPoint& from, const DVector& direction, const char* colour = kNew);
  Picture& Text(const DPoint& p, std::string_view text, const char* colour = kInk);
  /// "before" and "after", each with its nodes.
  Picture& BeforeAfter(const Path& before, const Path& after);

  std::string Svg() const;

 private:
  struct Panelled {
    std::string caption;
    std::string body;
  };
  std::string& Body() { return panels_.back().body; }

  std::vector<Panelled> panels_;
  /// Of all that is drawn, whatever the panel.
  TavMath::BoundsT<double> drawn_;
};

struct Entry {
  /// The function or class that it shows, which is also the name of its file.
  const char* name;
  void (*draw)(Picture&);
};

std::span<const Entry> CubicPictures();
std::span<const Entry> EditPictures();
std::span<const Entry> QueryPictures();
std::span<const Entry> PathPictures();
std::span<const Entry> ShapePictures();

}  // namespace pictures
