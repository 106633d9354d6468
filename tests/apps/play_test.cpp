#include "play.h"

#include "compare_pictures.h"
#include "pushed_events.h"
#include "world.h"

#include <xum/engine/window.h>

#include <gtest/gtest.h>

#include <filesystem>

// The frame loop with a player, who is played by events in SDL's queue. A first frame sees those that were there at the
// start; a timer ends the loop after some frames, how many does not matter.

namespace {

Uint32 quitLater(Uint32 /*interval*/, void* /*nothing*/)
{
    pushEvent(SDL_QUIT);
    return 0;
}

class Play : public ::testing::Test {
protected:
    Options options = [] {
        Options small;
        small.size = {80, 60};
        small.hasLamp = false;     // it moves
        small.layers.text = false; // it tells the time
        return small;
    }();
    Application application = Application("play", options.size);
    GameData data = GameData(application.getEngine(), {XUM_DATA_DIRECTORY "/", ""});
    Scene scene = [this] {
        Scene made = makeCourtyard();
        addWorld(made, application.getEngine(), data);
        return made;
    }();
    Assets assets = Assets(application.getRenderDevice(), data);
    Soundscape sounds = Soundscape(application.getAudioDevice(), data, scene, options.volume.get());
    SceneRenderer renderer = SceneRenderer(application.getRenderDevice(), assets, scene);
    Presentation presentation = Presentation(application.getRenderDevice(), assets, data, renderer, sounds);

    void playForAWhile()
    {
        SDL_AddTimer(300, quitLater, nullptr);
        play(application, presentation, sounds, options);
    }
};

} // namespace

TEST_F(Play, escapeEndsTheGame)
{
    pushKeyDown(SDLK_ESCAPE);
    play(application, presentation, sounds, options);
}

TEST_F(Play, closingTheWindowEndsTheGame)
{
    pushWindowEvent(SDL_WINDOWEVENT_CLOSE);
    play(application, presentation, sounds, options);
}

TEST_F(Play, quitEndsTheGame)
{
    pushEvent(SDL_QUIT);
    play(application, presentation, sounds, options);
}

TEST_F(Play, pWritesOnePictureHoweverLongItIsHeld)
{
    pushKeyDown('p');
    pushKey(SDL_KEYDOWN, 'p', true);
    SDL_AddTimer(
        100, [](Uint32, void*) -> Uint32 { return pushKey(SDL_KEYDOWN, 'p', true), 0; }, nullptr);
    playForAWhile();
    EXPECT_TRUE(std::filesystem::exists("screenshot-001.bmp"));
    EXPECT_FALSE(std::filesystem::exists("screenshot-002.bmp"));
    std::filesystem::remove("screenshot-001.bmp");
}

TEST_F(Play, picturesAreNumberedOn)
{
    for (const char* name : {"screenshot-001.bmp", "screenshot-002.bmp"}) {
        pushKeyDown('p');
        pushKeyUp('p');
        playForAWhile();
        EXPECT_TRUE(std::filesystem::exists(name)) << name;
    }
    EXPECT_EQ(comparePictures("screenshot-001.bmp", "screenshot-002.bmp", "difference.bmp").maximum, 0);
}

TEST_F(Play, tabAndTheFourthJoystickButtonSwitchToEdgesAndBack)
{
    std::filesystem::remove("screenshot-001.bmp");
    std::filesystem::remove("screenshot-002.bmp");
    std::filesystem::remove("screenshot-003.bmp");
    const auto takePicture = [&] {
        pushKeyDown('p');
        pushKeyUp('p');
        playForAWhile();
        pushKeyUp(SDLK_TAB);
        pushJoystickButton(SDL_JOYBUTTONUP, 3);
    };
    takePicture();
    pushKeyDown(SDLK_TAB);
    takePicture();
    pushJoystickButton(SDL_JOYBUTTONDOWN, 3);
    takePicture();
    EXPECT_GT(comparePictures("screenshot-001.bmp", "screenshot-002.bmp", "difference.bmp").mean, 10);
    EXPECT_EQ(comparePictures("screenshot-002.bmp", "screenshot-003.bmp", "difference.bmp").maximum, 0);
}

TEST_F(Play, cSwitchesCullingOffAndOn)
{
    const auto playAfterC = [&] {
        pushKeyDown('c');
        pushKeyUp('c');
        playForAWhile();
        return renderer.getVisibility();
    };
    EXPECT_TRUE(renderer.isCullingOn());
    const Visibility all = playAfterC();
    EXPECT_EQ(all.culled, 0u);
    EXPECT_GT(all.drawn, 2000u);
    options.culls = false;
    const Visibility seen = playAfterC();
    EXPECT_GT(seen.culled, 0u);
    EXPECT_EQ(seen.drawn + seen.culled + seen.hidden, all.drawn);
}

TEST_F(Play, oShowsTheOcclusionMapAndHidesIt)
{
    for (const bool isShown : {true, false}) {
        options.showsOcclusion = !isShown;
        pushKeyDown('o');
        pushKeyUp('o');
        playForAWhile();
        EXPECT_EQ(renderer.isOcclusionViewOn(), isShown);
    }
}

TEST_F(Play, lSwitchesTheLampOnAndOff)
{
    for (const bool shines : {true, false}) {
        options.hasLamp = !shines;
        pushKeyDown('l');
        pushKeyUp('l');
        playForAWhile();
        EXPECT_EQ(renderer.isLampShining(), shines);
    }
}

TEST_F(Play, lampMovesWhileTheGameIsPlayed)
{
    const Vector3<float> before = renderer.getLamp().getLight().position;
    playForAWhile();
    const Vector3<float> after = renderer.getLamp().getLight().position;
    EXPECT_FALSE(after == before);
}

TEST_F(Play, gBringsThePlayerToTheGroundAndUpAgain)
{
    std::filesystem::remove("screenshot-001.bmp");
    std::filesystem::remove("screenshot-002.bmp");
    options.view = Viewpoint{{0, -18, 6}, 0, 0};
    for (const bool walks : {false, true}) {
        if (walks) {
            pushKeyDown('g');
            pushKeyUp('g');
        }
        SDL_AddTimer(
            1200, [](Uint32, void*) -> Uint32 { return pushKeyDown('p'), 0; }, nullptr);
        SDL_AddTimer(1800, quitLater, nullptr);
        play(application, presentation, sounds, options);
        pushKeyUp('p');
    }
    // From above the walls hide little, from the ground they do.
    EXPECT_GT(comparePictures("screenshot-001.bmp", "screenshot-002.bmp", "difference.bmp").mean, 5);
}

TEST_F(Play, f11SwitchesToFullScreen)
{
    pushKeyDown(SDLK_F11);
    pushKeyUp(SDLK_F11);
    playForAWhile();
    EXPECT_NE(SDL_GetWindowFlags(application.getWindow().getHandle()) & SDL_WINDOW_FULLSCREEN, 0u);
}

TEST_F(Play, titleTellsTheFrameRate)
{
    SDL_AddTimer(1200, quitLater, nullptr);
    play(application, presentation, sounds, options);
    EXPECT_NE(application.getWindow().getTitle().find("xum-game - "), std::string::npos);
    EXPECT_NE(application.getWindow().getTitle().find(" frames per second - "), std::string::npos);
}

TEST_F(Play, pageKeysSetTheVolumeAndNSilences)
{
    const auto playAfter = [&](int key) {
        pushKeyDown(key);
        pushKeyUp(key);
        playForAWhile();
        return sounds.getVolume();
    };
    EXPECT_EQ(sounds.getVolume(), 1);
    EXPECT_EQ(playAfter(SDLK_PAGEUP), 1); // no louder
    EXPECT_EQ(playAfter(SDLK_PAGEDOWN), 0.9f);
    EXPECT_EQ(playAfter('n'), 0);
    options.volume = Volume(30, true);
    EXPECT_EQ(playAfter('n'), 0.3f);
    EXPECT_EQ(playAfter(SDLK_PAGEUP), 0.4f);
}

TEST_F(Play, minimisedAndRestoredWindowGoesOn)
{
    pushWindowEvent(SDL_WINDOWEVENT_MINIMIZED);
    playForAWhile();
    pushWindowEvent(SDL_WINDOWEVENT_MINIMIZED);
    pushWindowEvent(SDL_WINDOWEVENT_RESTORED);
    playForAWhile();
}

TEST_F(Play, windowOfAnySizeIsDrawn)
{
    for (const int side : {1, 300}) {
        SDL_SetWindowSize(application.getWindow().getHandle(), side, 2 * side);
        playForAWhile();
    }
}

TEST_F(Play, keysSwitchTheLayersOnAndOff)
{
    const std::pair<char, bool Layers::*> switches[] = {
        {'b', &Layers::debugShapes}, {'f', &Layers::effects}, {'h', &Layers::text}};
    for (const auto& [key, layer] : switches) {
        for (const bool isShown : {true, false}) {
            options.layers = {false, false, false};
            options.layers.*layer = !isShown;
            pushKeyDown(key);
            pushKeyUp(key);
            playForAWhile();
            Layers expected = {false, false, false};
            expected.*layer = isShown;
            EXPECT_EQ(presentation.getLayers().effects, expected.effects) << key;
            EXPECT_EQ(presentation.getLayers().debugShapes, expected.debugShapes) << key;
            EXPECT_EQ(presentation.getLayers().text, expected.text) << key;
        }
    }
}

TEST_F(Play, windowOfAnySizeIsDrawnWithAllLayers)
{
    options.layers = {true, true, true};
    for (const int side : {1, 300}) {
        SDL_SetWindowSize(application.getWindow().getHandle(), side, 2 * side);
        playForAWhile();
    }
}

TEST_F(Play, nothingIsDrawnIntoAWindowWithoutPixels)
{
    renderer.draw(nullptr, {0, 0}, Viewpoint(), DrawStyle::Solids);
    renderer.draw(nullptr, {0, 10}, Viewpoint(), DrawStyle::Edges);
}
