#ifndef ZR_XML_SPARE_STACK_H
#define ZR_XML_SPARE_STACK_H

#include <cstddef>
#include <memory>
#include <vector>

// A stack whose popped entries stay as spares for the next push: an entry pushed again keeps the storage
// of its strings and maps, so a document that goes up and down the same levels allocates nothing once it
// has reached its deepest level. A pushed entry holds what it held before: the caller sets every field
// it uses. Each entry has a place of its own on the heap, so an entry stays where it is while others are
// pushed, and reaching one is a single look-up. A copy holds the open entries only.
template <class Entry>
class ZrXmlSpareStack {
 public:
  ZrXmlSpareStack() = default;
  ZrXmlSpareStack(const ZrXmlSpareStack& other) { *this = other; }
  ZrXmlSpareStack& operator=(const ZrXmlSpareStack& other) {
    if (this == &other) return *this;
    m_theEntries.clear();
    for (std::size_t i = 0; i < other.m_theSize; ++i) m_theEntries.emplace_back(new Entry(other[i]));
    m_theSize = other.m_theSize;
    return *this;
  }

  Entry& push() {
    if (m_theSize == m_theEntries.size()) m_theEntries.emplace_back(new Entry());
    return *m_theEntries[m_theSize++];
  }
  void pop() { --m_theSize; }

  std::size_t size() const { return m_theSize; }
  std::size_t kept() const { return m_theEntries.size(); }  // open and spare entries
  bool empty() const { return m_theSize == 0; }
  Entry& back() { return *m_theEntries[m_theSize - 1]; }
  const Entry& back() const { return *m_theEntries[m_theSize - 1]; }
  Entry& operator[](std::size_t index) { return *m_theEntries[index]; }
  const Entry& operator[](std::size_t index) const { return *m_theEntries[index]; }
  // Any entry pushed once, open or spare: a popped entry keeps what it held until it is pushed again.
  const Entry& entryAt(std::size_t index) const { return *m_theEntries[index]; }

  // Walks the open entries, outermost first.
  class const_iterator {
   public:
    explicit const_iterator(const std::unique_ptr<Entry>* at) : m_theAt(at) {}
    const Entry& operator*() const { return **m_theAt; }
    const Entry* operator->() const { return m_theAt->get(); }
    const_iterator& operator++() {
      ++m_theAt;
      return *this;
    }
    bool operator!=(const const_iterator& other) const { return m_theAt != other.m_theAt; }
    bool operator==(const const_iterator& other) const { return m_theAt == other.m_theAt; }

   private:
    const std::unique_ptr<Entry>* m_theAt;
  };
  const_iterator begin() const { return const_iterator(m_theEntries.data()); }
  const_iterator end() const { return const_iterator(m_theEntries.data() + m_theSize); }

 private:
  std::vector<std::unique_ptr<Entry>> m_theEntries;
  std::size_t m_theSize = 0;
};

#endif
