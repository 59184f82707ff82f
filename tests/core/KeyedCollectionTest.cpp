#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "core/KeyedCollection.h"

namespace vexa {
namespace {

/// Keys of many stores that take turns, of ids that begin alike and count up; some of their own making.
std::vector<std::string> ManyKeys(std::mt19937& random, size_t count) {
  std::vector<std::string> keys;
  for (size_t i = 0; i < count; ++i) {
    const std::string store = std::string(60, 'a') + std::to_string(random() % 100) + std::string(70, 'b');
    std::string key = store.substr(0, 40) + std::to_string(random() % 100000) + store.substr(random() % 3);
    if (random() % 20 == 0) std::ranges::shuffle(key, random);
    if (random() % 20 == 0) key.resize(random() % key.size());
    keys.push_back(std::move(key));
  }
  return keys;
}

TEST(KeyedCollection, IsTheSameAsAPlainList) {
  const unsigned seed = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  for (int run = 0; run < 20; ++run) {
    KeyedCollection<int> collection;
    std::vector<std::pair<std::string, int>> plain;
    const std::vector<std::string> keys = ManyKeys(random, 1 + random() % 400);
    for (int step = 0; step < 1500; ++step) {
      const std::string& key = keys[random() % keys.size()];
      const auto at = std::ranges::find(plain, key, &std::pair<std::string, int>::first);
      if (random() % 2 == 0) {
        ASSERT_EQ(collection.Remove(key), at != plain.end());
        if (at != plain.end()) plain.erase(at);
      } else if (at == plain.end()) {
        collection.Add(key, step);
        plain.emplace_back(key, step);
      } else {
        ASSERT_THROW(collection.Add(key, step), Error);
        ASSERT_EQ(*collection.Find(key), at->second);
      }
      if (step % 1000 == 999 && run % 4 == 0) {
        collection.Clear();
        plain.clear();
      }
      ASSERT_EQ(collection.Size(), plain.size());
    }
    std::vector<std::pair<std::string, int>> contents;
    collection.ForEach([&](const std::string& key, int value) { contents.emplace_back(key, value); });
    ASSERT_EQ(contents, plain);
  }
}

TEST(KeyFrames, MakeUpTheirKeyAndNoOther) {
  const unsigned seed = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  KeyFrames frames;
  for (const std::string& key : ManyKeys(random, 3000)) {
    const KeyFrames::Number frame = frames.FrameFor(key);
    const std::string ownPart(frames.OwnPart(frame, key));
    ASSERT_EQ(frames.KeyOf(frame, ownPart), key);
    ASSERT_TRUE(frames.Make(frame, ownPart, key));
    std::string other = key + "x";
    ASSERT_FALSE(frames.Make(frame, ownPart, other));
    other.resize(key.size());
    if (!other.empty()) ++other[random() % other.size()];
    ASSERT_EQ(frames.Make(frame, ownPart, other), other.empty());
  }
}

TEST(KeyIndex, FindsAmongNumbersOfOneHash) {
  KeyIndex index;
  constexpr uint32_t sameHash = 0xFFFFFFF0;
  for (uint32_t number = 0; number < 1000; ++number) {
    const uint32_t hash = sameHash + number % 3;
    index.Insert(index.FindPlace(hash, [](uint32_t) { return false; }), hash, number);
  }
  const auto has = [&](uint32_t number) {
    return index.Find(sameHash + number % 3, [&](uint32_t found) { return found == number; }) == number;
  };
  for (uint32_t number = 0; number < 1000; number += 2) index.Erase(sameHash + number % 3, number);
  for (uint32_t number = 0; number < 1000; ++number) ASSERT_EQ(has(number), number % 2 == 1) << number;
}

TEST(KeyIndex, HashesSpreadKeysThatDifferInAnyOneByte) {
  // Each byte of a long key, and each length: no two of these keys may look the same to most tables.
  std::vector<uint32_t> hashes;
  const std::string key(312, 'A');
  for (size_t at = 0; at < key.size(); ++at) {
    std::string other = key;
    other[at] = 'B';
    hashes.push_back(HashOfKey(other));
    hashes.push_back(HashOfKey(std::string_view(key).substr(at)));
  }
  std::ranges::sort(hashes);
  const auto different = std::unique(hashes.begin(), hashes.end());
  EXPECT_LE(hashes.end() - different, 1) << "of 624 in four thousand million";
}

}  // namespace
}  // namespace vexa
