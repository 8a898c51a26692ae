#ifndef ZR_XML_REGISTRATION_TABLE_H
#define ZR_XML_REGISTRATION_TABLE_H

#include <ZrTextEqual.h>
#include <ZrToken.h>
#include <ZrTypes.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <typeinfo>
#include <vector>

class ZrXmlObject;

// The registrations of one class of compounds, kept once for every object of the class that registers
// alike: the same calls, in the same order, with the same tokens, each naming a member at the same
// offset from the object. A model of a million small compounds then holds one table instead of a
// million sets of maps, and reading an object checks its registrations against the table instead of
// building maps.
//
// The table is recorded from the first object of a class that registers. Every later object still runs
// its own registerComponents(), and each call is compared with the recorded one; an object whose calls
// differ in any way (another token, a member elsewhere, a call more or less) keeps maps of its own. So
// the table never stands for registrations an object did not make.
//
// Looked up by token, the table answers as the maps would: entries ordered by token text, one entry per
// token text, the first token registered as its key and the last object registered as its value.
class ZrXmlRegistrationTable {
 public:
  enum Kind : std::uint8_t { ELEMENT, ATTRIBUTE };

  // One registration call: a member named by its distance from the compound, or none.
  struct Call {
    ZrToken token;
    std::intptr_t offset;
    Kind kind;
    bool readOnly;
    bool null;
  };

  // One entry of the element or attribute table.
  struct Entry {
    ZrToken token;
    std::intptr_t offset;
    bool null;
  };

  // One entry of the read-only marks: code 0 an element, 1 an attribute, shared by token text.
  struct Mark {
    ZrToken token;
    ZrU32 code;
  };

  // The table of a class, or null when none was recorded yet.
  static ZrXmlRegistrationTable* find(const std::type_info& type);
  // The table of a class, made new and empty when there was none (then `created` is set): the caller
  // that created it records it, and objects of the class on other threads keep maps of their own until it
  // is sealed. Tables are kept for the rest of the program. Safe to call from several threads at once.
  static ZrXmlRegistrationTable* findOrCreate(const std::type_info& type, bool& created);

  // Turns an object's address and a member's into the offset kept, and back; inline, as every object
  // read passes each of its registrations through them.
  static std::intptr_t offsetOf(const void* object, const ZrXmlObject* member) {
    return static_cast<std::intptr_t>(reinterpret_cast<std::uintptr_t>(member) - reinterpret_cast<std::uintptr_t>(object));
  }
  static ZrXmlObject* memberAt(const void* object, std::intptr_t offset, bool null) {
    if (null) return nullptr;
    return reinterpret_cast<ZrXmlObject*>(reinterpret_cast<std::uintptr_t>(object) + static_cast<std::uintptr_t>(offset));
  }
  static ZrXmlObject* memberAt(const void* object, const Entry& entry) {
    return memberAt(object, entry.offset, entry.null);
  }

  void record(const Call& call) { m_theCalls.push_back(call); }
  // Sorts the recorded calls into the three look-up tables; called once, when recording ends. Only a
  // sealed table is shared, and never changes again: threads that see it sealed read it without a lock.
  void seal();
  bool sealed() const { return m_theSealed.load(std::memory_order_acquire); }

  const std::vector<Call>& calls() const { return m_theCalls; }
  const std::vector<Entry>& elements() const { return m_theElements; }
  const std::vector<Entry>& attributes() const { return m_theAttributes; }
  const std::vector<Mark>& marks() const { return m_theMarks; }

  // The entry whose token text equals the token's, or null.
  const Entry* findElement(const ZrToken& token) const { return findIn(m_theElements, token); }
  const Entry* findAttribute(const ZrToken& token) const { return findIn(m_theAttributes, token); }
  // The same, trying first the entry at `next`, which is then left just after the entry found. Documents
  // hold an object's children and attributes in token order, as the writer puts them, so an object that
  // keeps `next` from one look-up to the next mostly finds its entry at the first comparison.
  const Entry* findElement(const ZrToken& token, std::uint16_t& next) const { return findFrom(m_theElements, token, next); }
  const Entry* findAttribute(const ZrToken& token, std::uint16_t& next) const {
    return findFrom(m_theAttributes, token, next);
  }
  bool hasMark(const ZrToken& token, ZrU32 code) const;

 private:
  static const Entry* findIn(const std::vector<Entry>& entries, const ZrToken& token);
  static const Entry* findFrom(const std::vector<Entry>& entries, const ZrToken& token, std::uint16_t& next) {
    if (next < entries.size() && Zr::textEqual(entries[next].token.tokenText(), token.tokenText())) return &entries[next++];
    const Entry* found = findIn(entries, token);
    if (found) next = static_cast<std::uint16_t>(std::min<std::size_t>(found - entries.data() + 1, UINT16_MAX));
    return found;
  }

  std::vector<Call> m_theCalls;
  std::vector<Entry> m_theElements;
  std::vector<Entry> m_theAttributes;
  std::vector<Mark> m_theMarks;
  std::atomic<bool> m_theSealed{false};
};

#endif
