#include <xum/geometry/position.h>

#include <ostream>

std::ostream& operator<<(std::ostream& stream, const Position& position)
{
    return stream << "Position(" << position.x << ", " << position.y << ", " << position.z << ")" << std::endl;
}
