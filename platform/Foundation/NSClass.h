#pragma once

/// The class table: what the interface description and key-value coding may ask of a class by name.
///
/// A class writes `NS_CLASS(Fader)` into its public part, and in its source
///
///     NS_CLASS_TABLE(Fader, NSSlider, "")
///         .action("sliderChanged:", &Fader::sliderChanged)
///         .key("smallStep", &Fader::smallStep, &Fader::setSmallStep)
///     NS_CLASS_TABLE_END
///
/// The text is the identifier of the bundle that holds the class's resources ("" for none). The table is made on first
/// use and registered under the class's name when the program starts.

#include "Foundation/NSNumber.h"
#include "Foundation/NSObject.h"

#include <functional>
#include <vector>

struct NSClass {
    struct Action {
        SEL selector;
        std::function<void(NSObject* self, NSObject* argument)> perform;
    };
    struct OutletEntry {
        const char* name;
        const char* className;                                         ///< what may be connected
        std::function<bool(NSObject* owner, NSObject* value)> connect; ///< false when `value` is of another class
        std::function<const NSObject*(const NSObject* owner)> get;     ///< what is connected; null for nothing
    };
    struct Key {
        const char* name;
        std::function<RetainPtr<NSObject>(const NSObject* self)> get;
        std::function<void(NSObject* self, NSObject* value)> set; ///< empty for a key that is only read
    };

    const char* name;
    const NSClass* superclass; ///< null for NSObject
    const char* bundleIdentifier;
    RetainPtr<NSObject> (*alloc)(); ///< a new object that no initialiser has seen yet; null for abstract classes
    std::vector<Action> actions;
    std::vector<OutletEntry> outlets;
    std::vector<Key> keys;

    // Look-ups go through the bases; null when there is none.
    const Action* findAction(std::string_view selector) const;
    const OutletEntry* findOutlet(std::string_view outlet) const;
    const Key* findKey(std::string_view key) const;
    bool isSubclassOf(const NSClass& other) const;
};

/// The registered class of that name; null when there is none.
const NSClass* NSClassFromString(std::string_view name);
void NSRegisterClass(const NSClass& table);

/// A reference to an object that may be absent: `call` on an empty one does nothing and answers zero.
///
///     Outlet<NSSlider> slider;
///     slider.call(&NSSlider::setMinValue, 0.0);          // nothing happens
///     double v = slider.call(&NSSlider::doubleValue);    // 0
template <typename T> class Outlet {
public:
    Outlet() = default;
    Outlet& operator=(T* object)
    {
        mObject = object;
        return *this;
    }
    T* get() const { return mObject.get(); }
    explicit operator bool() const { return mObject.get() != nullptr; }
    operator T*() const { return mObject.get(); }
    void reset() { mObject.reset(); }
    /// The owned reference, moved out; the outlet is empty afterwards.
    RetainPtr<T> take() { return std::move(mObject); }

    template <typename Member, typename... Arguments> auto call(Member member, Arguments&&... arguments) const
    {
        using Result = std::decay_t<std::invoke_result_t<Member, T&, Arguments...>>;
        if constexpr (std::is_void_v<Result>) {
            if (mObject) std::invoke(member, *mObject, std::forward<Arguments>(arguments)...);
        } else {
            return mObject ? Result(std::invoke(member, *mObject, std::forward<Arguments>(arguments)...)) : Result{};
        }
    }

private:
    RetainPtr<T> mObject;
};

/// Builds a class table; see the example at the top.
template <typename T> class NSClassBuilder {
public:
    NSClassBuilder(const char* name, const NSClass* superclass, const char* bundleIdentifier)
    {
        mTable.name = name;
        mTable.superclass = superclass;
        mTable.bundleIdentifier = bundleIdentifier;
        mTable.alloc = nullptr;
        if constexpr (std::is_default_constructible_v<T> && !std::is_abstract_v<T>)
            mTable.alloc = [] { return RetainPtr<NSObject>::adopt(new T); };
    }

    /// A message with one object argument. An argument of another class than the member takes is passed as null.
    template <typename Base, typename Argument>
    NSClassBuilder&& action(SEL selector, void (Base::*member)(Argument*)) &&
    {
        mTable.actions.push_back({selector, [member](NSObject* self, NSObject* argument) {
                                      (static_cast<T*>(self)->*member)(dynamic_cast<Argument*>(argument));
                                  }});
        return std::move(*this);
    }

    template <typename Value> NSClassBuilder&& outlet(const char* name, Outlet<Value> T::*member) &&
    {
        mTable.outlets.push_back(
            {name, Value::staticClass().name,
             [member](NSObject* owner, NSObject* value) {
                 auto* typed = dynamic_cast<Value*>(value);
                 if (typed) static_cast<T*>(owner)->*member = typed;
                 return typed != nullptr;
             },
             [member](const NSObject* owner) { return (static_cast<const T*>(owner)->*member).get(); }});
        return std::move(*this);
    }

    /// A property: numbers are boxed as NSNumber, objects pass as they are. A null number reads as 0.
    template <typename Getter, typename Setter> NSClassBuilder&& key(const char* name, Getter getter, Setter setter) &&
    {
        mTable.keys.push_back({name, getterOf(getter), setterOf(setter)});
        return std::move(*this);
    }
    template <typename Getter> NSClassBuilder&& key(const char* name, Getter getter) &&
    {
        mTable.keys.push_back({name, getterOf(getter), {}});
        return std::move(*this);
    }

    NSClass end() && { return std::move(mTable); }

private:
    template <typename Getter> static auto getterOf(Getter getter)
    {
        return [getter](const NSObject* self) -> RetainPtr<NSObject> {
            return NSBoxed(std::invoke(getter, *static_cast<const T*>(self)));
        };
    }
    template <typename Base, typename Value> static auto setterOf(void (Base::*setter)(Value))
    {
        return [setter](NSObject* self, NSObject* value) {
            (static_cast<T*>(self)->*setter)(NSUnbox<std::decay_t<Value>>(value));
        };
    }

    NSClass mTable{};
};

struct NSClassRegistration {
    explicit NSClassRegistration(const NSClass& table) { NSRegisterClass(table); }
};

#define NS_CLASS(Class)                                                                                                \
    static const NSClass& staticClass();                                                                               \
    const NSClass& classTable() const override { return staticClass(); }                                               \
    template <typename> friend class NSClassBuilder;

#define NS_CLASS_TABLE(Class, Super, Bundle)                                                                           \
    static const NSClassRegistration k##Class##Registration{Class::staticClass()};                                     \
    const NSClass& Class::staticClass()                                                                                \
    {                                                                                                                  \
        static const NSClass table = NSClassBuilder<Class>(#Class, &Super::staticClass(), Bundle)
#define NS_CLASS_TABLE_END                                                                                             \
    .end();                                                                                                            \
    return table;                                                                                                      \
    }
