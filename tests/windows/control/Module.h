// The module under test as COM would load it, and the apartment of a test.
#pragma once

#include <windows.h>
// windows.h first
#include <gtest/gtest.h>
#include <ole2.h>

#include <string>

#include "VexaControls.h"
#include "tests/windows/TestModule.h"
#include "windows/com/Com.h"

namespace vexa::windows {

class Module {
 public:
  Module() : handle_(LoadLibraryW(TestedModulePath().c_str())) {}
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;
  ~Module() { FreeLibrary(handle_); }

  template <typename Function>
  Function* Export(const char* name) const {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(handle_, name)));
  }
  ComPtr<IClassFactory> Factory() const {
    void* factory = nullptr;
    EXPECT_EQ(Export<decltype(DllGetClassObject)>("DllGetClassObject")(CLSID_OutlookPropertiesPage,
                                                                       IID_IClassFactory, &factory),
              S_OK);
    return ComPtr<IClassFactory>::Attach(static_cast<IClassFactory*>(factory));
  }
  ComPtr<IOutlookPropertiesPage> CreatePage() const {
    void* page = nullptr;
    EXPECT_EQ(Factory()->CreateInstance(nullptr, __uuidof(IOutlookPropertiesPage), &page), S_OK);
    return ComPtr<IOutlookPropertiesPage>::Attach(static_cast<IOutlookPropertiesPage*>(page));
  }
  /// No object of the module lives and nobody has locked it.
  bool CanUnload() const { return Export<HRESULT STDMETHODCALLTYPE()>("DllCanUnloadNow")() == S_OK; }

 private:
  HMODULE handle_;
};

class Apartment {
 public:
  Apartment() { EXPECT_EQ(OleInitialize(nullptr), S_OK); }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment() { OleUninitialize(); }
};

/// Number, description and source of a failed call on the page.
inline std::string LastError(const ComPtr<IOutlookPropertiesPage>& page, HRESULT result) {
  try {
    Check(result, page);
  } catch (const Error& error) {
    return std::to_string(error.Number) + " " + error.Description + ", " + error.Source;
  }
  return "no error";
}

}  // namespace vexa::windows
