#pragma once

#include "made_maps.h"
#include "own_directory.h"

#include <editor.h>

#include <gtest/gtest.h>

#include <vector>

/// An editor in a directory of its own, with the unit box as brush 0.
class EditorWithABox : public ::testing::Test {
protected:
    void SetUp() override
    {
        enterOwnDirectory();
        addUnitBox(0);
    }

    void addUnitBox(double x)
    {
        editor.edit([&](MapDocument& map) { addBox(map, {{x, 0, 0}, {x + 1, 1, 1}}, "brick.png", 1); });
    }

    void addLamp()
    {
        editor.edit([](MapDocument& map) { addEntity(map, "lamp", {1, 2, 3}); });
    }

    std::vector<double> bounds(std::size_t brush) const { return boundsOf(editor.getDocument(), brush); }
    std::size_t countBrushes() const { return editor.getDocument().brushes.size(); }

    Editor editor;
};
