#include <xum/geometry/fixed.h>

#include <ostream>

std::ostream& operator<<(std::ostream& stream, const Fixed& value)
{
    return stream << "Fixed(" << value.raw << ")" << std::endl;
}
