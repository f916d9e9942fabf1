#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <type_traits>

#include "outlook/events.h"
#include "outlook/runtime.h"
#include "outlook/variant.h"

// Objects described by tables: an interface is a list of members, and one place applies the calling
// rules of Automation to all of them. The rules are those of the real type libraries and strict:
// arguments come in reverse order, a get is not a method, a put carries its value as the named
// argument DISPID_PROPERTYPUT, other named arguments are refused.
namespace standin {

class Object;

enum class Kind : WORD {
  kMethod = DISPATCH_METHOD,
  kGet = DISPATCH_PROPERTYGET,
  kPut = DISPATCH_PROPERTYPUT,
};

// Types of declared parameters. Required ones are converted, optional ones arrive as they are.
enum class Param { kText, kLong, kBool, kObject, kAny, kOptional };

struct Member {
  const wchar_t* name;
  DISPID id;
  Kind kind;
  std::vector<Param> params;
  std::function<Variant(Object&, const Arguments&)> run;
  int since = 9;  // the first version that has it
};

struct Interface {
  const wchar_t* name;  // as in the type library, "_MailItem"
  GUID id;
  std::vector<Member> members;

  // Without the leading underscore, as it stands in the call log.
  const wchar_t* PlainName() const { return name[0] == L'_' ? name + 1 : name; }
};

// An object that is reached through IDispatch pointers, one per interface, of which the first is
// the default one. A number is looked up in the table of the interface whose pointer it came
// through.
class Object : public Tracked {
 public:
  struct Source {
    GUID id;                        // event interface
    std::shared_ptr<EventHub> hub;  // where its events are raised
  };

  Object(std::shared_ptr<Runtime> runtime, std::wstring name,
         std::initializer_list<const Interface*> interfaces, std::vector<Source> sources = {});
  ~Object() override;

  // The pointer of an interface, not counted; the default one without an argument.
  IDispatch* Pointer(std::size_t index = 0) const;

  HRESULT Query(REFIID id, void** object);

 private:
  class Face;
  class Container;

  std::vector<std::unique_ptr<Face>> faces_;
  std::unique_ptr<Container> container_;
};

// Makes an object and hands over its first reference.
template <class T, class... Args>
ComPtr<IDispatch> Make(Args&&... args) {
  return Own((new T(std::forward<Args>(args)...))->Pointer());
}

// Builds the table of an interface whose members run on a T. Handlers take the object and, when
// they want them, the arguments; a handler without a result leaves the result empty.
template <class T>
class InterfaceOf {
 public:
  InterfaceOf(const wchar_t* name, const GUID& id) : table_{name, id, {}} {}

  template <class F>
  InterfaceOf& Get(const wchar_t* name, DISPID id, F handler) {
    return Add(name, id, Kind::kGet, {}, handler);
  }
  template <class F>
  InterfaceOf& GetIndexed(const wchar_t* name, DISPID id, std::vector<Param> params, F handler) {
    return Add(name, id, Kind::kGet, std::move(params), handler);
  }
  template <class F>
  InterfaceOf& Put(const wchar_t* name, DISPID id, Param type, F handler) {
    return Add(name, id, Kind::kPut, {type}, handler);
  }
  template <class F>
  InterfaceOf& Method(const wchar_t* name, DISPID id, std::vector<Param> params, F handler) {
    return Add(name, id, Kind::kMethod, std::move(params), handler);
  }
  // The member added last exists from this version on.
  InterfaceOf& Since(int version) {
    table_.members.back().since = version;
    return *this;
  }
  // All members of another table that runs on the same objects.
  InterfaceOf& Inherit(const Interface& base) {
    table_.members.insert(table_.members.end(), base.members.begin(), base.members.end());
    return *this;
  }

  Interface Done() { return std::move(table_); }

 private:
  template <class F>
  InterfaceOf& Add(const wchar_t* name, DISPID id, Kind kind, std::vector<Param> params,
                   F handler) {
    auto run = [handler](Object& object, const Arguments& arguments) -> Variant {
      T& self = static_cast<T&>(object);
      if constexpr (std::is_invocable_v<F, T&>) {
        if constexpr (std::is_void_v<std::invoke_result_t<F, T&>>) {
          handler(self);
          return {};
        } else {
          return handler(self);
        }
      } else {
        if constexpr (std::is_void_v<std::invoke_result_t<F, T&, const Arguments&>>) {
          handler(self, arguments);
          return {};
        } else {
          return handler(self, arguments);
        }
      }
    };
    table_.members.push_back({name, id, kind, std::move(params), std::move(run)});
    return *this;
  }

  Interface table_;
};

}  // namespace standin
