#pragma once

#include "history.h"
#include "map_edits.h"
#include "picking.h"
#include "terrain_brush.h"

#include <cstdint>
#include <string>

/// The map that is being edited and what the user has chosen, without any window: the keys, the panels and the scripts
/// call the same operations. Those that may fail say why in the message.
class Editor {
public:
    enum class Tool : int { Select, Box, Terrain, Object };

    Editor();

    const MapDocument& getDocument() const { return document; }

    /// Counts all changes, undoing included: whoever shows the document looks at it again.
    std::uint64_t getVersion() const { return version; }

    /// Makes an edit that can be undone. With the same tag, not 0, as the edit before it is one step with that.
    template <class Change>
    void edit(Change change, int tag = 0)
    {
        MapDocument changed = document;
        change(changed);
        if (isSameState(changed, document)) return;
        history.keep(document, tag != 0 ? tag : stepTag);
        document = std::move(changed);
        noteChange();
    }

    /// The edits up to endStep are one step.
    void beginStep() { stepTag = --lastStepTag; }

    /// A step that several edits make together is over.
    void endStep()
    {
        stepTag = 0;
        history.endStep();
    }

    void undo();
    void redo();
    bool canUndo() const { return history.canUndo(); }
    bool canRedo() const { return history.canRedo(); }

    // ---- files

    void newMap();
    bool open(const std::string& fileName);

    /// What an autosave holds, as unsaved changes of the map.
    bool openAutosave(const std::string& fileName);

    bool save() { return saveAs(fileName); }
    bool saveAs(const std::string& newName);

    /// Beside the map; a map without a name goes to `directory`. Nothing happens without unsaved changes.
    void autosave(const std::string& directory);

    /// Beside the map, with the ending .map. False when it does not compile or cannot be written.
    bool compile(std::string& outFileName);

    bool hasUnsavedChanges() const { return !isSameState(document, saved); }
    const std::string& getFileName() const { return fileName; } ///< empty until it has one

    // ---- selection

    const Hit& getSelection() const { return selection; }
    void select(const Hit& hit);
    void selectNothing() { selection = {}; }
    bool hasBrush() const { return selection.kind == Hit::Kind::Brush; }
    bool hasEntity() const { return selection.kind == Hit::Kind::Entity; }

    /// Of the selection; empty without one.
    Bounds getSelectionBounds() const;

    void deleteSelection();
    void duplicateSelection();
    void moveSelection(const Vector3<double>& by, int tag = 0);

    /// The selection as text; empty without one.
    std::string copySelection() const;

    /// Adds what copySelection gave, one grid step aside, and selects it.
    bool paste(const std::string& text);

    // ---- what the user says last

    const std::string& getMessage() const { return message; }
    void say(const std::string& newMessage) { message = newMessage; }

    Tool tool = Tool::Select;
    double grid = 0.5; ///< world units; 0: none
    std::string texture = "brick.png";
    double textureScale = 0.5;
    double boxHeight = 3;
    std::string entityClass = "lamp";
    TerrainBrush terrainBrush;

private:
    void noteChange();
    void replaceDocument(MapDocument newDocument);

    MapDocument document;
    MapDocument saved; ///< as in the file
    MapDocument autosaved;
    History history;
    Hit selection;
    std::string fileName;
    std::string message;
    std::uint64_t version = 1;
    int stepTag = 0;
    int lastStepTag = 0;
};
