#include "ZrXmlRegistrationTable.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <typeindex>
#include <unordered_map>

namespace {
// Tables live until the program ends and are never destroyed: objects with static storage may still
// read or write themselves while other statics are being destroyed.
std::unordered_map<std::type_index, std::unique_ptr<ZrXmlRegistrationTable>>& tables() {
  static auto* theTables = new std::unordered_map<std::type_index, std::unique_ptr<ZrXmlRegistrationTable>>;
  return *theTables;
}

// Guards the map of tables: classes register for the first time on whichever thread reads or writes
// their first object.
std::mutex& tablesLock() {
  static auto* theLock = new std::mutex;
  return *theLock;
}

// The class find() answered last on this thread, and its table: objects of one class mostly come in a
// row, and the answer needs no lock.
thread_local const std::type_info* theLastType __attribute__((tls_model("initial-exec"))) = nullptr;
thread_local ZrXmlRegistrationTable* theLastTable __attribute__((tls_model("initial-exec"))) = nullptr;

// The first item whose token text is not less than the text, in items sorted by token text.
template <class Items>
auto lowerBoundByText(Items& items, const std::string& text) {
  return std::lower_bound(items.begin(), items.end(), text,
                          [](const auto& item, const std::string& wanted) { return item.token.tokenText() < wanted; });
}

// map[token] = value on a vector kept sorted by token text: a token text already present keeps its
// first token and takes the new value.
template <class Item, class Assign>
void assignSorted(std::vector<Item>& items, const ZrToken& token, Assign assign) {
  auto place = lowerBoundByText(items, token.tokenText());
  if (place == items.end() || place->token.tokenText() != token.tokenText()) {
    Item item{};
    item.token = token;
    place = items.insert(place, item);
  }
  assign(*place);
}
}  // namespace

ZrXmlRegistrationTable* ZrXmlRegistrationTable::find(const std::type_info& type) {
  if (&type == theLastType) return theLastTable;
  ZrXmlRegistrationTable* table = nullptr;
  {
    std::lock_guard<std::mutex> lock(tablesLock());
    auto found = tables().find(std::type_index(type));
    if (found == tables().end()) return nullptr;
    table = found->second.get();
  }
  theLastType = &type;
  theLastTable = table;
  return table;
}

ZrXmlRegistrationTable* ZrXmlRegistrationTable::findOrCreate(const std::type_info& type, bool& created) {
  ZrXmlRegistrationTable* table = find(type);
  created = false;
  if (table) return table;
  {
    std::lock_guard<std::mutex> lock(tablesLock());
    std::unique_ptr<ZrXmlRegistrationTable>& entry = tables()[std::type_index(type)];
    if (!entry) {
      entry.reset(new ZrXmlRegistrationTable);
      created = true;
    }
    table = entry.get();
  }
  theLastType = &type;
  theLastTable = table;
  return table;
}

void ZrXmlRegistrationTable::seal() {
  for (const Call& call : m_theCalls) {
    std::vector<Entry>& entries = call.kind == ELEMENT ? m_theElements : m_theAttributes;
    assignSorted(entries, call.token, [&call](Entry& entry) {
      entry.offset = call.offset;
      entry.null = call.null;
    });
    if (call.readOnly) {
      const ZrU32 code = call.kind == ELEMENT ? 0 : 1;
      assignSorted(m_theMarks, call.token, [code](Mark& mark) { mark.code = code; });
    }
  }
  m_theSealed.store(true, std::memory_order_release);
}

bool ZrXmlRegistrationTable::hasMark(const ZrToken& token, ZrU32 code) const {
  auto place = lowerBoundByText(m_theMarks, token.tokenText());
  return place != m_theMarks.end() && place->token.tokenText() == token.tokenText() && place->code == code;
}

// A class registers a handful of members: a look at each, length first, beats halving the range.
const ZrXmlRegistrationTable::Entry* ZrXmlRegistrationTable::findIn(const std::vector<Entry>& entries,
                                                                    const ZrToken& token) {
  const std::string& text = token.tokenText();
  const std::size_t theFewEntries = 8;
  if (entries.size() <= theFewEntries) {
    for (const Entry& entry : entries)
      if (Zr::textEqual(entry.token.tokenText(), text)) return &entry;
    return nullptr;
  }
  auto place = lowerBoundByText(entries, text);
  return place != entries.end() && place->token.tokenText() == text ? &*place : nullptr;
}
