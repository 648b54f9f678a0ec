#pragma once
// The storage behind PolycurveT: a reference-counted pair of arrays. Hosts do not normally name these
// classes; docs/sharing.md states the contract that they keep between threads.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "lumo/forward.h"
#include "lumo/node_type.h"
#include "lumo/point_types.h"

namespace Lumo {

/// Abstract storage. Every object is made with one reference, which its maker holds. The order of the virtual
/// functions is part of the binary interface.
template <class T>
class LUMO_TEMPLATE_API CurveDataBase {
 public:
  CurveDataBase(const CurveDataBase&) = delete;
  CurveDataBase& operator=(const CurveDataBase&) = delete;

  virtual ~CurveDataBase();
  /// True when the storage must not be written in place.
  virtual bool IsShared() const noexcept = 0;
  /// Storage that the caller may write. Itself when it is not shared; otherwise a copy, in exchange for the
  /// caller's reference to this object. Null when memory runs out; the caller then keeps its reference.
  virtual CurveData<T>* GetWritable() noexcept = 0;
  /// Storage that holds the two given vectors, which are left empty; the caller's reference to this object is
  /// exchanged as by GetWritable. The longer vector is cut to the length of the other. Null (and nothing
  /// moved) on failure.
  virtual CurveData<T>* MoveIn(std::vector<T>& points, std::vector<NODETYPE>& types) noexcept = 0;
  /// The arrays; null when there are no nodes.
  virtual const T* GetPoints() const noexcept = 0;
  virtual const NODETYPE* GetNodeTypes() const noexcept = 0;
  /// The number of nodes.
  virtual std::size_t GetCount() const noexcept = 0;
  /// Storage that a new copy of the path may hold, with one reference for it. Null when memory runs out.
  virtual CurveDataBase* Share() noexcept = 0;

  /// Gives up one reference; the last one deletes the object.
  void Release() noexcept;

 protected:
  CurveDataBase() noexcept = default;
  /// The two halves of the reference count: one holder more; how many there are.
  void AddReference() noexcept;
  std::uint64_t ReferenceCount() const noexcept;

 private:
  std::atomic<std::uint64_t> references_{1};
};

/// Storage that owns its arrays, always of equal length.
template <class T>
class LUMO_TEMPLATE_API CurveData final : public CurveDataBase<T> {
 public:
  CurveData() noexcept = default;
  ~CurveData() override;
  bool IsShared() const noexcept override;
  CurveData* GetWritable() noexcept override;
  CurveData* MoveIn(std::vector<T>& points, std::vector<NODETYPE>& types) noexcept override;
  const T* GetPoints() const noexcept override;
  const NODETYPE* GetNodeTypes() const noexcept override;
  std::size_t GetCount() const noexcept override;
  CurveData* Share() noexcept override;

  /// A new object that holds a copy of the arrays (empty when either is null), with room for `room` nodes at
  /// least. Null when memory runs out.
  static CurveData* Copy(const T* points, const NODETYPE* types, std::size_t count,
                         std::size_t room = 0) noexcept;

  /// The arrays, for the sole holder only. Both must be left equally long.
  std::vector<T> points;
  std::vector<NODETYPE> types;
};

/// Storage that refers to the caller's arrays. It never writes them: a write, and also a copy of the path,
/// makes a CurveData of its own.
template <class T>
class LUMO_TEMPLATE_API CurveDataRef final : public CurveDataBase<T> {
 public:
  /// Counts as empty when either pointer is null.
  CurveDataRef(const T* points, const NODETYPE* types, std::size_t count) noexcept;
  /// See CurveDataBase.
  ~CurveDataRef() override;
  bool IsShared() const noexcept override;
  CurveData<T>* GetWritable() noexcept override;
  CurveData<T>* MoveIn(std::vector<T>& points, std::vector<NODETYPE>& types) noexcept override;
  const T* GetPoints() const noexcept override;
  const NODETYPE* GetNodeTypes() const noexcept override;
  std::size_t GetCount() const noexcept override;
  CurveData<T>* Share() noexcept override;

 private:
  const T* points_;
  const NODETYPE* types_;
  std::size_t count_;
};

LUMO_EXTERN_CLASS(CurveDataBase<tagPOINT>);
LUMO_EXTERN_CLASS(CurveDataBase<TavMath::DPoint>);
LUMO_EXTERN_CLASS(CurveData<tagPOINT>);
LUMO_EXTERN_CLASS(CurveData<TavMath::DPoint>);
LUMO_EXTERN_CLASS(CurveDataRef<tagPOINT>);
LUMO_EXTERN_CLASS(CurveDataRef<TavMath::DPoint>);

}  // namespace Lumo
