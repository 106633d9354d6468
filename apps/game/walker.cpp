#include "walker.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr Vector3<float> halfSize = {0.3f, 0.3f, 0.9f};
constexpr float stepHeight = 0.45f;
constexpr float steepest = 0.7f; // the upward part of a floor's normal, at least
constexpr float gravity = 9.81f;
constexpr float jumpSpeed = 4.4f;
constexpr float fastestFall = 30.0f;
constexpr float longestStep = 1.0f / 60.0f; // seconds: the same way at any frame rate

Vector3<float> centreAbove(const Vector3<float>& feet)
{
    return feet + Vector3<float>(0, 0, halfSize.z);
}

float levelDistance(const Vector3<float>& a, const Vector3<float>& b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

} // namespace

void Walker::move(const Obstacles& obstacles, const Vector3<float>& velocity, bool jumps, float seconds)
{
    if (jumps && onGround) {
        upwardSpeed = jumpSpeed;
        onGround = false;
    }
    const int steps = std::max(static_cast<int>(std::ceil(seconds / longestStep - 0.01f)), 1);
    for (int i = 0; i < steps; ++i) step(obstacles, velocity, seconds / static_cast<float>(steps));
}

void Walker::step(const Obstacles& obstacles, const Vector3<float>& velocity, float seconds)
{
    const Vector3<float> before = feet;
    const bool wasInside = obstacles.isSolid(centreAbove(feet));
    goForwards(obstacles, Vector3<float>(velocity.x, velocity.y, 0) * seconds);
    fall(obstacles, seconds);
    feet.x = std::clamp(feet.x, -obstacles.getReach(), obstacles.getReach());
    feet.y = std::clamp(feet.y, -obstacles.getReach(), obstacles.getReach());
    stayAbove(obstacles);
    // Whatever rounding does, nobody gets into a wall.
    if (!wasInside && obstacles.isSolid(centreAbove(feet))) feet = before;
}

/// Over what is no higher than a step, if that leads farther than along it.
void Walker::goForwards(const Obstacles& obstacles, const Vector3<float>& way)
{
    const Vector3<float> start = feet;
    if (!slide(obstacles, way) || !onGround) return;
    const Vector3<float> alongside = feet;
    feet = start;
    moveStraight(obstacles, {0, 0, stepHeight});
    slide(obstacles, way);
    const Contact floor = moveStraight(obstacles, {0, 0, -stepHeight});
    const bool standsOnAStep = floor.isHit() && floor.normal.z >= steepest;
    if (!standsOnAStep || levelDistance(feet, start) <= levelDistance(alongside, start)) feet = alongside;
}

void Walker::fall(const Obstacles& obstacles, float seconds)
{
    upwardSpeed = std::max(upwardSpeed - gravity * seconds, -fastestFall);
    // Who stood follows stairs and slopes down.
    const float down = onGround ? -stepHeight : upwardSpeed * seconds;
    const Vector3<float> before = feet;
    const Contact contact = moveStraight(obstacles, {0, 0, down});
    const bool landed = contact.isHit() && contact.normal.z >= steepest;
    const bool isAboveLand = feet.z > obstacles.getGroundHeight(feet.x, feet.y);
    if (onGround && !landed && isAboveLand) { // over an edge
        feet = before;
        upwardSpeed = 0;
        onGround = false;
        return;
    }
    onGround = landed;
    if (contact.isHit()) upwardSpeed = 0;
    if (contact.isHit() && !landed && down < 0) slide(obstacles, Vector3<float>(0, 0, down) * (1 - contact.part));
}

/// Along whatever is in the way; true when something is.
bool Walker::slide(const Obstacles& obstacles, Vector3<float> way)
{
    constexpr int mostContacts = 4;
    Vector3<float> normals[mostContacts];
    for (int count = 0; count < mostContacts; ++count) {
        const Contact contact = moveStraight(obstacles, way);
        if (!contact.isHit()) return count > 0;
        normals[count] = contact.normal;
        way = way * (1 - contact.part);
        way -= contact.normal * dot(way, contact.normal);
        for (int i = 0; i < count; ++i) {
            if (dot(way, normals[i]) >= 0) continue;
            const Vector3<float> crease = normalize(cross(normals[i], contact.normal));
            way = crease * dot(way, crease);
        }
    }
    return true;
}

Contact Walker::moveStraight(const Obstacles& obstacles, const Vector3<float>& way)
{
    const Contact contact = obstacles.move(centreAbove(feet), halfSize, way);
    feet += way * contact.part;
    return contact;
}

void Walker::stayAbove(const Obstacles& obstacles)
{
    const float ground = obstacles.getGroundHeight(feet.x, feet.y);
    if (feet.z > ground) return;
    feet.z = ground;
    upwardSpeed = std::max(upwardSpeed, 0.0f);
    onGround = true;
}
