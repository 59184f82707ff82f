// The workbench's objects as COM objects, as the real add-in and Outlook show theirs: the add-in's implement
// the interfaces of the type library, the session, its folders and the collections are called by name. Each
// goes to the traced object of the workbench behind it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "VexaControls.h"
#include "contracts/Addin.h"
#include "windows/com/ServerObject.h"

namespace vexa::workbench {

using windows::ContractBehind;
using windows::LivingObjects;
using windows::MakeObject;
using windows::ObjectBehind;
using windows::ServerObject;

class Workbench;

/// What the exported objects share. Objects keep it; the workbench must outlive them all.
class Exports : public std::enable_shared_from_this<Exports> {
 public:
  /// `module` carries the type library. Throws when it cannot be loaded.
  static std::shared_ptr<Exports> Make(Workbench& workbench, const std::wstring& module);

  Workbench& TheWorkbench() const { return workbench_; }
  ITypeLib& Library() const { return *library_.Get(); }

  /// The running add-in.
  windows::ComPtr<IVexaAddin> Addin();
  /// New objects of the add-in's two classes.
  windows::ComPtr<IRegSettings> NewRegSettings();
  windows::ComPtr<IMonitoredFolder> NewMonitoredFolder();

  // --- between the objects; null for null

  windows::ComPtr<IRegSettings> Export(const RegSettingsRef& settings);
  windows::ComPtr<IMonitoredFolder> Export(const std::shared_ptr<MonitoredFolder>& folder);
  windows::ComPtr<IVexaUtilities> Export(const std::shared_ptr<Utilities>& utilities);
  windows::ComPtr<IVexaScanner> Export(const std::shared_ptr<Scanner>& scanner);
  windows::ComPtr<IVexaApplication> Export(const std::shared_ptr<AddinApplication>& application);
  windows::ComPtr<IDispatch> Export(const NameSpaceRef& session);
  windows::ComPtr<IDispatch> Export(const std::shared_ptr<OutlookApplication>& application);
  windows::ComPtr<IDispatch> Export(const std::shared_ptr<Recipient>& recipient);
  windows::ComPtr<IDispatch> Export(const std::shared_ptr<MailItem>& mail);
  windows::ComPtr<IDispatch> Export(const std::shared_ptr<Folders>& folders);
  windows::ComPtr<IDispatch> Export(const FolderRef& folder);
  /// An object that is only handed through.
  windows::ComPtr<IDispatch> ExportOpaque(const ObjectRef& object);

 private:
  Exports(Workbench& workbench, windows::ComPtr<ITypeLib> library)
      : workbench_(workbench), library_(std::move(library)) {}

  Workbench& workbench_;
  windows::ComPtr<ITypeLib> library_;
};

using ExportsRef = std::shared_ptr<Exports>;

/// Makes the add-in's two classes creatable by their names in this process, while it lives.
class ClassRegistration {
 public:
  /// Called by the thread that objects are to be made on.
  explicit ClassRegistration(const ExportsRef& exports);
  ClassRegistration(const ClassRegistration&) = delete;
  ClassRegistration& operator=(const ClassRegistration&) = delete;
  ~ClassRegistration();

 private:
  struct Named {
    HKEY root;
    std::wstring name;
  };

  void Add(const wchar_t* name, const CLSID& ownId, const windows::ComPtr<IUnknown>& factory);
  /// The id under which the class is looked up: the one that is registered, whosever it is, since a class
  /// object of this process goes before it; else one of the workbench's own.
  CLSID FindOrName(const wchar_t* name, const CLSID& ownId);
  void Revoke();

  std::vector<DWORD> registered_;
  std::vector<Named> named_;  // in the registry, by this object
};

using Maker = std::function<windows::ComPtr<IUnknown>()>;
windows::ComPtr<IUnknown> MakeClassFactory(const Maker& maker);

}  // namespace vexa::workbench
