#include <xum/geometry/position.h>

#include <ostream>
#include <string>

std::ostream& operator<<(std::ostream& stream, const Position& position)
{
    // Decimal, whatever the stream is set to.
    return stream << "Position(" + std::to_string(position.x) + ", " + std::to_string(position.y) + ", " +
                         std::to_string(position.z) + ")"
                  << std::endl;
}
