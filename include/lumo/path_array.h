#pragma once
// The three primitive operations on a pair of parallel arrays (points and node types), and gap opening and
// closing. None allocates, checks bounds against a capacity or changes a count: that stays the caller's
// business.

#include "lumo/node_type.h"
#include "lumo/point_types.h"

namespace Lumo {

/// Moves n nodes (points and types together) from index source to index destination of the same arrays. The
/// ranges may overlap. Nothing happens for n < 1, a negative index or a null array.
template <class T>
LUMO_TEMPLATE_API void MovePath(T* points, NODETYPE* types, int destination, int source, int n) noexcept;

/// Copies n nodes from another pair of arrays; overlap-safe, same refusals.
template <class T>
LUMO_TEMPLATE_API void CopyPath(T* toPoints, NODETYPE* toTypes, int destination,
                                const NotDeduced<T>* fromPoints, const NODETYPE* fromTypes, int source,
                                int n) noexcept;

/// Reverses the whole path: subpaths come out in reverse order, each reversed and beginning with a move node.
/// The closed flag, continuity, letter and enabled flags travel with their nodes. Nothing for count < 1.
template <class T>
LUMO_TEMPLATE_API void Reverse(T* points, NODETYPE* types, int count) noexcept;
/// Reverses the node range first..last (in either order, both included). Nothing for a negative index.
template <class T>
LUMO_TEMPLATE_API void Reverse(T* points, NODETYPE* types, int first, int last) noexcept;

}  // namespace Lumo

/// Moves the nodes index..count-1 up by n; the n slots from index on keep their old contents. The caller has
/// room for count + n nodes. Note the argument order: types before points.
template <class T>
LUMO_TEMPLATE_API void PathInsNext(NODETYPE* types, T* points, int index, int n, int count) noexcept;
/// Removes n nodes at index by moving the nodes index+n..count-1 down; n is limited to the nodes that are
/// there.
template <class T>
LUMO_TEMPLATE_API void PathDelNext(NODETYPE* types, T* points, int index, int n, int count) noexcept;

#define LUMO_PATH_ARRAY(LUMO_VERB, T)                                                                 \
  LUMO_VERB void Lumo::MovePath<T>(T*, NODETYPE*, int, int, int) noexcept;                            \
  LUMO_VERB void Lumo::CopyPath<T>(T*, NODETYPE*, int, const T*, const NODETYPE*, int, int) noexcept; \
  LUMO_VERB void Lumo::Reverse<T>(T*, NODETYPE*, int) noexcept;                                       \
  LUMO_VERB void Lumo::Reverse<T>(T*, NODETYPE*, int, int) noexcept;                                  \
  LUMO_VERB void PathInsNext<T>(NODETYPE*, T*, int, int, int) noexcept;                               \
  LUMO_VERB void PathDelNext<T>(NODETYPE*, T*, int, int, int) noexcept;
LUMO_PATH_ARRAY(LUMO_EXTERN, tagPOINT)
LUMO_PATH_ARRAY(LUMO_EXTERN, TavMath::DPoint)
