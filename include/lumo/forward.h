#pragma once
// Names every public type once, without its definition; clang takes the export mark from this first mention.

#include "lumo/export.h"

struct NODETYPE;
struct CRV_ENABLINGINFO;
struct CRV_FREEHANDINFO;
struct CRV_CONNECTINFO;

namespace Lumo {

// Paths and views of paths.
template <class T>
class LUMO_TEMPLATE_API PolycurveT;
template <class T>
class LUMO_TEMPLATE_API PolylineT;
template <class T>
class LUMO_TEMPLATE_API PolycurveRefT;
template <class T>
class LUMO_TEMPLATE_API CurveDataBase;
template <class T>
class LUMO_TEMPLATE_API CurveData;
template <class T>
class LUMO_TEMPLATE_API CurveDataRef;
template <class T>
struct DrawCurveT;
template <class T>
struct ConstDrawCurveT;
template <class T>
class LUMO_TEMPLATE_API CurveSegmentT;
template <class T>
class CurveSegmentGetter;
class NextCurveSegment;
struct SubcurveRange;

// Positions on paths.
struct SegmentPosition;
struct CurvePosition;
template <class T, class Position>
struct ClosestPoint;

// Shapes, cleanup, intersections, containment, Boolean operations.
enum class RectangleCorner : int;
enum class FillRule : int;
enum class NodeEdge : int;
class CurveRepairSettings;
class Intersection;
class SegmentIntersections;
class SegmentIntersectionSettings;
class SegmentIntersectionTable;
class SubpathTreeNode;
class SubpathHierarchy;

class OffsetCorner;

namespace Offset {
class OffsetSettings;
}  // namespace Offset

}  // namespace Lumo
