#pragma once

#include <xum/geometry/vector.h>

#include <cstddef>
#include <string>
#include <string_view>

/// What the rules of the game see of the world and do to it. Numbers of what does not exist change nothing and give
/// zeroes.
class Stage {
public:
    virtual ~Stage() = default;

    /// The places of a class in the map, "item" for example.
    virtual std::size_t countPlaces(const std::string& className) const = 0;
    virtual Vector3<float> getPlace(const std::string& className, std::size_t number) const = 0;
    virtual float getTurn(const std::string& className, std::size_t number) const = 0; ///< degrees

    /// Things that move: "ember" and "watcher". Their numbers count from 0 and are never used again; -1 for an unknown
    /// kind.
    virtual int addThing(const std::string& kind, const Vector3<float>& position) = 0;
    virtual void moveThing(int number, const Vector3<float>& position) = 0;
    virtual void removeThing(int number) = 0;
    virtual void clearThings() = 0;

    /// From the player's middle; very large for what does not exist.
    virtual float getThingDistance(int number) const = 0;

    virtual Vector3<float> getPlayer() const = 0;
    virtual void putPlayer(const Vector3<float>& feet, float turn) = 0;

    virtual void aimLamp(std::size_t number, const Vector3<float>& from, const Vector3<float>& towards) = 0;

    /// Whether the player stands in a lamp's cone and nothing is in between.
    virtual bool doesLampSeePlayer(std::size_t number) const = 0;

    virtual void playSound(const std::string& name, const Vector3<float>& position) = 0;

    /// In a slot of the display: "clock", "score", "message" or "end". An empty text clears it.
    virtual void showText(const std::string& slot, std::string_view text) = 0;

    /// 0 is the afternoon, 1 is night.
    virtual void setDusk(float part) = 0;
};
