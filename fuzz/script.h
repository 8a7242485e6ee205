// The fuzzer's bytes as a course of things: what is to be done next, and with what.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

/// Once the bytes have been used up everything is 0, which stands for the ordinary.
class Script
{
public:
    Script(const std::uint8_t* data, std::size_t size)
        : m_at(data)
        , m_end(data + size)
    {
    }
    [[nodiscard]] bool isAtEnd() const { return m_at == m_end; }
    /// 0 to `count` - 1, of at most 256.
    int pick(int count) { return isAtEnd() ? 0 : *m_at++ % count; }
    /// True once in so many times.
    bool once(int times) { return pick(times) == times - 1; }
    template<typename T, std::size_t count>
    const T& oneOf(const T (&values)[count])
    {
        return values[pick(count)];
    }
    template<typename Container>
    const auto& oneOf(const Container& values)
    {
        return values[static_cast<std::size_t>(pick(static_cast<int>(values.size())))];
    }
    std::int32_t number() { return take<std::int32_t>(); }
    std::int64_t longNumber() { return take<std::int64_t>(); }
    std::string bytes(int most)
    {
        std::string text(static_cast<std::size_t>(pick(most + 1)), '\0');
        for (char& c : text)
            c = static_cast<char>(pick(256));
        return text;
    }

private:
    template<typename T>
    T take()
    {
        T value{};
        if (m_end - m_at >= static_cast<std::ptrdiff_t>(sizeof value)) {
            std::memcpy(&value, m_at, sizeof value);
            m_at += sizeof value;
        } else {
            m_at = m_end;
        }
        return value;
    }
    const std::uint8_t* m_at;
    const std::uint8_t* m_end;
};
