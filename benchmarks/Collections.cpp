// The working set of the folder picker: records under long keys, in the order in which they were added. Keys
// are looked for and removed in random order.
#include <QHash>
#include <QStringList>
#include <boost/multi_index/hashed_index.hpp>
#include <boost/multi_index/member.hpp>
#include <boost/multi_index/sequenced_index.hpp>
#include <boost/multi_index_container.hpp>

#include "benchmarks/Contest.h"
#include "benchmarks/Keys.h"
#include "core/KeyedCollection.h"

namespace vexa::bench {
namespace {

constexpr uint32_t Records = 10'000;

/// In the order of adding and in that of everything else.
const std::vector<std::string>& Added() {
  static const std::vector<std::string> keys = Keys(Records);
  return keys;
}
const std::vector<std::string>& Wanted() {
  static const std::vector<std::string> wanted = [] {
    std::vector<std::string> keys;
    for (const uint32_t number : Shuffled(Records)) keys.push_back(Added()[number]);
    return keys;
  }();
  return wanted;
}
std::vector<QString> InQt(const std::vector<std::string>& keys) {
  std::vector<QString> converted;
  for (const std::string& key : keys) converted.push_back(QString::fromStdString(key));
  return converted;
}
const std::vector<QString>& QtAdded() {
  static const std::vector<QString> keys = InQt(Added());
  return keys;
}
const std::vector<QString>& QtWanted() {
  static const std::vector<QString> keys = InQt(Wanted());
  return keys;
}

class Least {
 public:
  using Key = std::string;
  static const std::vector<Key>& InOrder() { return Added(); }
  static const std::vector<Key>& AtRandom() { return Wanted(); }

  void Add(const Key& key) {
    const uint32_t number = index_.Add(key);
    records_[number] = {{last_, UINT32_MAX}, 1};
    if (last_ != UINT32_MAX) records_[last_].links.next = number;
    last_ = number;
  }
  int Find(const Key& key) const { return records_[index_.Find(key)].value; }
  void Remove(const Key& key) {
    const Links links = records_[index_.Remove(key)].links;
    if (links.previous != UINT32_MAX) records_[links.previous].links.next = links.next;
    (links.next == UINT32_MAX ? last_ : records_[links.next].links.previous) = links.previous;
  }

 private:
  struct Record {
    Links links;
    int value;
  };
  LeastIndex index_{Records, size_t{Records} * KeyLength};
  std::unique_ptr<Record[]> records_ = std::make_unique_for_overwrite<Record[]>(Records);
  uint32_t last_ = UINT32_MAX;
};

class Ours {
 public:
  Ours() { records_.Reserve(Records); }
  using Key = std::string;
  static const std::vector<Key>& InOrder() { return Added(); }
  static const std::vector<Key>& AtRandom() { return Wanted(); }

  void Add(const Key& key) { records_.Add(key, 1); }
  int Find(const Key& key) const { return *records_.Find(key); }
  void Remove(const Key& key) { records_.Remove(key); }

 private:
  KeyedCollection<int> records_;
};

class MultiIndex {
 public:
  using Key = std::string;
  static const std::vector<Key>& InOrder() { return Added(); }
  static const std::vector<Key>& AtRandom() { return Wanted(); }

  MultiIndex() { records_.get<1>().reserve(Records); }
  void Add(const Key& key) { records_.get<0>().push_back({key, 1}); }
  int Find(const Key& key) const { return records_.get<1>().find(key)->value; }
  void Remove(const Key& key) { records_.get<1>().erase(key); }

 private:
  struct Record {
    std::string key;
    int value;
  };
  boost::multi_index_container<
      Record, boost::multi_index::indexed_by<
                  boost::multi_index::sequenced<>,
                  boost::multi_index::hashed_unique<
                      boost::multi_index::member<Record, std::string, &Record::key>, std::hash<std::string>>>>
      records_;
};

/// A list for the order beside a table for the keys.
class QtListAndHash {
 public:
  using Key = QString;
  static const std::vector<Key>& InOrder() { return QtAdded(); }
  static const std::vector<Key>& AtRandom() { return QtWanted(); }

  QtListAndHash() {
    order_.reserve(Records);
    values_.reserve(Records);
  }
  void Add(const Key& key) {
    values_.insert(key, 1);
    order_.append(key);
  }
  int Find(const Key& key) const { return values_.value(key); }
  void Remove(const Key& key) {
    values_.remove(key);
    order_.removeOne(key);
  }

 private:
  QStringList order_;
  QHash<QString, int> values_;
};

template <typename Collection>
void AddAll(std::unique_ptr<Collection>& collection) {
  collection = std::make_unique<Collection>();
  for (const auto& key : Collection::InOrder()) collection->Add(key);
}

template <typename Collection>
double Add() {
  std::unique_ptr<Collection> collection;
  return PerUnit(
      Records, [&] { collection.reset(); }, [&] { AddAll(collection); });
}

template <typename Collection>
double Find() {
  std::unique_ptr<Collection> collection;
  AddAll(collection);
  return PerUnit(Records, [&] {
    for (const auto& key : Collection::AtRandom()) Keep(collection->Find(key));
  });
}

template <typename Collection>
double Remove() {
  std::unique_ptr<Collection> collection;
  return PerUnit(
      Records, [&] { AddAll(collection); },
      [&] {
        for (const auto& key : Collection::AtRandom()) collection->Remove(key);
      });
}

}  // namespace

std::vector<Contest> CollectionContests() {
  const std::string collection = "ordered keyed collection of 10,000, 312-character keys: ";
  const std::vector<Goal> goals{{Goal::Kind::TimesLimit, 1.15}};
  const auto contest = [&](const char* work, auto least, auto ours, auto multiIndex, auto qt) {
    return Contest{collection + work,
                   "ns",
                   {{Role::Limit, "hash, copy or compare, table slot, links", least},
                    {Role::Ours, "KeyedCollection", ours},
                    {Role::Peer, "boost::multi_index", multiIndex},
                    {Role::Peer, "Qt list and hash", qt}},
                   goals};
  };
  return {contest("add", Add<Least>, Add<Ours>, Add<MultiIndex>, Add<QtListAndHash>),
          contest("find", Find<Least>, Find<Ours>, Find<MultiIndex>, Find<QtListAndHash>),
          contest("remove", Remove<Least>, Remove<Ours>, Remove<MultiIndex>, Remove<QtListAndHash>)};
}

}  // namespace vexa::bench
