#include "game_stage.h"

#include "level.h"

#include <algorithm>
#include <limits>

namespace {

const Material emberGlow = {TextureName::Limestone, 0.5f, {1.0f, 0.42f, 0.1f}, 0, 1, 5.0f};
const Material watcherSkin = {TextureName::Bronze, 1.0f, {0.35f, 0.4f, 0.45f}, 0.8f, 60, 0.15f};

const char* const emberSound = "ember.wav"; // this and the next are played by the rules
const char* const caughtSound = "caught.wav";
const char* const humSound = "hum.wav";

constexpr float playerMiddle = 0.9f; // above the feet
constexpr Vector3<float> sightHalfSize = {0.02f, 0.02f, 0.02f};

/// Around the origin.
std::optional<Thing> makeShape(const std::string& kind)
{
    if (kind == "ember") {
        Thing ember = place(SolidKind::Sphere, emberGlow, {0, 0, -0.14f}, {0.28f, 0.28f, 0.28f});
        ember.halo = 0.8f;
        return ember;
    }
    if (kind == "watcher") return place(SolidKind::Ring, watcherSkin, {0, 0, 0.25f}, {1.5f, 1.5f, 2.0f});
    return std::nullopt;
}

} // namespace

GameStage::GameStage(SceneRenderer& renderer, Soundscape& sounds, GameData& data)
    : renderer(renderer), sounds(sounds), data(data), obstacles(renderer.getScene()), walker({0, 0, 1})
{
    for (const char* name : {emberSound, caughtSound, humSound}) sounds.prepare(data, name);
}

const std::vector<Place>& GameStage::findPlaces(const std::string& className) const
{
    const auto known = places.find(className);
    if (known != places.end()) return known->second;
    std::vector<Place>& found = places[className];
    if (renderer.getScene().level) found = renderer.getScene().level->findPlaces(className);
    // What was put into a hill lies on it.
    for (Place& place : found)
        place.position.z = std::max(place.position.z, obstacles.getGroundHeight(place.position.x, place.position.y));
    return found;
}

std::size_t GameStage::countPlaces(const std::string& className) const
{
    return findPlaces(className).size();
}

Vector3<float> GameStage::getPlace(const std::string& className, std::size_t number) const
{
    const std::vector<Place>& found = findPlaces(className);
    return number < found.size() ? found[number].position : Vector3<float>();
}

float GameStage::getTurn(const std::string& className, std::size_t number) const
{
    const std::vector<Place>& found = findPlaces(className);
    return number < found.size() ? found[number].turn : 0.0f;
}

int GameStage::addThing(const std::string& kind, const Vector3<float>& position)
{
    const std::optional<Thing> shape = makeShape(kind);
    if (!shape) return -1;
    things.push_back({*shape, kind == "ember", position, true});
    return static_cast<int>(things.size()) - 1;
}

void GameStage::moveThing(int number, const Vector3<float>& position)
{
    if (number >= 0 && static_cast<std::size_t>(number) < things.size())
        things[static_cast<std::size_t>(number)].position = position;
}

void GameStage::removeThing(int number)
{
    if (number >= 0 && static_cast<std::size_t>(number) < things.size())
        things[static_cast<std::size_t>(number)].isThere = false;
}

void GameStage::clearThings()
{
    things.clear();
    for (std::size_t i = 0; i < SceneRenderer::lampCount; ++i) renderer.setLamp(false, i);
}

float GameStage::getThingDistance(int number) const
{
    const bool isThere = number >= 0 && static_cast<std::size_t>(number) < things.size() &&
                         things[static_cast<std::size_t>(number)].isThere;
    if (!isThere) return std::numeric_limits<float>::max();
    return length(things[static_cast<std::size_t>(number)].position - getPlayer());
}

Vector3<float> GameStage::getPlayer() const
{
    return walker.getFeet() + Vector3<float>(0, 0, playerMiddle);
}

void GameStage::putPlayer(const Vector3<float>& feet, float newTurn)
{
    walker = Walker(feet);
    turn = newTurn;
}

std::optional<float> GameStage::takeTurn()
{
    const std::optional<float> taken = turn;
    turn.reset();
    return taken;
}

void GameStage::aimLamp(std::size_t number, const Vector3<float>& from, const Vector3<float>& towards)
{
    if (number >= SceneRenderer::lampCount || from == towards) return;
    renderer.setLamp(true, number);
    renderer.getLamp(number).shine(from, towards);
}

bool GameStage::doesLampSeePlayer(std::size_t number) const
{
    if (number >= SceneRenderer::lampCount || !renderer.isLampShining(number)) return false;
    const SpotLamp& lamp = renderer.getLamp(number);
    const Vector3<float> player = getPlayer();
    if (!lamp.reaches(player)) return false;
    const Vector3<float>& from = lamp.getLight().position;
    return !obstacles.move(from, sightHalfSize, player - from).isHit();
}

void GameStage::playSound(const std::string& name, const Vector3<float>& position)
{
    sounds.playOnce(data, name, position);
}

void GameStage::showText(const std::string& slot, std::string_view text)
{
    if (text.empty())
        texts.erase(slot);
    else
        texts[slot] = std::string(text);
}

void GameStage::setDusk(float part)
{
    renderer.setDusk(part);
}

void GameStage::show()
{
    std::vector<Thing> shown;
    std::map<int, Vector3<float>> humming;
    for (std::size_t i = 0; i < things.size(); ++i) {
        if (!things[i].isThere) continue;
        shown.push_back(moved(things[i].shape, things[i].position));
        if (things[i].hums) humming.emplace(static_cast<int>(i), things[i].position);
    }
    renderer.setMovingThings(std::move(shown));
    sounds.setHums(data, humSound, humming);
}

void GameStage::clear()
{
    clearThings();
    texts.clear();
    setDusk(0);
    show();
}
