#pragma once

#include <type_traits>
#include <utility>

#include "kit/jAllocator.h"

// Callable objects for the toolkit's event slots. A Function holds one FunctionHandler; binding a
// member function makes a FunctionHandlerChild of a bind_t that keeps the object and the member
// function pointer. Functions copy their handler, so a copy can outlive the original.

template <class Sig>
class FunctionHandler;

template <class R, class... A>
class FunctionHandler<R(A...)> {
public:
    virtual ~FunctionHandler() = default;
    virtual R call(A... args) const = 0;
    // Returns a new copy of this handler, registered with the allocation registry.
    virtual FunctionHandler* clone() const = 0;
};

// A member function bound to an object.
template <class C, class Sig>
class bind_t;

template <class C, class R, class... A>
class bind_t<C, R(A...)> {
public:
    using Method = R (C::*)(A...);
    bind_t(C* object, Method method) : m_object(object), m_method(method) {}
    R operator()(A... args) const { return (m_object->*m_method)(std::forward<A>(args)...); }
    C* object() const { return m_object; }

private:
    C* m_object;
    Method m_method;
};

// The handler that calls a stored callable (a bind_t, or any function object).
template <class F, class Sig>
class FunctionHandlerChild;

template <class F, class R, class... A>
class FunctionHandlerChild<F, R(A...)> : public FunctionHandler<R(A...)> {
public:
    explicit FunctionHandlerChild(F callable) : m_callable(std::move(callable)) {}
    R call(A... args) const override { return m_callable(std::forward<A>(args)...); }
    FunctionHandler<R(A...)>* clone() const override
    {
        return jNew<FunctionHandlerChild>("kit/SignalSlot", __LINE__, "Function::bind", m_callable);
    }

private:
    F m_callable;
};

template <class Sig>
class Function;

template <class R, class... A>
class Function<R(A...)> {
public:
    using Handler = FunctionHandler<R(A...)>;

    Function() = default;
    // Wraps any callable with this signature (a bind_t from bind(), a lambda, a function pointer).
    template <class F, class = std::enable_if_t<!std::is_same_v<std::decay_t<F>, Function> &&
                                                std::is_invocable_r_v<R, F&, A...>>>
    Function(F callable)
        : m_handler(jNew<FunctionHandlerChild<std::decay_t<F>, R(A...)>>(
              "kit/SignalSlot", __LINE__, "Function::bind", std::move(callable)))
    {
    }
    Function(const Function& other) : m_handler(other.m_handler ? other.m_handler->clone() : nullptr) {}
    Function(Function&& other) noexcept : m_handler(other.m_handler) { other.m_handler = nullptr; }
    ~Function() { reset(); }

    Function& operator=(const Function& other)
    {
        if (this != &other) {
            Handler* copy = other.m_handler ? other.m_handler->clone() : nullptr;
            reset();
            m_handler = copy;
        }
        return *this;
    }
    Function& operator=(Function&& other) noexcept
    {
        if (this != &other) {
            reset();
            m_handler = other.m_handler;
            other.m_handler = nullptr;
        }
        return *this;
    }

    // Calls the handler; an empty Function does nothing and returns R's default value.
    R operator()(A... args) const
    {
        if (!m_handler) {
            if constexpr (std::is_void_v<R>)
                return;
            else
                return R();
        }
        return m_handler->call(std::forward<A>(args)...);
    }

    bool empty() const { return m_handler == nullptr; }
    explicit operator bool() const { return m_handler != nullptr; }
    // Drops the handler.
    void reset()
    {
        jDelete(m_handler, "kit/SignalSlot", __LINE__, "Function::reset");
        m_handler = nullptr;
    }

private:
    Handler* m_handler = nullptr;
};

// Binds a member function to an object: bind(&Panel::cb_click, this).
template <class C, class R, class... A>
bind_t<C, R(A...)> bind(R (C::*method)(A...), C* object)
{
    return bind_t<C, R(A...)>(object, method);
}
