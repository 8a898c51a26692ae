#ifndef ZR_XML_COMPOUND_H
#define ZR_XML_COMPOUND_H

#include <ZrXmlCompoundType.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <typeinfo>
#include <vector>

// A persistent class in a few lines: derive from ZrXmlCompound<YourClass>, keep the members, register
// them, and give the element's name once:
//
//   class ZrMotor : public ZrXmlCompound<ZrMotor> {
//    public:
//     static ZrToken classToken() { return ZrToken(ns, "motor"); }
//    protected:
//     void registerComponents() override {
//       registerAttributeComponent("name", &m_theName);
//       registerComponent(ZrToken(ns, "power"), &m_thePower);
//     }
//    private:
//     ZrXmlBasicType<std::string> m_theName;
//     ZrXmlBasicType<double> m_thePower;
//   };
//
// The four operations every compound completes its interface with come from the class itself:
// clone() and newObject() from its copy and default constructors, token() from its static
// classToken(), and equality() compares what the object reads and writes: every registered attribute
// and element, each through its own equality(). Members that are not registered are not compared.
// operator== and operator!= on the class compare values the same way (those of ZrXmlCompoundType
// compare registrations only).
//
// A class hierarchy names its base as the second argument: `class ZrBelt : public
// ZrXmlCompound<ZrBelt, ZrDevice>`, where ZrDevice is a ZrXmlCompoundType (abstract or not) whose
// registerComponents() ZrBelt's calls first. Base's constructors are inherited.
//
// The helper adds no data and no per-object work: the same object, read and written the same way, as
// a class that writes the four operations by hand.
template <class Derived, class Base = ZrXmlCompoundType>
class ZrXmlCompound : public Base {
  static_assert(std::is_base_of<ZrXmlCompoundType, Base>::value, "ZrXmlCompound: Base must be a ZrXmlCompoundType");

 public:
  using Base::Base;

  ZrXmlObject* clone() const override { return new Derived(self()); }
  ZrXmlObject* newObject() const override { return new Derived(); }
  ZrToken token() const override { return Derived::classToken(); }
  // True when other is an object of the same class whose registered attributes and elements hold the
  // same values, each compared by its own equality().
  ZrBoolean equality(const ZrXmlObject* other) const override;

  bool operator==(const Derived& other) const { return equality(&other); }
  bool operator!=(const Derived& other) const { return !equality(&other); }

 private:
  // One registration as forEachComponent hands it out.
  struct Registered {
    const ZrToken* token;
    const ZrXmlObject* component;
    ZrXmlCompoundType::ComponentKind kind;
  };

  const Derived& self() const {
    static_assert(std::is_base_of<ZrXmlCompound, Derived>::value,
                  "ZrXmlCompound<Derived>: Derived must derive from ZrXmlCompound<Derived>");
    return static_cast<const Derived&>(*this);
  }
  bool sameMembersAtSameOffsets(const Derived& other, bool& outside) const;
  bool sameRegistrationsPairwise(const ZrXmlCompoundType& other) const;
  static bool sameValue(const ZrXmlObject* one, const ZrXmlObject* other) {
    if (!one || !other) return one == other;
    return one->equality(other);
  }
};

// Objects of exactly this class hold their registered members at the same places, so the other's
// member is found at the offset of this one's: the other object need not register (equalsDefault
// compares with a fresh object) and nothing is allocated. A registration outside the object (a member
// of something it points to) has no such twin; then, and for objects of a class derived further, both
// objects walk their registrations, which come in the same order (attributes, then elements, each by
// token) and pair up entry by entry.
template <class Derived, class Base>
ZrBoolean ZrXmlCompound<Derived, Base>::equality(const ZrXmlObject* other) const {
  if (!other || typeid(*other) != typeid(*this)) return false;
  if (typeid(*this) == typeid(Derived)) {
    bool outside = false;
    const bool equal = sameMembersAtSameOffsets(static_cast<const Derived&>(*other), outside);
    if (!outside) return equal;
  }
  return sameRegistrationsPairwise(static_cast<const ZrXmlCompoundType&>(*other));
}

template <class Derived, class Base>
bool ZrXmlCompound<Derived, Base>::sameMembersAtSameOffsets(const Derived& other, bool& outside) const {
  const Derived& mine = self();
  bool equal = true;
  this->forEachComponent([&](const ZrToken&, const ZrXmlObject* component, ZrXmlCompoundType::ComponentKind, bool) {
    if (!equal || outside || !component) return;
    const std::intptr_t offset = ZrXmlRegistrationTable::offsetOf(&mine, component);
    if (offset < 0 || static_cast<std::size_t>(offset) > sizeof(Derived) - sizeof(ZrXmlObject)) {
      outside = true;
      return;
    }
    equal = component->equality(ZrXmlRegistrationTable::memberAt(&other, offset, false));
  });
  return equal;
}

template <class Derived, class Base>
bool ZrXmlCompound<Derived, Base>::sameRegistrationsPairwise(const ZrXmlCompoundType& other) const {
  std::vector<Registered> theirs;
  other.forEachComponent(
      [&theirs](const ZrToken& token, const ZrXmlObject* component, ZrXmlCompoundType::ComponentKind kind, bool) {
        theirs.push_back(Registered{&token, component, kind});
      });
  std::size_t index = 0;
  bool equal = true;
  this->forEachComponent(
      [&](const ZrToken& token, const ZrXmlObject* component, ZrXmlCompoundType::ComponentKind kind, bool) {
        if (!equal) return;
        equal = index < theirs.size() && theirs[index].kind == kind && *theirs[index].token == token &&
                sameValue(component, theirs[index].component);
        ++index;
      });
  return equal && index == theirs.size();
}

#endif
