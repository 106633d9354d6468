#pragma once

#include <xum/files/serializer.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

/// Values in the encoding of Serializer: as they lie in memory.

template <class Value>
void writeValue(Serializer& out, const Value& value)
{
    static_assert(std::is_trivially_copyable_v<Value> && !std::is_same_v<Value, bool>);
    out.write(reinterpret_cast<const char*>(&value), static_cast<int>(sizeof value));
}

/// A zero where the data end.
template <class Value>
Value readValue(Deserializer& in)
{
    static_assert(std::is_trivially_copyable_v<Value> && !std::is_same_v<Value, bool>);
    Value value{};
    in.read(reinterpret_cast<char*>(&value), static_cast<int>(sizeof value));
    return value;
}

/// Of any number, also of more bytes than one call can move. Not a call is made for none.
template <class Value>
void writeValues(Serializer& out, const Value* values, std::size_t count)
{
    if (count == 0) return;
    constexpr std::size_t most = static_cast<std::size_t>(INT_MAX) / sizeof(Value);
    for (; count > most; values += most, count -= most)
        out.write(reinterpret_cast<const char*>(values), static_cast<int>(most * sizeof(Value)));
    out.write(reinterpret_cast<const char*>(values), static_cast<int>(count * sizeof(Value)));
}

/// What the data lack stays as it was. Not a call is made for none.
template <class Value>
void readValues(Deserializer& in, Value* values, std::size_t count)
{
    if (count == 0) return;
    constexpr std::size_t most = static_cast<std::size_t>(INT_MAX) / sizeof(Value);
    for (; count > most; values += most, count -= most)
        in.read(reinterpret_cast<char*>(values), static_cast<int>(most * sizeof(Value)));
    in.read(reinterpret_cast<char*>(values), static_cast<int>(count * sizeof(Value)));
}

/// For data whose end is not known: the vector grows with what arrives. False where the data end first, as far as it
/// can be told: then the last number keeps all its bits set, which no number of a world has.
template <class Value>
bool readArrivingValues(Deserializer& in, std::vector<Value>& values, std::size_t count)
{
    constexpr std::size_t valuesPerStep = 1U << 12;
    constexpr std::uint32_t unread = 0xFFFFFFFF;
    static_assert(std::is_trivially_copyable_v<Value> && sizeof(Value) >= sizeof unread);
    for (std::size_t done = 0; done < count;) {
        const std::size_t step = std::min(count - done, valuesPerStep);
        values.resize(done + step);
        auto* const last = reinterpret_cast<unsigned char*>(&values.back()) + sizeof(Value) - sizeof unread;
        std::memcpy(last, &unread, sizeof unread);
        readValues(in, values.data() + done, step);
        if (std::memcmp(last, &unread, sizeof unread) == 0) return false;
        done += step;
    }
    return true;
}
