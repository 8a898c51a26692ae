#ifndef ZR_XML_SPARE_STACK_H
#define ZR_XML_SPARE_STACK_H

#include <cstddef>
#include <deque>

// A stack whose popped entries stay as spares for the next push: an entry pushed again keeps the storage
// of its strings and maps, so a document that goes up and down the same levels allocates nothing once it
// has reached its deepest level. The entries live in a deque, so an entry stays where it is while others
// are pushed. A pushed entry holds what it held before: the caller sets every field it uses.
template <class Entry>
class ZrXmlSpareStack {
 public:
  typedef typename std::deque<Entry>::const_iterator const_iterator;

  Entry& push() {
    if (m_theSize == m_theEntries.size()) m_theEntries.emplace_back();
    return m_theEntries[m_theSize++];
  }
  void pop() { --m_theSize; }

  std::size_t size() const { return m_theSize; }
  bool empty() const { return m_theSize == 0; }
  Entry& back() { return m_theEntries[m_theSize - 1]; }
  const Entry& back() const { return m_theEntries[m_theSize - 1]; }
  Entry& operator[](std::size_t index) { return m_theEntries[index]; }
  const Entry& operator[](std::size_t index) const { return m_theEntries[index]; }
  const_iterator begin() const { return m_theEntries.begin(); }
  const_iterator end() const { return m_theEntries.begin() + static_cast<std::ptrdiff_t>(m_theSize); }

 private:
  std::deque<Entry> m_theEntries;
  std::size_t m_theSize = 0;
};

#endif
