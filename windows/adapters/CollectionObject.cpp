// A collection of the contracts as a Visual Basic collection: what the library makes for the settings, and
// what the workbench hands out.
#include <array>

#include "windows/adapters/Adapters.h"
#include "windows/com/NamedObject.h"

namespace vexa::windows {
namespace {

void TakeValue(const CallArguments& arguments, size_t index, std::string& value) {
  value = arguments.Text(index);
}
void TakeValue(const CallArguments& arguments, size_t index, int32_t& value) {
  value = arguments.Number(index);
}

template <typename Value>
class CollectionObject final : public NamedObject<CollectionObject<Value>> {
  using Base = NamedObject<CollectionObject<Value>>;
  friend Base;

 public:
  explicit CollectionObject(CollectionRef<Value> collection)
      : Base(collection), collection_(std::move(collection)) {}

 private:
  static std::span<const typename Base::Member> Members() {
    using Member = typename Base::Member;
    static constexpr auto members = std::to_array<Member>({
        {{L"Item", DISPID_VALUE, 1, 1}, &CollectionObject::Item},
        {{L"Add", 1, 1, 4}, &CollectionObject::Add},
        {{L"Count", 2, 0, 0}, &CollectionObject::Count},
        {{L"Remove", 3, 1, 1}, &CollectionObject::Remove},
        {{L"_NewEnum", DISPID_NEWENUM, 0, 0}, &CollectionObject::Enumerate},
    });
    return members;
  }

  void Item(const CallArguments& arguments, VARIANT& result) {
    ToVariant(collection_->Item(arguments.Number(0)), result);
  }
  void Count(const CallArguments&, VARIANT& result) { ToVariant(collection_->Count(), result); }
  void Remove(const CallArguments& arguments, VARIANT&) { collection_->Remove(arguments.Number(0)); }

  /// Add(item, [key], [before], [after]).
  void Add(const CallArguments& arguments, VARIANT&) {
    Value value{};
    TakeValue(arguments, 0, value);
    // The lists of the settings are kept without keys, and an item has one place.
    const bool before = !arguments.IsMissing(2);
    const bool after = !arguments.IsMissing(3);
    if (!arguments.IsMissing(1) || (before && after)) throw MakeError(ErrorNumber::InvalidProcedureCall);
    if (before) {
      collection_->AddBefore(value, arguments.Number(2));
    } else if (after) {
      collection_->AddAfter(value, arguments.Number(3));
    } else {
      collection_->Add(value);
    }
  }

  void Enumerate(const CallArguments&, VARIANT& result) {
    const CollectionRef<Value> collection = collection_;
    result.punkVal = MakeEnumerator([collection] { return collection->Count(); },
                                    [collection](int32_t position, VARIANT& item) {
                                      ToVariant(collection->Item(position), item);
                                    })
                         .Detach();
    result.vt = VT_UNKNOWN;
  }

  CollectionRef<Value> collection_;
};

}  // namespace

template <typename Value>
ComPtr<IDispatch> ExportCollection(const CollectionRef<Value>& collection) {
  if (collection == nullptr) return nullptr;
  if (const auto* wrapper = dynamic_cast<const Wrapper*>(collection.get())) {
    return wrapper->Wrapped().As<IDispatch>();
  }
  return MakeObject<IDispatch, CollectionObject<Value>>(collection);
}

template ComPtr<IDispatch> ExportCollection(const CollectionRef<std::string>& collection);
template ComPtr<IDispatch> ExportCollection(const CollectionRef<int32_t>& collection);

}  // namespace vexa::windows
