#include "lumo/curve_data.h"

#include <algorithm>
#include <new>
#include <utility>

namespace Lumo {

// The reference count. A new reference is made from one that the caller already holds, so the increment
// orders nothing and is relaxed. A decrement releases the holder's reads and writes, and whoever then finds
// itself alone acquires them: the deleter before it frees the arrays, a writer (IsShared) before it
// overwrites what another holder may just have finished reading.

template <class T>
CurveDataBase<T>::~CurveDataBase() = default;

template <class T>
void CurveDataBase<T>::AddReference() noexcept {
  references_.fetch_add(1, std::memory_order_relaxed);
}

template <class T>
std::uint64_t CurveDataBase<T>::ReferenceCount() const noexcept {
  return references_.load(std::memory_order_acquire);
}

template <class T>
void CurveDataBase<T>::Release() noexcept {
  if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

template <class T>
CurveData<T>::~CurveData() = default;

template <class T>
bool CurveData<T>::IsShared() const noexcept {
  return this->ReferenceCount() > 1;
}

template <class T>
CurveData<T>* CurveData<T>::Copy(const T* fromPoints, const NODETYPE* fromTypes, std::size_t count,
                                 std::size_t room) noexcept {
  auto* copy = new (std::nothrow) CurveData;
  if (!copy) return nullptr;
  try {
    copy->points.reserve(room);
    copy->types.reserve(room);
    if (fromPoints && fromTypes) {
      copy->points.assign(fromPoints, fromPoints + count);
      copy->types.assign(fromTypes, fromTypes + count);
    }
    return copy;
  } catch (...) {
    copy->Release();
    return nullptr;
  }
}

template <class T>
CurveData<T>* CurveData<T>::GetWritable() noexcept {
  if (!IsShared()) return this;
  CurveData* copy = Copy(points.data(), types.data(), points.size());
  if (copy) this->Release();
  return copy;
}

template <class T>
CurveData<T>* CurveData<T>::MoveIn(std::vector<T>& newPoints, std::vector<NODETYPE>& newTypes) noexcept {
  CurveData* target = IsShared() ? new (std::nothrow) CurveData : this;
  if (!target) return nullptr;
  const std::size_t count = std::min(newPoints.size(), newTypes.size());
  // Cutting a vector never allocates, so nothing here can fail half-way.
  newPoints.erase(newPoints.begin() + static_cast<std::ptrdiff_t>(count), newPoints.end());
  newTypes.erase(newTypes.begin() + static_cast<std::ptrdiff_t>(count), newTypes.end());
  target->points = std::move(newPoints);
  target->types = std::move(newTypes);
  newPoints = {};
  newTypes = {};
  if (target != this) this->Release();
  return target;
}

template <class T>
const T* CurveData<T>::GetPoints() const noexcept {
  return points.empty() ? nullptr : points.data();
}

template <class T>
const NODETYPE* CurveData<T>::GetNodeTypes() const noexcept {
  return types.empty() ? nullptr : types.data();
}

template <class T>
std::size_t CurveData<T>::GetCount() const noexcept {
  return points.size();
}

template <class T>
CurveData<T>* CurveData<T>::Share() noexcept {
  this->AddReference();
  return this;
}

template <class T>
CurveDataRef<T>::CurveDataRef(const T* points, const NODETYPE* types, std::size_t count) noexcept
    : points_(points), types_(types), count_(points && types ? count : 0) {}

template <class T>
CurveDataRef<T>::~CurveDataRef() = default;

template <class T>
bool CurveDataRef<T>::IsShared() const noexcept {
  return true;
}

template <class T>
CurveData<T>* CurveDataRef<T>::GetWritable() noexcept {
  CurveData<T>* copy = Share();
  if (copy) this->Release();
  return copy;
}

template <class T>
CurveData<T>* CurveDataRef<T>::MoveIn(std::vector<T>& newPoints, std::vector<NODETYPE>& newTypes) noexcept {
  auto* target = new (std::nothrow) CurveData<T>;
  if (!target) return nullptr;
  target->MoveIn(newPoints, newTypes);
  this->Release();
  return target;
}

template <class T>
const T* CurveDataRef<T>::GetPoints() const noexcept {
  return count_ ? points_ : nullptr;
}

template <class T>
const NODETYPE* CurveDataRef<T>::GetNodeTypes() const noexcept {
  return count_ ? types_ : nullptr;
}

template <class T>
std::size_t CurveDataRef<T>::GetCount() const noexcept {
  return count_;
}

template <class T>
CurveData<T>* CurveDataRef<T>::Share() noexcept {
  return CurveData<T>::Copy(points_, types_, count_);
}

LUMO_INSTANTIATE_CLASS CurveDataBase<tagPOINT>;
LUMO_INSTANTIATE_CLASS CurveDataBase<TavMath::DPoint>;
LUMO_INSTANTIATE_CLASS CurveData<tagPOINT>;
LUMO_INSTANTIATE_CLASS CurveData<TavMath::DPoint>;
LUMO_INSTANTIATE_CLASS CurveDataRef<tagPOINT>;
LUMO_INSTANTIATE_CLASS CurveDataRef<TavMath::DPoint>;

}  // namespace Lumo
