#include "workspace.h"

#include "application.h"
#include "environment.h"
#include "failure.h"
#include "game_launcher.h"
#include "gui.h"
#include "input_session.h"
#include "labels.h"
#include "map_files.h"
#include "panels.h"
#include "path_name.h"
#include "picture.h"

#include <xum/engine/system_device.h>
#include <xum/engine/window.h>
#include <xum/render/image.h>
#include <xum/render/render_target.h>
#include <xum/render/texture.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace {

using OwnedSystemDevice = Owned<Engine, SystemDevice, &Engine::destroySystemDevice>;

class Workspace {
public:
    Workspace(const EditorOptions& options, const std::string& settingsFile, Settings settings)
        : options(options), settingsFile(settingsFile), settings(std::move(settings)),
          application("xum-editor", this->settings.windowSize, true),
          system(application.getEngine().createSystemDevice(), {&application.getEngine()}),
          data(application.getEngine(), {options.dataDirectory, ""}),
          textures(application.getRenderDevice(), data, requireSystem()),
          view(application.getRenderDevice(), data, textures), viewport(editor, application.getInput()),
          console(application.getEngine(), data, editor, viewport),
          gui(application.getWindow(), data.getFileName("fonts/", "hud.ttf")),
          panels(editor, viewport, console, textures, *system, this->settings), launcher(options.gameProgram)
    {
        if (!options.playFile.empty()) player = std::make_unique<SessionPlayer>(options.playFile);
        if (!options.recordFile.empty()) recorder = std::make_unique<SessionRecorder>(options.recordFile);
        if (recorder) {
            const Vector2<int> size = application.getWindow().getSize();
            recorder->writeWindowSize(size.x, size.y);
        }
        editor.grid = this->settings.grid;
        const std::string directory = nameOf(std::filesystem::path(settingsFile).parent_path());
        editor.setAutosaveDirectory(directory.empty() ? "" : directory + "/");
        openFirst();
    }

    void run()
    {
        try {
            runFrames();
        } catch (...) {
            editor.autosave(); // whatever it was, the map is not lost
            throw;
        }
        keepSettings();
    }

private:
    void runFrames()
    {
        uint64 lastTime = 0;
        for (std::uint64_t frame = 0; !isEnding; ++frame) {
            if (player) player->pushEvents(frame, application.getWindow().getHandle());
            if (recorder) recorder->setFrame(frame);
            if (!application.getEngine().update()) panels.quit();
            handleWindowEvents();
            const uint64 time = application.getEngine().getTime();
            const bool isFixed = player || recorder;
            const float seconds =
                isFixed ? sessionFrameSeconds : std::min(static_cast<float>(time - lastTime) / 1000.0f, 0.1f);
            lastTime = time;
            const bool isLast = player && player->isOver();
            doFrame(seconds, isLast);
            if (isLast) break;
        }
    }

    SystemDevice& requireSystem()
    {
        if (!system) throw Failure(ExitStatus::NoGraphics, "not enough memory for the system device");
        return *system;
    }

    /// A name that does not exist yet is that of a new map. It is not written before it is saved.
    void openFirst()
    {
        std::error_code failure;
        const std::string& name = options.mapFile;
        if (name.empty() && !settingsFile.empty()) // a session that is played has its own, or none
            panels.offerUnnamed();
        else if (std::filesystem::exists(name, failure) || hasYoungerAutosave(name))
            panels.open(name);
        else if (!name.empty())
            editor.newMap(name);
    }

    void handleWindowEvents()
    {
        for (EngineEvent* event = application.getEngine().getEvents(); event != nullptr; event = event->getNext())
            if (event->getType() == EngineEventType::WindowClosed) panels.quit();
    }

    void doFrame(float seconds, bool isLast)
    {
        const Vector2<int> size = application.getWindow().getSize();
        gui.begin(seconds);
        panels.show(size);
        viewport.update(gui, panels.getArea(), settings.cameraSpeed, settings.mouseSpeed, seconds);
        showLabels(editor.getDocument(), viewport.getCamera(), panels.getArea());
        const Requests requests = panels.takeRequests();
        const bool takesPicture = requests.picture || (isLast && !options.pictureFile.empty());
        draw(size, takesPicture ? (isLast ? options.pictureFile : findFreePictureName()) : "");
        application.getRenderDevice().swap(&application.getWindow());

        sinceAutosave += seconds;
        if (settings.autosaveSeconds > 0 && sinceAutosave >= static_cast<float>(settings.autosaveSeconds)) {
            sinceAutosave = 0;
            editor.autosave();
        }
        if (requests.play) play();
        if (requests.fullscreen) application.getWindow().setFullscreen(isFullscreen = !isFullscreen);
        if (requests.quit) isEnding = true;
        std::string message;
        if (launcher.hasEnded(message)) editor.say(message);
        showTitle();
    }

    /// Into the window, by way of a target when a picture is wanted, too.
    void draw(const Vector2<int>& size, const std::string& pictureFile)
    {
        RenderDevice& device = application.getRenderDevice();
        OwnedTarget target(nullptr, {&device});
        if (!pictureFile.empty() && size.x > 0 && size.y > 0)
            target.reset(device.createRenderTarget(size.x, size.y,
                                                   {TextureFormat(), TextureFormat(TextureFormat::DepthStencil, 1)}));
        device.bindRenderTarget(target.get(), TargetBinding::Both);
        device.setViewport(0, 0, size.x, size.y, size.y);
        device.clear(true, true, false);
        view.draw(editor, viewport.getCamera(), panels.getArea(), viewport.getPreview());
        device.setViewport(0, 0, size.x, size.y, size.y);
        gui.draw();
        if (!target) return;
        const std::unique_ptr<Image> picture(target->getTexture(0)->toImage(true));
        device.bindRenderTarget(nullptr, TargetBinding::Both);
        if (picture && picture->writeToFile(pictureFile))
            editor.say("The picture is " + pictureFile);
        else if (player)
            throw Failure(ExitStatus::PictureNotWritten, "cannot write the picture " + pictureFile);
        else
            editor.say("The picture " + pictureFile + " cannot be written");
    }

    void play()
    {
        std::string mapFile;
        std::string problem;
        if (!editor.compile(mapFile)) return; // the message says why
        const std::string absolute = nameOf(std::filesystem::absolute(mapFile));
        if (launcher.start({"--data", options.dataDirectory, "--map", absolute}, problem))
            editor.say("Playing " + mapFile);
        else
            editor.say(problem);
    }

    void showTitle()
    {
        const std::string name = editor.getFileName().empty() ? "unnamed" : editor.getFileName();
        const std::string title = name + (editor.hasUnsavedChanges() ? " * - xum-editor" : " - xum-editor");
        if (title != shownTitle) application.getWindow().setTitle(shownTitle = title);
    }

    void keepSettings()
    {
        if (settingsFile.empty() || player) return;
        if (!isFullscreen) settings.windowSize = application.getWindow().getSize();
        settings.grid = editor.grid;
        std::string problem;
        if (!writeSettings(settings, settingsFile, problem)) std::fprintf(stderr, "xum-editor: %s\n", problem.c_str());
    }

    const EditorOptions& options;
    std::string settingsFile;
    Settings settings;
    Application application;
    OwnedSystemDevice system;
    GameData data;
    TextureShelf textures;
    MapView view;
    Editor editor;
    Viewport viewport;
    ScriptConsole console;
    Gui gui;
    Panels panels;
    GameLauncher launcher;
    std::unique_ptr<SessionPlayer> player;
    std::unique_ptr<SessionRecorder> recorder;
    std::string shownTitle;
    float sinceAutosave = 0;
    bool isFullscreen = false;
    bool isEnding = false;
};

} // namespace

void runEditor(const EditorOptions& options)
{
    if (!options.playFile.empty()) setEnvironmentVariable("XUM_MESSAGE_BOXES", "0"); // nobody is there to close a box
    const bool isPlayed = !options.playFile.empty();
    const std::string settingsFile =
        !options.settingsFile.empty() ? options.settingsFile : (isPlayed ? "" : findSettingsFile());
    std::string problem;
    Settings settings = readSettings(settingsFile, problem);
    if (!problem.empty()) std::fprintf(stderr, "xum-editor: %s; it uses its own\n", problem.c_str());
    if (options.size) settings.windowSize = *options.size;
    try {
        Workspace(options, settingsFile, std::move(settings)).run();
    } catch (const std::runtime_error& problemOfSession) {
        if (dynamic_cast<const Failure*>(&problemOfSession) != nullptr) throw;
        throw Failure(ExitStatus::BrokenData, problemOfSession.what());
    }
}
