// Deleting the enabled nodes, in one pass over the path:
//
//   per subpath   1. cut enabled open ends; turn a closed subpath whose ends are enabled to a kept start
//                 2. replace every run of enabled inner nodes by one segment
//   whole path    3. tidy up
//
// Step 2 is left out when no more than two nodes are left by step 1, so that is worked out first.

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "edit/fit.h"
#include "edit/segment.h"
#include "edit/tidy.h"
#include "lumo/crv_edit.h"
#include "lumo/crv_navigation.h"
#include "lumo/path_array.h"

using namespace Lumo;

namespace {

/// What stays of the subpath first..last after step 1: the nodes begin..end (none when begin > end), or, when
/// newStart is set, all of them, turned to start at that node.
struct Cut {
  int first;
  int last;
  int begin;
  int end;
  int newStart = -1;

  int Count() const { return std::max(end - begin + 1, 0); }
  /// The index that node i of the turned subpath had.
  int Original(int i) const {
    if (newStart < 0) return i;
    const int head = last - newStart;  // nodes behind the new start that now come first
    if (i == first) return newStart;
    return i - first <= head ? newStart + (i - first) : i - head;
  }
};

Cut CutClosed(const NODETYPE* types, int first, int last) {
  Cut cut{first, last, first, last};
  // Either end stands for both.
  const bool isEnabled = types[first].IsEnabled() || (types[last].IsOnCurve() && types[last].IsEnabled());
  if (!isEnabled) return cut;
  for (int i = first + 1; i < last && cut.newStart < 0; ++i) {
    if (types[i].IsOnCurve() && !types[i].IsEnabled()) cut.newStart = i;
  }
  if (cut.newStart < 0) cut.end = first - 1;
  return cut;
}

Cut CutOpen(const NODETYPE* types, int first, int last) {
  Cut cut{first, last, first, last};
  while (cut.begin <= last && types[cut.begin].IsOnCurve() && types[cut.begin].IsEnabled()) {
    const bool isCurve = cut.begin < last && types[cut.begin + 1].IsControl();
    cut.begin = std::min(cut.begin + (isCurve ? 3 : 1), last + 1);
  }
  const bool cutsLast = cut.begin < last && types[last].IsOnCurve() && types[last].IsEnabled();
  if (cutsLast) cut.end = std::max(last - std::max(SegmentNodes(types, last), 1), cut.begin);
  return cut;
}

Cut CutEnds(const NODETYPE* types, int first, int last) {
  const bool isClosed = types[first].IsMove() && types[first].IsClosed();
  return isClosed ? CutClosed(types, first, last) : CutOpen(types, first, last);
}

/// Turns the closed subpath of a cut to its new start. The new ends repeat that node; the old ones become one
/// enabled inner node. A letter begins where the subpath begins.
template <class T>
void TurnToNewStart(T* points, NODETYPE* types, const Cut& cut) {
  const int first = cut.first, last = cut.last, start = cut.newStart;
  NODETYPE seam = types[first];
  seam.SetKind(types[last].Kind());
  seam.Set(NODETYPE::kClosed | NODETYPE::kLetter, false);
  seam |= NODETYPE::kEnabled;
  NODETYPE head = types[start], tail = types[start];
  head.SetKind(NODETYPE::kMove);
  head |= NODETYPE::kClosed | NODETYPE::kUser;
  head.Set(NODETYPE::kLetter, types[first].IsLetter());
  tail |= NODETYPE::kClosed;
  tail.Set(NODETYPE::kUser, false);
  types[last] = seam;
  types[first] = head;
  types[start] = tail;
  points[first] = points[start];
  std::rotate(points + first + 1, points + start + 1, points + last + 1);
  std::rotate(types + first + 1, types + start + 1, types + last + 1);
}

struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};

/// Collects the records of the runs that are taken out.
class RunRecorder {
 public:
  /// Room for one record per enabled node, which is never exceeded. False when there is no memory.
  bool Reserve(const NODETYPE* types, int count) {
    std::size_t enabled = 0;
    for (int i = 0; i < count; ++i) enabled += types[i].IsEnabled() && types[i].IsOnCurve();
    if (enabled == 0) return true;
    runs_.reset(static_cast<WDeleteRunInfo*>(std::malloc(enabled * sizeof(WDeleteRunInfo))));
    return runs_ != nullptr;
  }
  void Add(const WDeleteRunInfo& run) {
    if (runs_) runs_.get()[count_] = run;
    ++count_;
  }
  int count() const { return count_; }
  WDeleteRunInfo* Release() {
    if (count_ == 0) runs_.reset();
    return runs_.release();
  }

 private:
  std::unique_ptr<WDeleteRunInfo, FreeMemory> runs_;
  int count_ = 0;
};

/// The pass over the path: nodes are read at their place and written to kept.., never behind.
template <class T>
struct Deletion {
  T* points;
  NODETYPE* types;
  bool removesInner;
  RunRecorder* recorder;
  int kept = 0;

  void Keep(int from, int to) {
    if (kept != from) MovePath(points, types, kept, from, to - from + 1);
    kept += to - from + 1;
  }

  void Record(const Cut& cut, int from, int to, int before, int after, bool fitted) {
    if (recorder == nullptr || from > to) return;
    const auto original = [&](int i) { return i < 0 ? -1 : cut.Original(i); };
    recorder->Add({original(from), to - from + 1, original(before), original(after), fitted});
  }

  void Subpath(const Cut& cut) {
    if (cut.begin > cut.end) return Record(cut, cut.first, cut.last, -1, -1, false);
    Record(cut, cut.first, cut.begin - 1, -1, cut.begin, false);
    if (cut.newStart >= 0) TurnToNewStart(points, types, cut);
    if (cut.begin != cut.first) {
      types[cut.begin].SetKind(NODETYPE::kMove);
      types[cut.begin].SetContinuity(ContinuityType::cusp);
    }
    Inner(cut);
  }

  /// The on-curve node that the segment behind on-curve node i ends at; end + 1 when there is none.
  int NextOnCurve(int i, int end) const {
    ++i;
    while (i <= end && types[i].IsControl()) ++i;
    return i;
  }

  /// Step 2.
  void Inner(const Cut& cut) {
    const int start = kept;
    int k0 = cut.begin;
    Keep(k0, k0);
    while (k0 < cut.end) {
      int k1 = NextOnCurve(k0, cut.end);
      const int next = k1;
      while (removesInner && k1 <= cut.end && types[k1].IsEnabled()) k1 = NextOnCurve(k1, cut.end);
      if (k1 == next) {  // nothing to take out, or malformed control points at the end
        Keep(k0 + 1, std::min(k1, cut.end));
      } else if (k1 > cut.end) {
        return Record(cut, k0 + 1, cut.last, k0, -1, false);
      } else if (k1 - k0 > 2) {
        Record(cut, k0 + 1, k1 - 1, k0, k1, true);
        ReplaceByCurve(k0, k1);
      } else if (types[k0].IsClosed() && types[k1].IsClosed()) {
        kept = start;
        return Record(cut, cut.first, cut.last, -1, -1, false);
      } else {
        Record(cut, k0 + 1, k1 - 1, k0, k1, false);
        Keep(k1, k1);
      }
      k0 = k1;
    }
    Record(cut, cut.end + 1, cut.last, cut.end, -1, false);
  }

  /// The stretch from k0, which is kept already, to k1 becomes one curve.
  void ReplaceByCurve(int k0, int k1) {
    DPoint cubic[4];
    FitCubic(points, types, k0, k1, cubic);
    const T end = points[k1];
    NODETYPE type = types[k1];
    type.SetKind(NODETYPE::kCurve);
    for (int k = 1; k < 3; ++k, ++kept) {
      points[kept] = FromDouble<T>(cubic[k]);
      types[kept] = NODETYPE::kControl;
    }
    points[kept] = end;
    types[kept++] = type;
  }
};

/// Whether a closed subpath's enabled move node lacks its other closed end.
bool LacksClosedEnd(const NODETYPE* types, int count, int first) {
  return types[first].IsMove() && types[first].IsClosed() && types[first].IsEnabled() &&
         OtherClosedEnd(types, first, count) < 0;
}

template <class T>
int DeleteEnabled(T* points, NODETYPE* types, int count, RunRecorder* recorder) {
  int left = 0;
  for (int first = 0; first < count;) {
    if (LacksClosedEnd(types, count, first)) return -1;
    const int end = SubpathEnd(types, count, first);
    left += CutEnds(types, first, end - 1).Count();
    first = end;
  }
  Deletion<T> deletion{points, types, left > 2, recorder};
  for (int first = 0; first < count;) {
    const int end = SubpathEnd(types, count, first);
    deletion.Subpath(CutEnds(types, first, end - 1));
    first = end;
  }
  return TidyUp(points, types, deletion.kept);
}

}  // namespace

template <class T>
int CRV_DeleteEnabled(T* points, NODETYPE* types, int count) noexcept {
  return HasNodes(points, types, count) ? DeleteEnabled(points, types, count, nullptr) : count;
}

template <class T>
int CRV_DeleteEnabledEx(T* points, NODETYPE* types, int count, WDeleteRunInfo** runs,
                        int* runCount) noexcept {
  if (runs != nullptr) *runs = nullptr;
  if (runCount != nullptr) *runCount = 0;
  if (!HasNodes(points, types, count)) return count;
  RunRecorder recorder;
  if (runs != nullptr && !recorder.Reserve(types, count)) return -1;
  const int newCount = DeleteEnabled(points, types, count, &recorder);
  if (newCount < 0) return newCount;
  if (runs != nullptr) *runs = recorder.Release();
  if (runCount != nullptr) *runCount = recorder.count();
  return newCount;
}

LUMO_CRV_DELETE(LUMO_INSTANTIATE, tagPOINT)
LUMO_CRV_DELETE(LUMO_INSTANTIATE, TavMath::DPoint)
