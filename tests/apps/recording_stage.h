#pragma once

#include "stage.h"

#include <map>
#include <sstream>
#include <string>
#include <vector>

/// A stage that a test arranges: where places are, where the player stands and which lamps see it. What the rules do to
/// it is written down, a line for each call, but for what they do in every frame: moving and aiming.
class RecordingStage final : public Stage {
public:
    std::map<std::string, std::vector<Vector3<float>>> places;
    std::map<std::string, float> turns;
    Vector3<float> player;
    bool isSeen[2] = {false, false};
    std::vector<Vector3<float>> things; ///< by their numbers
    std::string lastAim;
    float dusk = -1;

    /// The lines since the last call.
    std::string takeNotes()
    {
        std::string taken;
        taken.swap(notes);
        return taken;
    }

    std::size_t countPlaces(const std::string& className) const override
    {
        const auto found = places.find(className);
        return found == places.end() ? 0 : found->second.size();
    }
    Vector3<float> getPlace(const std::string& className, std::size_t number) const override
    {
        return number < countPlaces(className) ? places.at(className)[number] : Vector3<float>();
    }
    float getTurn(const std::string& className, std::size_t) const override
    {
        const auto found = turns.find(className);
        return found == turns.end() ? 0 : found->second;
    }
    int addThing(const std::string& kind, const Vector3<float>& position) override
    {
        note("add " + kind + print(position));
        things.push_back(position);
        return static_cast<int>(things.size()) - 1;
    }
    void moveThing(int number, const Vector3<float>& position) override
    {
        if (exists(number)) things[static_cast<std::size_t>(number)] = position;
    }
    void removeThing(int number) override { note("remove " + std::to_string(number)); }
    void clearThings() override
    {
        note("clear");
        things.clear();
    }
    float getThingDistance(int number) const override
    {
        return exists(number) ? length(things[static_cast<std::size_t>(number)] - player) : 1e30f;
    }
    Vector3<float> getPlayer() const override { return player; }
    void putPlayer(const Vector3<float>& feet, float turn) override
    {
        player = feet;
        note("put" + print(feet) + " turned " + print(turn));
    }
    void aimLamp(std::size_t number, const Vector3<float>& from, const Vector3<float>& towards) override
    {
        lastAim = "aim " + std::to_string(number) + print(from) + " to" + print(towards);
    }
    bool doesLampSeePlayer(std::size_t number) const override { return number < 2 && isSeen[number]; }
    void playSound(const std::string& name, const Vector3<float>& position) override
    {
        note("sound " + name + print(position));
    }
    void showText(const std::string& slot, std::string_view text) override { note(slot + ": " + std::string(text)); }
    void setDusk(float part) override { dusk = part; }

private:
    bool exists(int number) const { return number >= 0 && static_cast<std::size_t>(number) < things.size(); }

    static std::string print(float number)
    {
        std::ostringstream text;
        text << number;
        return text.str();
    }
    static std::string print(const Vector3<float>& point)
    {
        return " " + print(point.x) + " " + print(point.y) + " " + print(point.z);
    }

    void note(const std::string& line) { notes += line + "\n"; }

    std::string notes;
};
