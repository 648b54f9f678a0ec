#pragma once
// The points of a freehand stroke, collected as the pointer moves: repeated points are dropped, gaps are
// filled at a fixed spacing, and every point gets a corner strength from which a fitting stage tells corners
// from smooth bends.
//
// Records are made and freed by these functions only; a null record counts as empty.

#include "lumo/point_types.h"

/// Owned by the caller through the pointer; read the fields, let the functions write them.
struct LUMO_TYPE CRV_FREEHANDINFO {
  int capacity;    ///< points that the arrays can hold
  int growthStep;  ///< by how many points the capacity grows when it runs out; 0 or less: never
  int count;       ///< points held
  tagPOINT* points;
  int* lineMarks;  ///< 1 for a point appended as a vertex of straight lines, else 0
  int* corners;    ///< corner strengths, 0 for none; known once two further points exist
};

/// An empty record; null for a negative capacity or when memory runs out.
LUMO_API CRV_FREEHANDINFO* CRV_FreehandInfoConstruct(int capacity, int growthStep) noexcept;
/// A record that holds n points as if appended with CRV_FreehandInfoAppendPointExt, with room for `extra`
/// more. spacing may be null. Null for a null array with n > 0, a negative n, or when memory runs out.
LUMO_API CRV_FREEHANDINFO* CRV_FreehandInfoConstructFromPolylineExt(const tagPOINT* points, int n,
                                                                    const int* spacing, int growthStep,
                                                                    int extra) noexcept;
/// The same for a closed polygon: the gap from the last point to the first is filled too and the record is
/// closed with CRV_FreehandInfoClose. Null also when there are too few points to close.
LUMO_API CRV_FREEHANDINFO* CRV_FreehandInfoConstructFromPolygonExt(const tagPOINT* points, int n,
                                                                   const int* spacing, int growthStep,
                                                                   int extra) noexcept;
/// Frees a record with its arrays; nothing for null.
LUMO_API void CRV_FreehandInfoDestruct(CRV_FREEHANDINFO* record) noexcept;

/// Appends a point; one that equals the last is dropped, which is a success. 0 for a null record, or when
/// there is no room for one more point and the record cannot grow (a repeated point too needs the room).
/// Growing costs the copying of all points: the growth step decides how often.
LUMO_API int CRV_FreehandInfoAppendPoint(CRV_FREEHANDINFO* record, tagPOINT point) noexcept;
/// The same, and the last point (also when the given one was dropped as a repetition of it) becomes a line
/// vertex.
LUMO_API int CRV_FreehandInfoAppendPointForLine(CRV_FREEHANDINFO* record, tagPOINT point) noexcept;
/// Fills the gap from the last point first: k = distance / spacing points at equal steps. Null or a spacing
/// below 1: no filling. Filled points are no corners, except the one whose strength the second filler
/// settles. When an append fails part-way the points appended so far stay.
LUMO_API int CRV_FreehandInfoAppendPointExt(CRV_FREEHANDINFO* record, tagPOINT point,
                                            const int* spacing) noexcept;
/// 1 and the last point; 0 when there is none.
LUMO_API int CRV_FreehandInfoGetLastPoint(const CRV_FREEHANDINFO* record, tagPOINT* out) noexcept;
/// Makes the stroke a closed one: appends the first point with gap filling (appendClosingPoints), or moves
/// the first and last point to their midpoint; then settles the corner strengths around the seam. 0 for fewer
/// than 3 points, for fewer than 4 when nothing was appended, and when the append fails.
LUMO_API int CRV_FreehandInfoClose(CRV_FREEHANDINFO* record, int appendClosingPoints,
                                   const int* spacing) noexcept;

/// The corner strength at points[index], from the five points index-2 .. index+2, which must exist; 0 for an
/// index below 2. 256 |D x B| / |B|^2 of a first difference B and a second difference D: it grows with the
/// size of the bend as well as with its sharpness.
LUMO_API int CRV_FreehandCalcCorner(int index, const tagPOINT* points) noexcept;
