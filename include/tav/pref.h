#pragma once
// Hidden Boolean preferences: named "section/name", registered with one process-wide manager.

#include <string_view>

#include "lumo/export.h"

namespace TavPref {

class CAppPrefManager;

/// What the manager knows of a preference.
class LUMO_API IAppPrefObject {
 public:
  virtual ~IAppPrefObject();
  /// "section/name".
  virtual std::string_view GetKey() const noexcept = 0;
};

/// A value of type V registered with a manager.
template <class V, class Manager>
class LUMO_TYPE CPrefObject : public IAppPrefObject {
 public:
  /// The value.
  virtual V GetValue() const noexcept = 0;
  virtual void SetValue(V value) noexcept = 0;
};

template <class V>
class LUMO_TYPE CAppPrefObject : public CPrefObject<V, CAppPrefManager> {};

/// A preference that no user interface shows. The key must outlive the object (a literal). Reading and
/// writing the value is safe from any thread.
template <class V>
class CSecretAppPrefObject;

/// The one kind there is: a truth.
template <>
class LUMO_API CSecretAppPrefObject<bool> : public CAppPrefObject<bool> {
 public:
  /// Registers itself under the key for as long as it lives.
  CSecretAppPrefObject(std::string_view key, bool value) noexcept;
  CSecretAppPrefObject(const CSecretAppPrefObject&) = delete;
  CSecretAppPrefObject& operator=(const CSecretAppPrefObject&) = delete;
  ~CSecretAppPrefObject() override;
  /// As in the base classes.
  std::string_view GetKey() const noexcept override { return key_; }
  bool GetValue() const noexcept override;
  void SetValue(bool value) noexcept override;

 private:
  std::string_view key_;
  int value_;
};

/// Finds registered preferences by key. Hosts use it to read and set the hidden ones; registration is not for
/// use while other threads look preferences up.
class LUMO_API CAppPrefManager {
 public:
  /// The manager of the process.
  static CAppPrefManager& GetInstance() noexcept;
  /// Null when there is none of that key.
  CSecretAppPrefObject<bool>* FindBool(std::string_view key) noexcept;

 private:
  friend class CSecretAppPrefObject<bool>;
  CAppPrefManager() noexcept = default;
  void Register(CSecretAppPrefObject<bool>* object) noexcept;
  void Unregister(CSecretAppPrefObject<bool>* object) noexcept;

  static constexpr int kCapacity = 16;
  CSecretAppPrefObject<bool>* objects_[kCapacity] = {};
};

/// "Lumo/AllowShiftToAccessPureOffsetCurve": whether a request for the pure offset curve is honoured. False
/// until a host sets it.
LUMO_API CSecretAppPrefObject<bool>& AllowPureOffsetCurve() noexcept;

}  // namespace TavPref
