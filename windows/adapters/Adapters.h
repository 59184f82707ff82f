// The library's contracts over COM objects. The add-in's objects are bound by position in their interfaces,
// Outlook's by the names of their members.
#pragma once

#include <memory>

#include "VexaControls.h"
#include "contracts/Addin.h"
#include "windows/com/Com.h"

namespace vexa::windows {

/// The add-in object that was handed in, null for none. An object of another kind answers every call with
/// error 13, so that the error arises where the add-in is first used.
AddinAppRef AdaptAddin(IDispatch* addin);

NameSpaceRef AdaptSession(const ComPtr<IUnknown>& session);
FolderRef AdaptFolder(const ComPtr<IUnknown>& folder);

RegSettingsRef AdaptSettings(ComPtr<IRegSettings> settings);
/// The settings object behind an adapter; error 13 for any other implementation of the contract.
ComPtr<IRegSettings> SettingsBehind(const RegSettingsRef& settings);

/// The COM object behind a folder or another object that came from COM; null for null, error 13 for an
/// object that did not come from there.
ComPtr<IDispatch> DispatchBehind(const ObjectRef& object);

/// Anything that wraps a COM object, so that it can be handed out again.
class Wrapper {
 public:
  Wrapper() = default;
  Wrapper(const Wrapper&) = delete;
  Wrapper& operator=(const Wrapper&) = delete;
  virtual ~Wrapper() = default;
  virtual ComPtr<IUnknown> Wrapped() const = 0;
};

/// Makes the add-in's objects by the names that it registers its classes under.
std::unique_ptr<AddinObjectFactory> MakeObjectFactory();

template <typename Value>
CollectionRef<Value> AdaptCollection(ComPtr<IUnknown> collection);
/// The COM object behind a collection that came from COM; a new one over any other. Null for null.
template <typename Value>
ComPtr<IDispatch> ExportCollection(const CollectionRef<Value>& collection);

}  // namespace vexa::windows
