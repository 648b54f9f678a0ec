#include "lumo/polycurve.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "lumo/polyline.h"
#include "math/point_traits.h"
#include "polycurve/storage.h"
#include "polycurve/tolerances.h"

namespace Lumo {

// ---- Construction and assignment ----

template <class T>
PolycurveT<T>::PolycurveT() noexcept : data_(new(std::nothrow) CurveData<T>) {}

template <class T>
PolycurveT<T>::PolycurveT(std::size_t n) noexcept : data_(CurveData<T>::Copy(nullptr, nullptr, 0, n)) {}

template <class T>
PolycurveT<T>::PolycurveT(const T* points, const NODETYPE* types, std::size_t n) noexcept
    : data_(CurveData<T>::Copy(points, types, n)) {}

template <class T>
PolycurveT<T>::PolycurveT(const PolycurveT& other) noexcept
    : data_(other.data_ ? other.data_->Share() : nullptr) {}

template <class T>
PolycurveT<T>::PolycurveT(PolycurveT&& other) noexcept : data_(std::exchange(other.data_, nullptr)) {}

template <class T>
PolycurveT<T>::PolycurveT(const PolycurveT<OtherPoint>& other) noexcept : PolycurveT() {
  PushBack(other);
}

template <class T>
PolycurveT<T>::~PolycurveT() {
  if (data_) data_->Release();
}

template <class T>
PolycurveT<T>& PolycurveT<T>::operator=(const PolycurveT& other) noexcept {
  SetPoints(other);
  return *this;
}

template <class T>
PolycurveT<T>& PolycurveT<T>::operator=(PolycurveT&& other) noexcept {
  PolycurveT taken(std::move(other));
  Swap(taken);
  return *this;
}

// ---- Storage ----

template <class T>
CurveData<T>* PolycurveT<T>::GetCurveData() noexcept {
  CurveData<T>* writable = data_ ? data_->GetWritable() : new (std::nothrow) CurveData<T>;
  if (writable) data_ = writable;
  return writable;
}

template <class T>
bool PolycurveT<T>::MoveData(std::vector<T>&& points, std::vector<NODETYPE>&& types) noexcept {
  if (!data_ && !GetCurveData()) return false;
  CurveData<T>* filled = data_->MoveIn(points, types);
  if (filled) data_ = filled;
  return filled != nullptr;
}

template <class T>
void PolycurveT<T>::EnsureDataOwnership() noexcept {
  if (!data_) return;
  if (CurveDataBase<T>* owned = data_->Share()) {
    data_->Release();
    data_ = owned;
  }
}

template <class T>
bool PolycurveT<T>::Reserve(std::size_t n) noexcept {
  CurveData<T>* data = GetCurveData();
  if (!data) return false;
  try {
    data->points.reserve(n);
    data->types.reserve(n);
    return true;
  } catch (...) {
    return false;
  }
}

template <class T>
void PolycurveT<T>::Swap(PolycurveT& other) noexcept {
  std::swap(data_, other.data_);
}

template <class T>
bool PolycurveT<T>::Clear() noexcept {
  return MoveData({}, {});
}

template <class T>
DrawCurveT<T> PolycurveT<T>::GetBuffer() noexcept {
  CurveData<T>* data = GetCurveData();
  if (!data) return {};
  return {data->points.data(), data->types.data(), data->points.size()};
}

template <class T>
DrawCurveT<T> PolycurveT<T>::GetBuffer(std::size_t n) noexcept {
  return n > GetPointCount() ? GetBufferSetCount(n) : GetBuffer();
}

template <class T>
DrawCurveT<T> PolycurveT<T>::GetBufferSetCount(std::size_t n) noexcept {
  CurveData<T>* data = GetCurveData();
  if (!data || !EnsureRoom(*data, n)) return {};
  data->points.resize(n);
  data->types.resize(n);
  return GetBuffer();
}

template <class T>
bool PolycurveT<T>::ReleaseBuffer() noexcept {
  return true;
}

template <class T>
bool PolycurveT<T>::ReleaseBuffer(std::size_t n) noexcept {
  CurveData<T>* data = GetCurveData();
  if (!data || n > data->points.size()) return false;
  data->points.resize(n);
  data->types.resize(n);
  return true;
}

template <class T>
bool PolycurveT<T>::ReleaseBufferInternal(int n) noexcept {
  return n >= 0 && ReleaseBuffer(static_cast<std::size_t>(n));
}

// ---- Elements ----

template <class T>
const T& PolycurveT<T>::GetPoint(std::size_t i) const noexcept {
  static constexpr T kNone{};
  return i < GetPointCount() ? GetPoints()[i] : kNone;
}

template <class T>
const NODETYPE& PolycurveT<T>::GetNodeType(std::size_t i) const noexcept {
  static constexpr NODETYPE kNone{0};
  return i < GetPointCount() ? GetNodeTypes()[i] : kNone;
}

template <class T>
bool PolycurveT<T>::SetPoint(std::size_t i, const T& point) noexcept {
  const T copy = point;  // it may lie in the storage that is given up
  CurveData<T>* data = i < GetPointCount() ? GetCurveData() : nullptr;
  if (data) data->points[i] = copy;
  return data != nullptr;
}

template <class T>
bool PolycurveT<T>::SetNodeType(std::size_t i, NODETYPE type) noexcept {
  CurveData<T>* data = i < GetPointCount() ? GetCurveData() : nullptr;
  if (data) data->types[i] = type;
  return data != nullptr;
}

template <class T>
bool PolycurveT<T>::SetPoints(const T* points, const NODETYPE* types, std::size_t n) noexcept {
  PolycurveT filled(points, types, n);
  if (!filled.data_) return false;
  Swap(filled);
  return true;
}

template <class T>
bool PolycurveT<T>::SetPoints(const std::vector<T>& points, const std::vector<NODETYPE>& types) noexcept {
  return SetPoints(points.data(), types.data(), std::min(points.size(), types.size()));
}

template <class T>
bool PolycurveT<T>::SetPoints(std::vector<T>&& points, std::vector<NODETYPE>&& types) noexcept {
  return MoveData(std::move(points), std::move(types));
}

template <class T>
bool PolycurveT<T>::SetPoints(const PolycurveT& other) noexcept {
  if (IsSameData(other)) return true;
  PolycurveT shared(other);
  if (!shared.data_ && other.data_) return false;
  Swap(shared);
  return true;
}

template <class T>
bool PolycurveT<T>::SetNodeClosed(std::size_t i, bool closed) noexcept {
  NODETYPE type = GetNodeType(i);
  type.Set(NODETYPE::kClosed, closed);
  return SetNodeType(i, type);
}

template <class T>
bool PolycurveT<T>::IsUser(std::size_t i) const noexcept {
  return GetNodeType(i).IsUser();
}

template <class T>
bool PolycurveT<T>::SetUserNode(std::size_t i, bool user) noexcept {
  NODETYPE type = GetNodeType(i);
  type.Set(NODETYPE::kUser, user);
  return SetNodeType(i, type);
}

template <class T>
bool PolycurveT<T>::IsLetter(std::size_t i) const noexcept {
  return GetNodeType(i).IsLetter();
}

template <class T>
bool PolycurveT<T>::SetLetter(std::size_t i, bool letter) noexcept {
  NODETYPE type = GetNodeType(i);
  type.Set(NODETYPE::kLetter, letter);
  return SetNodeType(i, type);
}

// ---- Appending ----

template <class T>
bool PolycurveT<T>::MoveTo(const T& point) noexcept {
  return PushBack(point, NODETYPE::kMove | NODETYPE::kUser);
}

template <class T>
bool PolycurveT<T>::LineTo(const T& point) noexcept {
  return PushBack(point, NODETYPE::kLine | NODETYPE::kUser);
}

template <class T>
bool PolycurveT<T>::LineTo(const T& point, bool mergeCollinear) noexcept {
  const std::size_t count = GetPointCount();
  // Deliberate: this form never starts a path, so a caller that merges must move first.
  if (count == 0) return false;
  if (mergeCollinear && count >= 2 && GetNodeType(count - 1).IsLine() &&
      TavMath::AreCollinear(ToDouble(GetPoint(count - 2)), ToDouble(GetPoint(count - 1)), ToDouble(point),
                            kMergeLineToleranceSqrd)) {
    return SetPoint(count - 1, point);
  }
  return LineTo(point);
}

template <class T>
bool PolycurveT<T>::CubicTo(const T& control1, const T& control2, const T& end) noexcept {
  const T points[] = {control1, control2, end};
  constexpr NODETYPE kTypes[] = {NODETYPE::kControl, NODETYPE::kControl, NODETYPE::kCurve | NODETYPE::kUser};
  return PushBack(points, kTypes, 3);
}

template <class T>
bool PolycurveT<T>::PushBack(const T& point, NODETYPE type) noexcept {
  const T copy = point;  // it may lie in the storage that is given up
  CurveData<T>* data = GetCurveData();
  if (!data || !EnsureRoom(*data, data->points.size() + 1)) return false;
  data->points.push_back(copy);
  data->types.push_back(type);
  return true;
}

template <class T>
bool PolycurveT<T>::PushBack(const T* points, const NODETYPE* types, std::size_t n) noexcept {
  return ReplacePoints(GetPointCount(), 0, points, types, n);
}

template <class T>
bool PolycurveT<T>::PushBack(const std::vector<T>& points, const std::vector<NODETYPE>& types) noexcept {
  return PushBack(points.data(), types.data(), std::min(points.size(), types.size()));
}

template <class T>
bool PolycurveT<T>::PushBack(const PolycurveT& other) noexcept {
  return PushBack(other.GetPoints(), other.GetNodeTypes(), other.GetPointCount());
}

template <class T>
bool PolycurveT<T>::PushBack(const PolycurveT<OtherPoint>& other) noexcept {
  CurveData<T>* data = GetCurveData();
  const std::size_t n = other.GetPointCount();
  if (!data || !EnsureRoom(*data, data->points.size() + n)) return false;
  const OtherPoint* points = other.GetPoints();
  for (std::size_t i = 0; i < n; ++i) data->points.push_back(FromDouble<T>(ToDouble(points[i])));
  if (n) data->types.insert(data->types.end(), other.GetNodeTypes(), other.GetNodeTypes() + n);
  return true;
}

// ---- Comparison and operators ----

template <class T>
int PolycurveT<T>::Compare(const PolycurveT& other) const noexcept {
  const std::size_t count = GetPointCount();
  if (count != other.GetPointCount()) return count < other.GetPointCount() ? -1 : 1;
  if (count == 0 || IsSameData(other)) return 0;
  int order = std::memcmp(GetPoints(), other.GetPoints(), count * sizeof(T));
  if (order == 0) order = std::memcmp(GetNodeTypes(), other.GetNodeTypes(), count);
  return (order > 0) - (order < 0);
}

template <class T>
PolycurveT<T>& PolycurveT<T>::operator+=(const PolycurveT& other) noexcept {
  PushBack(other);
  return *this;
}

template <class T>
PolycurveT<T>& PolycurveT<T>::operator+=(const std::vector<PolycurveT>& others) noexcept {
  for (const PolycurveT& other : others) PushBack(other);
  return *this;
}

// ---- Companions ----

template <class T>
PolycurveRefT<T>::PolycurveRefT(const T* points, const NODETYPE* types, std::size_t n) noexcept
    : PolycurveT<T>(new(std::nothrow) CurveDataRef<T>(points, types, n)) {}

template <class T>
PolycurveRefT<T>::~PolycurveRefT() = default;

template <class T>
PolylineT<T>::PolylineT(const T* points, std::size_t n, bool closed) noexcept {
  if (!points || n == 0) return;
  closed = closed && n >= 2;
  const bool extraNode = closed && points[0] != points[n - 1];
  if (!this->Reserve(n + (extraNode ? 1 : 0))) return;
  constexpr unsigned char kMove = NODETYPE::kMove | NODETYPE::kUser;
  constexpr unsigned char kLine = NODETYPE::kLine | NODETYPE::kUser;
  // The last node of a closed subpath repeats its start, which carries the user flag for both.
  constexpr unsigned char kClosingLine = NODETYPE::kLine | NODETYPE::kClosed;
  this->PushBack(points[0], static_cast<unsigned char>(closed ? kMove | NODETYPE::kClosed : kMove));
  for (std::size_t i = 1; i < n; ++i) this->PushBack(points[i], kLine);
  if (extraNode) {
    this->PushBack(points[0], kClosingLine);
  } else if (closed) {
    this->SetNodeType(n - 1, kClosingLine);
  }
}

template <class T>
PolylineT<T>::~PolylineT() = default;

// Members of other subjects are defined, and instantiated one by one, in the folder of their subject.
LUMO_INSTANTIATE_CLASS PolycurveT<tagPOINT>;
LUMO_INSTANTIATE_CLASS PolycurveT<TavMath::DPoint>;
LUMO_INSTANTIATE_CLASS PolycurveRefT<tagPOINT>;
LUMO_INSTANTIATE_CLASS PolycurveRefT<TavMath::DPoint>;
LUMO_INSTANTIATE_CLASS PolylineT<tagPOINT>;
LUMO_INSTANTIATE_CLASS PolylineT<TavMath::DPoint>;

}  // namespace Lumo
