#include "tav/pref.h"

#include <atomic>

namespace TavPref {

IAppPrefObject::~IAppPrefObject() = default;

CSecretAppPrefObject<bool>::CSecretAppPrefObject(std::string_view key, bool value) noexcept
    : key_(key), value_(value ? 1 : 0) {
  CAppPrefManager::GetInstance().Register(this);
}

CSecretAppPrefObject<bool>::~CSecretAppPrefObject() { CAppPrefManager::GetInstance().Unregister(this); }

bool CSecretAppPrefObject<bool>::GetValue() const noexcept {
  return std::atomic_ref<int>(const_cast<int&>(value_)).load(std::memory_order_relaxed) != 0;
}

void CSecretAppPrefObject<bool>::SetValue(bool value) noexcept {
  std::atomic_ref<int>(value_).store(value ? 1 : 0, std::memory_order_relaxed);
}

CAppPrefManager& CAppPrefManager::GetInstance() noexcept {
  static CAppPrefManager manager;
  return manager;
}

CSecretAppPrefObject<bool>* CAppPrefManager::FindBool(std::string_view key) noexcept {
  for (CSecretAppPrefObject<bool>* object : objects_)
    if (object != nullptr && object->GetKey() == key) return object;
  return nullptr;
}

void CAppPrefManager::Register(CSecretAppPrefObject<bool>* object) noexcept {
  for (CSecretAppPrefObject<bool>*& slot : objects_)
    if (slot == nullptr) {
      slot = object;
      return;
    }
}

void CAppPrefManager::Unregister(CSecretAppPrefObject<bool>* object) noexcept {
  for (CSecretAppPrefObject<bool>*& slot : objects_)
    if (slot == object) slot = nullptr;
}

namespace {
// Made when the library is loaded, so that a host finds it in the manager before the first offset.
CSecretAppPrefObject<bool> allowPureOffsetCurve("Lumo/AllowShiftToAccessPureOffsetCurve", false);
}  // namespace

CSecretAppPrefObject<bool>& AllowPureOffsetCurve() noexcept { return allowPureOffsetCurve; }

}  // namespace TavPref
