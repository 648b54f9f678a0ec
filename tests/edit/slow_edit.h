#pragma once
// The selection edits node by node, as a user with patience would do them: what the one-pass forms must
// equal.

#include "lumo/crv_convert.h"
#include "lumo/crv_edit.h"
#include "lumo/crv_navigation.h"
#include "lumo/path_array.h"
#include "support/generators.h"
#include "support/guarded_array.h"
#include "support/oracles.h"
#include "support/point_types.h"

namespace slow {

using test::Path;

/// Room for `room` more nodes than the path has; the arrays only ever hold what an edit may use.
template <class T>
Path<T> WithRoom(Path<T> path, int room) {
  path.Resize(path.count() + room);
  return path;
}
template <class T>
Path<T> Cut(Path<T> path, int count) {
  path.Resize(count);
  return path;
}

template <class T>
void Erase(Path<T>& path, int first, int n) {
  path.points.erase(path.points.begin() + first, path.points.begin() + first + n);
  path.types.erase(path.types.begin() + first, path.types.begin() + first + n);
}

template <class T>
Path<T> ToCurveEnabled(const Path<T>& source) {
  int count = source.count();
  Path<T> path = WithRoom(source, 2 * count);
  for (int i = 0; i < count; ++i) {
    if (path.type(i).IsEnabled()) count = CRV_ToCurveNode(path.points.data(), path.types.data(), count, i);
  }
  return Cut(path, count);
}

template <class T>
Path<T> ToLineEnabled(Path<T> path) {
  const auto cusp = [&](int i) { path.type(i) &= 0xCF; };
  const auto isLine = [&](int i) { return path.type(i).IsLine(); };
  for (int i = 0; i < path.count(); ++i) {
    const NODETYPE byte = path.type(i);
    if (!byte.IsEnabled() || !byte.IsCurve()) continue;
    i -= 2;
    Erase(path, i, 2);
    path.type(i) = static_cast<unsigned char>((byte & 0x3B) | 0x40 | (byte.IsClosed() ? 0 : 4));
    const int count = path.count();
    const int s = CRV_FirstNodeOfThisSubpath(path.types.data(), count, i);
    const int e = CRV_LastNodeOfThisSubpath(path.types.data(), count, i);
    if (i != s + 1 && isLine(i - 1)) cusp(i - 1);
    if (i == s + 1 && isLine(e)) cusp(s), cusp(e);
    if (i < e && isLine(i + 1)) cusp(i);
    if (i == e && isLine(s + 1)) cusp(s), cusp(e);
  }
  SmoothEnabledNodes(LUMO_ARRAYS(path));
  return path;
}

template <class T>
Path<T> AddEnabled(const Path<T>& source, int enableOld, int enableNew) {
  int count = source.count();
  Path<T> path = WithRoom(source, 3 * count);
  for (int i = 0; i < count;) {
    if (!path.type(i).IsEnabled()) {
      ++i;
      continue;
    }
    const int n = CRV_Add(path.points.data(), path.types.data(), count, i, 0.5, 1);
    count += n;
    path.type(i).Set(NODETYPE::kEnabled, (enableNew & 1) != 0);
    NODETYPE& old = path.type(i + n);
    old.Set(NODETYPE::kEnabled, (enableOld & 1) != 0);
    if (old.IsControl() && !old.IsEnabled()) old.Set(NODETYPE::kUser, false);
    i += n + 1;
  }
  return Cut(path, count);
}

/// The tidy-up as one walk in which nodes vanish and subpaths turn under the walker.
template <class T>
void TidyUp(Path<T>& path) {
  const auto type = [&](int i) -> NODETYPE& { return path.type(i); };
  bool pending = false;
  if (!path.empty()) type(0) &= type(0).IsMove() ? 0xFF : 0x3F;
  for (int i = 0; i < path.count(); ++i) {
    const bool isLast = i + 1 == path.count() || type(i + 1).IsMove();
    const bool lineFollows = i + 1 < path.count() && type(i + 1).IsLine();
    if (type(i).IsControl()) {
      if (i > 0 && type(i - 1).IsControl() && i + 1 < path.count()) type(i + 1).SetKind(NODETYPE::kCurve);
      type(i) &= 0xCF;
    } else if (type(i).IsCurve()) {
      if (isLast && !type(i).IsClosed()) type(i) &= 0xCF;
      if (lineFollows && (type(i) & 0x30) == 0x20) type(i) ^= 0x30;
    } else if (type(i).IsLine()) {
      if ((isLast && !type(i).IsClosed()) || lineFollows) type(i) &= 0xCF;
    } else {
      if (!type(0).IsLetter() && isLast && i + 1 < path.count()) {
        Erase(path, i--, 1);
        continue;
      }
      if (pending) {
        pending = false;
        int s = i - 1, e = i;
        while (!type(s).IsClosed()) --s;
        while (e < path.count() && !type(e).IsClosed()) ++e;
        if (e < path.count() && !type(e).IsMove()) {
          Path<T> turned;
          for (int k = i; k < e; ++k) turned.Add(type(k), path.point(k));
          turned.Add(static_cast<unsigned char>((type(s) & 0x37) | type(e).Kind()), path.point(e));
          for (int k = s + 1; k < i; ++k) turned.Add(type(k), path.point(k));
          Erase(path, s, 1);
          for (std::size_t k = 0; k < turned.types.size(); ++k) {
            path.types[static_cast<std::size_t>(s) + k] = turned.types[k];
            path.points[static_cast<std::size_t>(s) + k] = turned.points[k];
          }
          i = s;
        }
      }
    }
    if (type(i).IsClosed()) pending = type(i).IsMove();
  }
}

template <class T>
Path<T> BreakEnabled(Path<T> path, int keepEnabled) {
  const auto type = [&](int i) -> NODETYPE& { return path.type(i); };
  const auto end = [&](int i) {
    type(i) |= 0x04;
    type(i) &= 0xCF;
    type(i).Set(NODETYPE::kEnabled, keepEnabled != 0);
  };
  for (int i = 0; i < path.count(); ++i) {
    const int other = OtherClosedEnd(path.types.data(), i, path.count());
    const bool isEnabled = type(i).IsEnabled() || (type(i).IsMove() && other >= 0 && type(other).IsEnabled());
    if (!isEnabled || type(i).IsControl()) continue;
    const bool isInner = !CRV_IsFirstOrLastSubpathNode(path.types.data(), path.count(), i);
    if (!isInner && !type(i).IsClosed()) continue;
    if (type(i).IsMove()) {
      type(i) &= 0xC7;
      type(i) |= 0x01;
      type(other) &= 0xF7;
      end(other);
    } else {
      path.points.insert(path.points.begin() + i, path.point(i));
      path.types.insert(path.types.begin() + i, type(i));
      type(i + 1) &= 0x07;
      end(i++);
    }
  }
  TidyUp(path);
  return path;
}

/// Closes the subpaths with two enabled ends one after the other, each with a tidy-up.
template <class T>
Path<T> CloseEnabled(const Path<T>& source, bool addLines) {
  int count = source.count();
  Path<T> path = WithRoom(source, count + 4);
  const auto type = [&](int i) -> NODETYPE& { return path.type(i); };
  const auto point = [&](int i) -> T& { return path.point(i); };
  for (int i = 0; i < count; ++i) {
    const int e = CRV_LastNodeOfThisSubpath(path.types.data(), count, i);
    if (!type(i).IsMove() || type(i).IsClosed() || e == i) continue;
    if (!type(i).IsEnabled() || !type(e).IsEnabled()) continue;
    if (NNControl(path.types.data(), i, count) == e && (type(e).IsLine() || !addLines)) continue;
    int last = e;
    if (addLines && point(i) != point(e)) {
      const T from = point(i);
      point(i) = point(e);
      count = CRV_AppendLine(path.points.data(), path.types.data(), count, i, from);
      type(i + 1) = static_cast<unsigned char>(0x40 | (type(i) & 0x05));
      ++last;
    }
    int joined = -1;
    count = CRV_JoinTwoNodesExt(path.points.data(), path.types.data(), count, i, last, &joined);
    i = joined;
  }
  return Cut(path, count);
}

}  // namespace slow
