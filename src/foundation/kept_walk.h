#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "foundation/failures.h"
#include "host/facade.h"

/// How a walk gets at the entries of its collection: each by its number when it comes to it, or all in one
/// enumeration.
enum class Entries : std::uint8_t { by_number, enumerated };
/// What a walk is for: the first entry of a key, or every one.
enum class Meets : std::uint8_t { first, every };
/// From the first entry to the last, or from the last to the first.
enum class Direction : std::uint8_t { forward, backward };

/// A walk over a host collection for the entries of one key (a name, a place), repeated for many keys: what
/// an earlier walk has read lets a later one pass over the entries that are known to have another key.
///
/// The walk itself stands in the code as a loop:
///
///     walk.begin(wanted);
///     while (walk.next()) {
///       const Entry entry = walk.entry();
///       if (walk.meets(entry.Name())) return entry;
///     }
///
/// - What is kept comes from such loops alone, as far as they got. Where the host refuses, the loop has the
///   failure with the consequence that it has there; nothing is kept of it, and the next walk asks again.
/// - It holds only while it is true: the collection's Count is what it was, and an entry that is known to
///   have the key is asked again, since the loop reads it before it uses it. Where either differs all is
///   forgotten, and the walk runs anew; one that has used an entry already, on from there.
/// - Whoever writes to an entry forgets it.
///
/// What can't be seen in this way: that an entry which is known by another key has got the wanted one from
/// somebody else.
template <class Entry, class Key>
class KeptWalk {
 public:
  KeptWalk(host::Collection<Entry> collection, Entries entries, Meets meets,
           Direction direction = Direction::forward)
      : collection_(std::move(collection)), entries_(entries), meets_(meets), direction_(direction) {}

  /// Starts a walk for that key; for none, it comes to every entry. False where nothing is kept any more.
  /// Throws Failure where the collection can't be had.
  bool begin(std::optional<Key> wanted) {
    const bool kept = take_collection();
    begin_again(std::move(wanted));
    return kept;
  }
  /// The same in a collection that was fetched anew, as the loop does it.
  bool begin(std::optional<Key> wanted, host::Collection<Entry> collection) {
    collection_ = std::move(collection);
    return begin(std::move(wanted));
  }
  /// The same for another key, without a look at the collection.
  void begin_again(std::optional<Key> wanted) {
    wanted_ = std::move(wanted);
    number_ = 0;
    has_met_ = false;
    has_used_ = false;
  }
  /// Narrows a walk that came to every entry so far down to one key.
  void want(Key wanted) { wanted_ = std::move(wanted); }

  /// Moves on to the next entry that has to be asked; false at the end. Throws Failure where a walk that runs
  /// anew can't have the collection.
  bool next() {
    if (number_ == 0 && !holds_) take_collection();
    if (has_met_) look_again();
    number_ = direction_ == Direction::forward ? next_number() : number_before();
    return number_ >= 1 && number_ <= size();
  }
  /// The entry's number in the collection, from 1.
  [[nodiscard]] std::int32_t number() const noexcept { return number_; }
  /// The entry itself; throws Failure where the host refuses it.
  [[nodiscard]] Entry entry() const {
    if (entries_ == Entries::enumerated) return enumerated_[index(number_)];
    const auto own = appended_.find(number_);
    return own == appended_.end() ? collection_.Item(number_) : own->second;
  }
  /// The key that the entry had when it was asked last; null where that isn't known.
  [[nodiscard]] const Key* known() const {
    const std::optional<Key>& key = keys_[index(number_)];
    return key ? &*key : nullptr;
  }
  /// Tells the key that the host has just given for the entry. True where it is the wanted one.
  bool meets(const Key& key) {
    if (known() && *known() != key) {
      holds_ = false;
      start_anew(keys_.size());
      if (meets_ == Meets::first || !has_used_) {
        number_ = 0;
        return false;
      }
    }
    learn(number_, key);
    appended_.erase(number_);
    has_met_ = entries_ == Entries::by_number && meets_ == Meets::every && wanted_ == key;
    has_used_ |= wanted_ == key;
    return wanted_ == key;
  }
  /// The loop does something with an entry whose key it couldn't learn.
  void used() noexcept { has_used_ = true; }

  /// A write of one's own may have given the entry with that number another key.
  void forget(std::int32_t number) {
    if (number < 1 || number > size() || !keys_[index(number)]) return;
    numbers_[*keys_[index(number)]].erase(number);
    keys_[index(number)].reset();
    unknown_.insert(number);
  }
  /// An entry of one's own was put at the end of the collection.
  void appended() {
    keys_.emplace_back();
    unknown_.insert(size());
  }
  /// The same; it needn't be fetched to be asked first.
  void appended(Entry entry) {
    appended();
    appended_.insert_or_assign(size(), std::move(entry));
  }
  /// One's own removal of the entry with that number: those behind it have moved up.
  void removed(std::int32_t number) {
    if (number < 1 || number > size()) return;
    std::vector<std::optional<Key>> left = std::exchange(keys_, {});
    left.erase(left.begin() + (number - 1));
    clear(left.size());
    for (std::int32_t each = 1; each <= size(); ++each) {
      if (const std::optional<Key>& key = left[index(each)]) learn(each, *key);
    }
  }
  /// Whatever the collection says.
  void forget_all() { holds_ = false; }
  /// How often all has been forgotten.
  [[nodiscard]] int generation() const noexcept { return generation_; }
  /// Whether the collection had no entries when the last walk began.
  [[nodiscard]] bool is_empty() const noexcept { return keys_.empty(); }
  /// All entries, as they were enumerated when the last walk began.
  [[nodiscard]] const std::vector<Entry>& enumerated() const noexcept { return enumerated_; }

 private:
  static std::size_t index(std::int32_t number) { return static_cast<std::size_t>(number - 1); }
  [[nodiscard]] std::int32_t size() const noexcept { return static_cast<std::int32_t>(keys_.size()); }

  /// True where what is kept still holds.
  bool take_collection() {
    if (entries_ == Entries::by_number) {
      const std::int32_t count = std::max(0, collection_.Count());
      if (holds_ && count == size()) return true;
      start_anew(static_cast<std::size_t>(count));
    } else {
      // The walk itself needs no count: one that is refused only means that all is enumerated anew.
      if (holds_ && !passes([&] { return collection_.Count() != size(); })) return true;
      enumerated_ = collection_.all();
      start_anew(enumerated_.size());
    }
    holds_ = true;
    return false;
  }
  /// Behind an entry with which the loop has done something. A loop goes to the number that it began with.
  void look_again() {
    has_met_ = false;
    if (!passes([&] { return collection_.Count() != size(); })) return;
    holds_ = false;
    start_anew(keys_.size());
  }
  void start_anew(std::size_t count) {
    ++generation_;
    clear(count);
  }
  void learn(std::int32_t number, const Key& key) {
    keys_[index(number)] = key;
    numbers_[key].insert(number);
    unknown_.erase(number);
  }
  void clear(std::size_t count) {
    keys_.assign(count, std::nullopt);
    numbers_.clear();
    unknown_.clear();
    appended_.clear();
    for (std::int32_t number = 1; number <= size(); ++number) unknown_.insert(unknown_.end(), number);
  }
  [[nodiscard]] std::int32_t next_number() const {
    if (!wanted_) return number_ + 1;
    const auto next_of = [&](const std::set<std::int32_t>& numbers) {
      const auto next = numbers.upper_bound(number_);
      return next == numbers.end() ? size() + 1 : *next;
    };
    const std::int32_t unknown = next_of(unknown_);
    const auto known = numbers_.find(*wanted_);
    return known == numbers_.end() ? unknown : std::min(unknown, next_of(known->second));
  }
  /// The same backward; 0 at the end.
  [[nodiscard]] std::int32_t number_before() const {
    const std::int32_t from = number_ == 0 ? size() + 1 : number_;
    if (!wanted_) return from - 1;
    const auto last_of = [&](const std::set<std::int32_t>& numbers) {
      const auto end = numbers.lower_bound(from);
      return end == numbers.begin() ? 0 : *std::prev(end);
    };
    const std::int32_t unknown = last_of(unknown_);
    const auto known = numbers_.find(*wanted_);
    return known == numbers_.end() ? unknown : std::max(unknown, last_of(known->second));
  }

  host::Collection<Entry> collection_;
  Entries entries_;
  Meets meets_;
  Direction direction_;
  std::vector<Entry> enumerated_;
  bool holds_ = false;  // what follows was taken from the collection as it is
  int generation_ = 0;
  std::vector<std::optional<Key>> keys_;           // by number
  std::map<Key, std::set<std::int32_t>> numbers_;  // of the entries that have the key
  std::set<std::int32_t> unknown_;                 // numbers of the others
  std::map<std::int32_t, Entry> appended_;         // by number, until they have been asked
  std::optional<Key> wanted_;
  std::int32_t number_ = 0;
  bool has_met_ = false;   // an entry that was got by its number, of which there may be more
  bool has_used_ = false;  // an entry, in this walk
};
