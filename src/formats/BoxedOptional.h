#pragma once

#include <memory>
#include <optional>
#include <utility>

namespace orv {

// An optional value kept in a heap block of its own, so that it costs one pointer where it is
// absent. For the large records most items lack (a location, a movie's stamps, an XMP packet's
// dates): 100,000 items then do not carry their empty room. Copies copy the value.
template <typename T>
class BoxedOptional
{
public:
    BoxedOptional() = default;
    BoxedOptional(std::nullopt_t) {}
    BoxedOptional(T value) : m_value(std::make_unique<T>(std::move(value))) {}
    BoxedOptional(const std::optional<T> &value) { *this = value; }
    BoxedOptional(const BoxedOptional &other) { *this = other; }
    BoxedOptional(BoxedOptional &&) noexcept = default;

    BoxedOptional &operator=(const BoxedOptional &other)
    {
        if (this != &other)
            m_value = other ? std::make_unique<T>(*other) : nullptr;
        return *this;
    }
    BoxedOptional &operator=(BoxedOptional &&) noexcept = default;
    BoxedOptional &operator=(T value)
    {
        m_value = std::make_unique<T>(std::move(value));
        return *this;
    }
    BoxedOptional &operator=(const std::optional<T> &value)
    {
        m_value = value ? std::make_unique<T>(*value) : nullptr;
        return *this;
    }
    BoxedOptional &operator=(std::nullopt_t)
    {
        m_value.reset();
        return *this;
    }

    bool has_value() const { return m_value != nullptr; }
    explicit operator bool() const { return has_value(); }
    T &operator*() { return *m_value; }
    const T &operator*() const { return *m_value; }
    T *operator->() { return m_value.get(); }
    const T *operator->() const { return m_value.get(); }
    void reset() { m_value.reset(); }

    bool operator==(const BoxedOptional &other) const
    {
        return has_value() == other.has_value() && (!has_value() || *m_value == *other.m_value);
    }

private:
    std::unique_ptr<T> m_value;
};

} // namespace orv
