#include <xum/geometry/fixed.h>

#include <ostream>
#include <string>

std::ostream& operator<<(std::ostream& stream, const Fixed& value)
{
    return stream << "Fixed(" << std::to_string(value.raw) << ")" << std::endl;
}
