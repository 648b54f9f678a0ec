#pragma once
// The open ends of a path as candidates for connection: a tool lets the user pick a first and a second one.

#include "lumo/node_type.h"
#include "lumo/point_types.h"

/// Owned by the caller through the pointer, made and freed by these functions. A null record counts as empty.
struct LUMO_TYPE CRV_CONNECTINFO {
  tagPOINT* points;    ///< positions of the candidates
  int candidateCount;  ///< twice the number of open subpaths
  int first;           ///< first choice: a candidate index, or -1
  int second;          ///< second choice
  int* nodes;          ///< the path node index of each candidate
};

/// The two ends of every open subpath, in index order; a lone open move node is both of its own ends. Empty
/// for null arrays or a count below 1. Null when memory runs out.
LUMO_API CRV_CONNECTINFO* CRV_ConnectInfoConstruct(const tagPOINT* points, const NODETYPE* types,
                                                   int count) noexcept;
/// Frees a record with its arrays; nothing for null.
LUMO_API void CRV_ConnectInfoDestruct(CRV_CONNECTINFO* record) noexcept;
/// The first candidate, other than the two choices, that lies in the y-up rectangle (edges inside) becomes
/// choice 1 or 2. 1 on a hit, also for any other `which`, which stores nothing. The point is not used.
LUMO_API int CRV_ConnectInfoHitNode(CRV_CONNECTINFO* record, tagPOINT point, const tagRECT* rect,
                                    int which) noexcept;
/// 1 for a null record or no candidates.
LUMO_API int CRV_ConnectInfoEmpty(const CRV_CONNECTINFO* record) noexcept;
/// Whether choice `which` (1 first, 2 second) is made, its node index (-1 for none) and its point (out may be
/// null).
LUMO_API int CRV_ConnectInfoHasNode(const CRV_CONNECTINFO* record, int which) noexcept;
LUMO_API int CRV_ConnectInfoGetNumber(const CRV_CONNECTINFO* record, int which) noexcept;
LUMO_API int CRV_ConnectInfoGetPoint(const CRV_CONNECTINFO* record, int which, tagPOINT* out) noexcept;
