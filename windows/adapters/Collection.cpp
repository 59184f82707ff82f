// The collections in the add-in's settings: Visual Basic collections, called by name. A position out of
// range is whatever error the collection raises.
#include "windows/adapters/Adapters.h"
#include "windows/com/LateBound.h"

namespace vexa::windows {
namespace {

std::string ValueOf(LateBound& collection, int32_t position, const std::string* /*type*/) {
  return collection.CallForText(L"Item", {position});
}
int32_t ValueOf(LateBound& collection, int32_t position, const int32_t* /*type*/) {
  return collection.CallForNumber(L"Item", {position});
}

template <typename Value>
class ComCollection final : public Collection<Value>, public Wrapper {
 public:
  explicit ComCollection(const ComPtr<IUnknown>& collection) : collection_(collection) {}

  ComPtr<IUnknown> Wrapped() const override { return collection_.Dispatch().template As<IUnknown>(); }

  int32_t Count() override { return collection_.CallForNumber(L"Count"); }
  Value Item(int32_t position) override {
    return ValueOf(collection_, position, static_cast<const Value*>(nullptr));
  }
  void Add(const Value& value) override { collection_.Call(L"Add", {value}); }
  void AddBefore(const Value& value, int32_t before) override {
    collection_.Call(L"Add", {value, MissingArgument(), before});
  }
  void AddAfter(const Value& value, int32_t after) override {
    collection_.Call(L"Add", {value, MissingArgument(), MissingArgument(), after});
  }
  void Remove(int32_t position) override { collection_.Call(L"Remove", {position}); }

 private:
  LateBound collection_;
};

}  // namespace

template <typename Value>
CollectionRef<Value> AdaptCollection(ComPtr<IUnknown> collection) {
  if (!collection) return nullptr;
  return std::make_shared<ComCollection<Value>>(collection);
}

template CollectionRef<std::string> AdaptCollection(ComPtr<IUnknown> collection);
template CollectionRef<int32_t> AdaptCollection(ComPtr<IUnknown> collection);

}  // namespace vexa::windows
