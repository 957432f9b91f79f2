#pragma once

#include <stdexcept>

/// What the code promises does not hold.
class CBrokenProperty : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

/// Throws CBrokenProperty, which names `property`, unless it holds.
inline void Require(bool holds, const char* property)
{
    if (!holds)
        throw CBrokenProperty(property);
}
