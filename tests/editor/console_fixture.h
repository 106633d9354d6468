#pragma once

#include "engine_fixtures.h"
#include "made_maps.h"
#include "message_boxes.h"
#include "own_directory.h"

#include <script_console.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

/// An editor with its console, without any window.
class ConsoleFixture : public InputFixture {
protected:
    void SetUp() override
    {
        enterOwnDirectory();
        InputFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        makeConsole(XUM_DATA_DIRECTORY "/");
    }

    void TearDown() override
    {
        console.reset();
        viewport.reset();
        data.reset();
        InputFixture::TearDown();
    }

    void makeConsole(const std::string& directory)
    {
        console.reset();
        data = std::make_unique<GameData>(*engine, DataSource{directory, ""});
        viewport = std::make_unique<Viewport>(editor, *input);
        console = std::make_unique<ScriptConsole>(*engine, *data, editor, *viewport);
    }

    /// What the console shows after that text, its lines joined by '|'.
    std::string run(const std::string& text)
    {
        const std::size_t before = console->getLines().size();
        console->run(text);
        std::string shown;
        for (std::size_t i = before + 1; i < console->getLines().size(); ++i)
            shown += (shown.empty() ? "" : "|") + console->getLines()[i];
        return shown;
    }

    const MapDocument& map() const { return editor.getDocument(); }

    Editor editor;
    std::unique_ptr<GameData> data;
    std::unique_ptr<Viewport> viewport;
    std::unique_ptr<ScriptConsole> console;
};
