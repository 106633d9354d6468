#pragma once

#include "obstacles.h"

/// Somebody who walks: an upright box that gravity pulls down, that slides along what is in its way, and climbs steps.
class Walker {
public:
    static constexpr float eyeHeight = 1.65f;

    /// Stands with its feet at a point.
    explicit Walker(const Vector3<float>& feet) : feet(feet) {}

    /// Goes with a horizontal velocity for some time; its z does not count. `jumps` only helps on the ground.
    void move(const Obstacles& obstacles, const Vector3<float>& velocity, bool jumps, float seconds);

    const Vector3<float>& getFeet() const { return feet; }
    Vector3<float> getEye() const { return feet + Vector3<float>(0, 0, eyeHeight); }
    bool isOnGround() const { return onGround; }

private:
    void step(const Obstacles& obstacles, const Vector3<float>& velocity, float seconds);
    void goForwards(const Obstacles& obstacles, const Vector3<float>& way);
    void fall(const Obstacles& obstacles, float seconds);
    bool slide(const Obstacles& obstacles, Vector3<float> way);
    Contact moveStraight(const Obstacles& obstacles, const Vector3<float>& way);
    void stayAbove(const Obstacles& obstacles);

    Vector3<float> feet;
    float upwardSpeed = 0;
    bool onGround = false;
};
