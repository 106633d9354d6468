#pragma once

#include <cstring>

/// The place of a virtual operation in its table, which hosts compile against. In the Itanium C++ ABI (GCC and clang,
/// MinGW included) a pointer to a virtual member function holds 1 + 8 * place on 64-bit machines. A virtual destructor
/// takes two places there: of an interface that starts with one, later places are one above the slot number.
template <class Operation>
long slotOf(Operation operation)
{
    static_assert(sizeof operation == 2 * sizeof(long long));
    long long parts[2];
    std::memcpy(parts, &operation, sizeof parts);
    return static_cast<long>((parts[0] - 1) / 8);
}

/// Its operation takes the first place behind those of the base.
template <class Base>
struct WithOneMore : Base {
    virtual void oneMore() {}

protected:
    ~WithOneMore() = default;
};

/// How many places the table of a class has that hosts derive from or call: nothing was added to it. A virtual
/// destructor counts twice.
template <class Base>
long placesOf()
{
    return slotOf(&WithOneMore<Base>::oneMore);
}
