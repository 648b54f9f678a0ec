#pragma once
#include "edit/tidy.h"

namespace Lumo {

/// Joins two different ends of open subpaths and returns the new count, or -2 when they are none. Tracked
/// indices follow their nodes; where two subpaths are merged, an index of b goes on with a. *joined receives
/// the joined node (a or b themselves may be tracked).
template <class T>
int JoinEnds(T* points, NODETYPE* types, int count, int a, int b, int* joined, const TrackedNodes& tracked);

/// The point at which two ends are joined: their mean, each coordinate truncated, in doubles too, so that
/// joined nodes land on whole units in both variants.
template <class T>
T JointOf(const T& a, const T& b);

/// Gives both ends of an open subpath the closed flag and the joint's point. The user flag stays with the
/// start.
template <class T>
void CloseEnds(T* points, NODETYPE* types, int first, int last);

}  // namespace Lumo
