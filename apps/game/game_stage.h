#pragma once

#include "obstacles.h"
#include "scene_renderer.h"
#include "soundscape.h"
#include "stage.h"
#include "walker.h"

#include <map>
#include <optional>

/// The world as the rules see it: places of the level, things that the renderer draws, the player.
class GameStage final : public Stage {
public:
    /// Keeps the references. Throws Failure, naming the file, when a sound of the game is missing or broken.
    GameStage(SceneRenderer& renderer, Soundscape& sounds, GameData& data);

    std::size_t countPlaces(const std::string& className) const override;
    Vector3<float> getPlace(const std::string& className, std::size_t number) const override;
    float getTurn(const std::string& className, std::size_t number) const override;
    int addThing(const std::string& kind, const Vector3<float>& position) override;
    void moveThing(int number, const Vector3<float>& position) override;
    void removeThing(int number) override;
    void clearThings() override;
    float getThingDistance(int number) const override;
    Vector3<float> getPlayer() const override;
    void putPlayer(const Vector3<float>& feet, float turn) override;
    void aimLamp(std::size_t number, const Vector3<float>& from, const Vector3<float>& towards) override;
    bool doesLampSeePlayer(std::size_t number) const override;
    void playSound(const std::string& name, const Vector3<float>& position) override;
    void showText(const std::string& slot, std::string_view text) override;
    void setDusk(float part) override;

    /// Hands the things to the renderer, and what they sound like to the sounds; once a frame.
    void show();

    /// Nothing moves any more, it is day, and the texts are empty.
    void clear();

    const Obstacles& getObstacles() const { return obstacles; }
    Walker& getWalker() { return walker; }

    /// Where the player was told to look since the last call, in degrees.
    std::optional<float> takeTurn();

    /// By their slots; those that are empty are not there.
    const std::map<std::string, std::string>& getTexts() const { return texts; }

private:
    struct MovingThing {
        Thing shape;
        bool hums = false;
        Vector3<float> position;
        bool isThere = false;
    };

    const std::vector<Place>& findPlaces(const std::string& className) const;

    SceneRenderer& renderer;
    Soundscape& sounds;
    GameData& data;
    Obstacles obstacles;
    Walker walker;
    std::optional<float> turn;
    std::vector<MovingThing> things;
    std::map<std::string, std::string> texts;
    mutable std::map<std::string, std::vector<Place>> places; ///< as far as they were asked for
};
